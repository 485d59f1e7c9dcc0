// Loading and refreshing the maintenance page, beside a bare page with the same items.

#include "rig.h"

#include <window/page_panel.h>
#include <window/qml_types.h>
#include <window/texts.h>

#include <benchmark/benchmark.h>

#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace {

const QSize c_size(720, 480);

/// What a row of the bare page shows.
class BareChannel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER m_name CONSTANT)
    Q_PROPERTY(bool isOutput MEMBER m_isOutput CONSTANT)
    Q_PROPERTY(QVariant value READ value NOTIFY valueChanged)

public:
    explicit BareChannel(int line)
        : m_name(Rig::channel(line))
        , m_isOutput(line % 2 != 0)
        , m_value(0)
    {}

    QVariant value() const { return m_value; }
    void setValue(const QVariant& value)
    {
        if (value != m_value) {
            m_value = value;
            Q_EMIT valueChanged();
        }
    }

Q_SIGNALS:
    void valueChanged();

private:
    QString m_name;
    bool m_isOutput;
    QVariant m_value;
};

class BarePage
{
public:
    explicit BarePage(int count)
    {
        QVariantList inputs;
        QVariantList outputs;
        for (int line = 0; line < count; ++line) {
            m_channels.push_back(std::make_unique<BareChannel>(line));
            (line % 2 == 0 ? inputs : outputs).append(QVariant::fromValue<QObject*>(m_channels.back().get()));
        }
        m_context = std::make_unique<QQmlContext>(&m_engine);
        m_context->setContextProperty(QStringLiteral("inputs"), inputs);
        m_context->setContextProperty(QStringLiteral("outputs"), outputs);
        m_window.resize(c_size);
    }
    Q_DISABLE_COPY(BarePage)

    void load()
    {
        m_page.reset();
        const QUrl url(QStringLiteral("qrc:/plugins/p_tool_gpio/benchmarks/bare_page.qml"));
        QFile file(QStringLiteral(":/plugins/p_tool_gpio/benchmarks/bare_page.qml"));
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("the bare page is not there");
        }
        QQmlComponent component(&m_engine);
        component.setData(file.readAll(), url);
        m_page.reset(qobject_cast<QQuickItem*>(component.create(m_context.get())));
        if (m_page == nullptr) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        m_page->setParentItem(m_window.contentItem());
        m_page->setSize(c_size);
        QCoreApplication::processEvents();
    }

    /// Every second channel has a new value.
    void refresh()
    {
        m_value = 1 - m_value;
        for (std::size_t line = 1; line < m_channels.size(); line += 2) {
            m_channels[line]->setValue(m_value);
        }
        QCoreApplication::processEvents();
    }

private:
    std::vector<std::unique_ptr<BareChannel>> m_channels;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQmlContext> m_context;
    std::unique_ptr<QQuickItem> m_page;
    int m_value = 0;
};

class PluginPage
{
public:
    explicit PluginPage(int count)
        : m_rig(count)
        , m_count(count)
    {
        m_window.resize(c_size);
        QQmlComponent component(&m_engine);
        component.setData("import AppVantor 1.0\nPagePanel {}", QUrl());
        m_panel.reset(qobject_cast<PagePanel*>(component.create()));
        m_panel->setParentItem(m_window.contentItem());
        m_panel->setSize(c_size);
    }
    Q_DISABLE_COPY(PluginPage)

    void load()
    {
        m_panel->setTool(nullptr);
        m_panel->setTool(&m_rig.tool());
        if (m_panel->page() == nullptr) {
            qFatal("%s", qPrintable(m_panel->problem()));
        }
        m_panel->page()->setProperty("live", false);
        do {
            QCoreApplication::processEvents();
        } while (!m_panel->hasRows());
    }

    /// Every second channel has a new value.
    void refresh()
    {
        for (int line = 1; line < m_count; line += 2) {
            m_rig.toggle(line);
        }
        m_panel->refresh();
        while (m_panel->isBusy()) {
            QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
    }

private:
    Rig m_rig;
    int m_count;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<PagePanel> m_panel;
};

template <typename Page>
void load(benchmark::State& state)
{
    Page page(static_cast<int>(state.range(0)));
    page.load();
    for ([[maybe_unused]] auto step : state) {
        page.load();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Page>
void refresh(benchmark::State& state)
{
    Page page(static_cast<int>(state.range(0)));
    page.load();
    page.refresh();
    for ([[maybe_unused]] auto step : state) {
        page.refresh();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(16)->Arg(100)->Arg(1000);
}

BENCHMARK_TEMPLATE(load, BarePage)->Name("page_load/floor")->Apply(sizes);
BENCHMARK_TEMPLATE(load, PluginPage)->Name("page_load/ours")->Apply(sizes);
BENCHMARK_TEMPLATE(refresh, BarePage)->Name("page_refresh/floor")->Apply(sizes);
BENCHMARK_TEMPLATE(refresh, PluginPage)->Name("page_refresh/ours")->Apply(sizes);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    initializeGuiResources();
    registerQmlTypes();
    installTexts(QLocale(QLocale::English));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#include "page.moc"
