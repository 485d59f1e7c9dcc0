#include "literals.h"
#include "message_log.h"

#include <QtTest>

class TestEntryPoints : public QObject
{
    Q_OBJECT

    static QObject* pluginInstance()
    {
        QLibrary library(QStringLiteral(PLUGIN_FILE));
        using Instance = QObject* (*)();
        const auto instance = reinterpret_cast<Instance>(library.resolve("qt_plugin_instance"));
        return instance != nullptr ? instance() : nullptr;
    }

private Q_SLOTS:
    void instanceIsThePluginWithoutAParent()
    {
        const QObject* instance = pluginInstance();
        QVERIFY(instance != nullptr);
        QCOMPARE(QByteArray(instance->metaObject()->className()), QByteArray("PToolGpio"));
        QCOMPARE(QByteArray(instance->metaObject()->superClass()->className()),
                 QByteArray("DAbstractPlugin"));
        QCOMPARE(instance->parent(), nullptr);
    }

    void instanceIsTheSameAtEachCall()
    {
        QObject* instance = pluginInstance();
        QVERIFY(instance != nullptr);
        QCOMPARE(pluginInstance(), instance);
        QCOMPARE(QPluginLoader(QStringLiteral(PLUGIN_FILE)).instance(), instance);
    }

    void instanceIsMadeAnewAfterItsDeletion()
    {
        const QPointer<QObject> first(pluginInstance());
        QVERIFY(!first.isNull());
        delete first.data();
        const QPointer<QObject> second(pluginInstance());
        QVERIFY(!second.isNull());
        QCOMPARE(QByteArray(second->metaObject()->className()), QByteArray("PToolGpio"));
        QCOMPARE(pluginInstance(), second.data());
    }

    void nothingIsLoggedByMakingAndDestroying()
    {
        const MessageLog log;
        for (int i = 0; i < 3; ++i) {
            QVERIFY(pluginInstance() != nullptr);
            delete pluginInstance();
        }
        QCOMPARE(log.texts(), QStringList());
    }

    void cleanupTestCase() { delete pluginInstance(); }
};

QTEST_GUILESS_MAIN(TestEntryPoints)
#include "test_entry_points.moc"
