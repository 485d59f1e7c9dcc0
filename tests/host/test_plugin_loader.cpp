#include "literals.h"
#include "rows.h"

#include <plugin_management/d_plugin_loader.h>
#include <plugin_management/d_tool.h>
#include <plugin_management/i_plugin.h>

class TestPluginLoader : public QObject
{
    Q_OBJECT

    static QString plugin(const QString& name)
    {
        return "%1/lib%2_plugin.so"_s.arg(QStringLiteral(PLUGIN_DIR), name);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_directory.isValid()); }

    void aSoundPluginIsLoadedOnce()
    {
        const DPluginLoader loader(plugin("sound"_s));
        QCOMPARE(loader.error().english(), QString());
        QVERIFY(loader.prototype() != nullptr);
        QCOMPARE(loader.prototype()->pluginName(), "Scripted"_s);
        QVERIFY(loader.prototype()->objectUuid().isNull());
        QCOMPARE(DPluginLoader(plugin("sound"_s)).prototype(), loader.prototype());
    }

    void aToolIsMadeFromALoadedPlugin()
    {
        const DPluginLoader loader(plugin("sound"_s));
        const DTool tool({{"name"_s, "Bench"_s}}, *loader.prototype(), nullptr);
        QCOMPARE(tool.plugin()->getFunctions(), QStringList{"work"_s});
        QVERIFY(loader.prototype()->getFunctions().isEmpty());
    }

    void whatIsNoPluginIsRefusedWithTheReason_data()
    {
        const Rows<QString, QString> row("file", "reason");
        row("missing file", plugin("missing"_s), "no such plugin library");
        row("no name", QString(), "no such plugin library");
        row("foreign interface", plugin("foreign"_s),
            "interface identifier \"org.example.ForeignPlugin\", expected "
            "\"fr.velt.rd.tav.ForeignPlugin\""_s);
        row("instance that throws", plugin("throwing"_s), "its instance could not be made: out of magic");
        row("instance that throws a number", plugin("hurling"_s),
            "its instance could not be made: it threw something unknown");
        row("instance of another host", plugin("plain_object"_s), "its instance is no plugin of this host");
        row("no instance", plugin("null"_s), "it gave no instance");
    }
    void whatIsNoPluginIsRefusedWithTheReason()
    {
        const auto [file, reason] = Rows<QString, QString>::values();
        const DPluginLoader loader(file);
        QVERIFY(loader.prototype() == nullptr);
        QCOMPARE(loader.error().english(), "%1: %2"_s.arg(file, reason));
    }

    void aPluginThatMissesAFunctionIsRefusedBeforeItIsCalled()
    {
        const DPluginLoader loader(plugin("incomplete"_s));
        QVERIFY(loader.prototype() == nullptr);
        QVERIFY2(loader.error().english().contains("undefined symbol: _Z16nowhereToBeFoundv"_s),
                 qPrintable(loader.error().english()));
    }

    void aFileThatIsNoPluginIsRefused_data()
    {
        const Rows<QByteArray> row("content");
        const QByteArray whole = contentOf(plugin("sound"_s));
        row("no Qt plugin", contentOf(QStringLiteral(PLUGIN_DIR "/../../../lib/libutilities.so")));
        row("empty", QByteArray());
        row("plain text", QByteArray("just a text, no library at all\n"));
        row("ELF magic alone", whole.left(4));
        row("ELF header alone", whole.left(64));
        row("first half", whole.left(whole.size() / 2));
        row("last byte missing", whole.left(whole.size() - 1));
    }
    void aFileThatIsNoPluginIsRefused()
    {
        QFETCH(QByteArray, content);
        const QString name = m_directory.filePath("libbroken.so"_s);
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(content), qint64{content.size()});
        file.close();
        const DPluginLoader loader(name);
        QVERIFY(loader.prototype() == nullptr);
        QVERIFY2(loader.error().english().startsWith(name + ": not a plugin for this version of Qt ("_s),
                 qPrintable(loader.error().english()));
        QVERIFY(QFile::remove(name));
    }

    void aDirectoryIsRefused()
    {
        const DPluginLoader loader(m_directory.path());
        QVERIFY(loader.prototype() == nullptr);
        QVERIFY(loader.error().english().startsWith(m_directory.path() + ": "_s));
    }

private:
    static QByteArray contentOf(const QString& name)
    {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("%s cannot be read", qPrintable(name));
        }
        return file.readAll();
    }

    QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(TestPluginLoader)
#include "test_plugin_loader.moc"
