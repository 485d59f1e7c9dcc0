#include "page_panel.h"

#include "gradual_rows.h"
#include "page_source.h"
#include "page_width.h"
#include "texts.h"

#include <plugin_management/d_abstract_plugin_backend.h>
#include <plugin_management/d_device.h>
#include <plugin_management/i_plugin.h>

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>

#include <algorithm>

namespace {

/// Where the page stands in the tree: its relative imports start here.
QUrl pageUrl()
{
    return QUrl(QStringLiteral("qrc:/plugins/p_tool_gpio/resources/maintenance_panel.qml"));
}

bool hasPublicChannels(const DTool& tool)
{
    const QVector<DToolChannel>& channels = tool.channels();
    return std::any_of(channels.cbegin(), channels.cend(), [](const DToolChannel& channel) {
        return channel.visibility == QLatin1String("public");
    });
}

/// Pages whose frame knows nothing of a property are left alone.
void tell(QObject* page, const char* property, const QVariant& value)
{
    if (page->metaObject()->indexOfProperty(property) >= 0) {
        page->setProperty(property, value);
    }
}

} // namespace

PagePanel::PagePanel(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemIsFocusScope);
}

PagePanel::~PagePanel()
{
    // The page goes before the panel's own properties, on which nothing of it may depend any more.
    delete m_page;
}

QObject* PagePanel::tool() const
{
    return m_tool;
}

void PagePanel::setTool(QObject* tool)
{
    auto* newTool = qobject_cast<DTool*>(tool);
    if (newTool == m_tool) {
        return;
    }
    if (!m_tool.isNull()) {
        disconnect(m_tool, nullptr, this, nullptr);
    }
    m_tool = newTool;
    if (newTool != nullptr) {
        connect(newTool, &QObject::destroyed, this, &PagePanel::toolChanged);
        connect(newTool, &QObject::destroyed, this, &PagePanel::reload);
    }
    Q_EMIT toolChanged();
    if (isComponentComplete()) {
        reload();
    }
}

double PagePanel::rowsWidth() const
{
    return m_page.isNull() ? 0 : pageWidth(m_tool->channels(), m_font);
}

bool PagePanel::hasRows() const
{
    const auto rows = m_page.isNull() ? QList<GradualRows*>() : m_page->findChildren<GradualRows*>();
    return std::all_of(rows.cbegin(), rows.cend(),
                       [](const GradualRows* some) { return some->isComplete(); });
}

bool PagePanel::isBusy() const
{
    const auto* backend = m_page.isNull() ? nullptr : m_page->findChild<DAbstractPluginBackend*>();
    return !hasRows() || (backend != nullptr && backend->hasPendingTreatments());
}

bool PagePanel::hasValues() const
{
    const DDevice* device = m_tool.isNull() ? nullptr : m_tool->device();
    if (m_page.isNull() || device == nullptr) {
        return true;
    }
    const bool none =
        device->state() == DDevice::State::Unreachable || device->state() == DDevice::State::Closed;
    return hasRows() && (none || (device->isConnected() && m_valuesRequested && !isBusy()));
}

void PagePanel::refresh()
{
    if (!m_page.isNull() && m_page->metaObject()->indexOfMethod("updateData()") >= 0) {
        QMetaObject::invokeMethod(m_page, "updateData");
    }
}

void PagePanel::geometryChanged(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChanged(newGeometry, oldGeometry);
    fitPage();
}

void PagePanel::componentComplete()
{
    QQuickItem::componentComplete();
    reload();
}

void PagePanel::reload()
{
    removePage();
    if (m_tool.isNull() || m_tool->plugin() == nullptr) {
        showProblem(qtTrId("page_no_tool"));
        return;
    }
    const IPlugin& plugin = *m_tool->plugin();
    const QByteArray source = pageSource(plugin.pluginUuid(), m_tool->objectName(), m_tool->id());
    if (source.isEmpty()) {
        showProblem(qtTrId("page_none").arg(plugin.pluginName()));
        return;
    }
    m_page = makePage(source);
    if (!m_page.isNull()) {
        m_problem.clear();
        fitPage();
        Q_EMIT pageChanged();
    }
}

void PagePanel::valuesRequested()
{
    m_valuesRequested = true;
}

void PagePanel::removePage()
{
    m_valuesRequested = false;
    dismissClickProblem();
    // A page may be taken away by something that it does itself: it leaves the screen now and the memory
    // later.
    if (!m_page.isNull()) {
        m_page->setParentItem(nullptr);
        m_page->deleteLater();
        m_page.clear();
    }
}

QQuickItem* PagePanel::makePage(const QByteArray& source)
{
    QQmlComponent component(qmlEngine(this));
    component.setData(source, pageUrl());
    QObject* object = component.isReady() ? component.beginCreate(qmlContext(this)) : nullptr;
    auto* page = qobject_cast<QQuickItem*>(object);
    if (page != nullptr) {
        QQmlEngine::setObjectOwnership(page, QQmlEngine::CppOwnership);
        page->setParent(this);
        page->setParentItem(this);
        page->setSize(size());
        tell(page, "hasChannels", hasPublicChannels(*m_tool));
    }
    if (object != nullptr) {
        component.completeCreate();
    }
    if (page == nullptr) {
        delete object;
        const QString errors = component.isError() ? component.errorString().trimmed()
                                                   : QStringLiteral("its root is not an item");
        showProblem(qtTrId("page_broken").arg(m_tool->plugin()->pluginName(), errors));
        return nullptr;
    }
    m_page = page;
    GradualRows::fill(page);
    if (const DDevice* device = m_tool->device()) {
        connect(device, &DDevice::stateChanged, page, [this] { tellConnection(); });
    }
    if (page->metaObject()->indexOfSignal("updateData()") >= 0) {
        connect(page, SIGNAL(updateData()), this, SLOT(valuesRequested()));
    } else {
        m_valuesRequested = true; // such a page asks when it likes
    }
    const auto backends = page->findChildren<DAbstractPluginBackend*>();
    for (const DAbstractPluginBackend* backend : backends) {
        connect(backend, &DAbstractPluginBackend::treatmentEnded, this, &PagePanel::noteTreatment);
    }
    tellConnection();
    return page;
}

void PagePanel::fitPage()
{
    if (!m_page.isNull()) {
        m_page->setSize(size());
    }
}

void PagePanel::tellConnection()
{
    const DDevice* device = m_tool.isNull() ? nullptr : m_tool->device();
    if (!m_page.isNull() && device != nullptr) {
        tell(m_page, "connectionProblem", worded(device->connectionProblem()));
    }
}

void PagePanel::showProblem(const QString& problem)
{
    m_problem = problem;
    Q_EMIT pageChanged();
}

void PagePanel::setClickProblem(const QString& problem)
{
    if (problem != m_clickProblem) {
        m_clickProblem = problem;
        Q_EMIT clickProblemChanged();
    }
}

void PagePanel::noteTreatment(const QString& command, const QVariantMap& arguments,
                              const QVariantMap& results, const DFailure& failure)
{
    const bool asks = !m_tool.isNull() && m_tool->asks(command);
    if (!asks) {
        const QString channel = arguments.value(QStringLiteral("channel"), command).toString();
        setClickProblem(
            failure ? qtTrId("page_click_failed").arg(channel, failureText(failure.kindName(), failure.text))
                    : QString());
    }
    Q_EMIT treatmentEnded(asks, command, arguments, results, failure);
}
