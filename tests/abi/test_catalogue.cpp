#include "literals.h"
#include "rows.h"

#include <plugin_management/d_abstract_plugin.h>

/// The plugin as the stand-ins see it: through its library and the interface alone.
class TestCatalogue : public QObject
{
    Q_OBJECT

    static inline const QUuid c_objectUuid{"{00112233-4455-6677-8899-aabbccddeeff}"_s};

private Q_SLOTS:
    void initTestCase()
    {
        QPluginLoader loader(QStringLiteral(PLUGIN_FILE));
        auto* prototype = qobject_cast<DAbstractPlugin*>(loader.instance());
        QVERIFY2(prototype != nullptr, qPrintable(loader.errorString()));
        m_instance.reset(dynamic_cast<DAbstractPlugin*>(prototype->createInstance(c_objectUuid)));
        delete prototype;
        QVERIFY(!m_instance.isNull());
        QVERIFY(m_instance->getFunctions().isEmpty());
        QSignalSpy done(m_instance.data(), &DAbstractPlugin::sigCommandsInitDone);
        m_instance->initPluginCommands();
        QCOMPARE(done.count(), 1);
        QCOMPARE(done.first().at(0).value<QUuid>(), c_objectUuid);
        QCOMPARE(done.first().at(1).toStringList(), m_instance->commandNames());
    }

    void instanceHasThePluginsIdentity()
    {
        const IPlugin& plugin = *m_instance;
        QCOMPARE(plugin.objectUuid(), c_objectUuid);
        QCOMPARE(plugin.pluginUuid(), QUuid("{78c1adc4-57e9-4b97-bb64-a19f85c099a2}"_s));
        QCOMPARE(plugin.pluginName(), "Tool Gpio"_s);
        QCOMPARE(static_cast<uint>(plugin.pluginType()), 1416589164U);
        QCOMPARE(QByteArray(plugin.pluginSubTypeName()), QByteArray("gpio"));
        QCOMPARE(plugin.pluginVersion(), 0x0001000000000000ULL);
        QCOMPARE(plugin.getProperty("toolType"_s), QVariant(3));
        QCOMPARE(plugin.getProperty("typeName"_s), QVariant("gpio"_s));
        QCOMPARE(m_instance->parent(), nullptr);
    }

    void commandsAreListedInOrder()
    {
        QCOMPARE(m_instance->getFunctions(), QStringList({"setValue"_s, "switchValue"_s, "getValue"_s,
                                                          "startListening"_s, "init"_s, "listenToAll"_s}));
    }

    void descriptionsAreReadBack_data()
    {
        const Rows<QString> row("description");
        row("setValue", "Set the value of a GPIO pin");
        row("switchValue", "Set the value of a GPIO pin");
        row("getValue", "Get the value of a GPIO pin");
        row("startListening", "Listen events from the gpio channel");
        row("init", "Set initia values of a GPIO pin");
        row("listenToAll", "Listen events from the gpio channel");
        row("listenEvents", QString());
    }
    void descriptionsAreReadBack()
    {
        QFETCH(QString, description);
        QCOMPARE(m_instance->getFunctionDescription(QString::fromLatin1(QTest::currentDataTag())),
                 description);
    }

private:
    QScopedPointer<DAbstractPlugin> m_instance;
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "test_catalogue.moc"
