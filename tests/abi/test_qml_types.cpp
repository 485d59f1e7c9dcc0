#include "literals.h"
#include "message_log.h"
#include "rows.h"

#include <QQmlComponent>
#include <QQmlEngine>

class TestQmlTypes : public QObject
{
    Q_OBJECT

    /// Makes the object of a QML document that imports the plugin's module, and returns its property
    /// "answer", or its class when it has none; the errors when it cannot be made.
    static QVariant answerOf(const QByteArray& object)
    {
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nimport PlgLibToolGpio 1.0\n" + object, QUrl());
        const QScopedPointer<QObject> made(component.create());
        if (made.isNull()) {
            return component.errorString();
        }
        const QVariant answer = made->property("answer");
        return answer.isValid() ? answer : QVariant(QString::fromLatin1(made->metaObject()->className()));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(answerOf("DGpioChannel {}").toString().contains("is not installed"_s));
        QPluginLoader loader(QStringLiteral(PLUGIN_FILE));
        for (int i = 0; i < 3; ++i) {
            QVERIFY2(loader.instance() != nullptr, qPrintable(loader.errorString()));
            delete loader.instance();
        }
        m_instance.reset(loader.instance());
    }

    void typesAreUsableAfterSeveralInstances()
    {
        const MessageLog log;
        QCOMPARE(answerOf("DGpioChannel {}"), QVariant("DGpioChannel"_s));
        QCOMPARE(answerOf("BeMaintenanceToolGpio { name: 'tool'; objectId: 'id' }"),
                 QVariant("BeMaintenanceToolGpio"_s));
        QCOMPARE(log.texts(), QStringList());
    }

    void channelTypesAreNumbers()
    {
        const QVector<QByteArray> types = {"CeCtUnknown", "CeCtAnaIn", "CeCtAnaOut", "CeCtBinIn",
                                           "CeCtBinOut"};
        for (int number = 0; number < types.size(); ++number) {
            QCOMPARE(answerOf("QtObject { property int answer: DGpioChannel." + types.at(number) + " }"),
                     QVariant(number));
        }
    }

    void channelIsAPropertyType()
    {
        QCOMPARE(answerOf("QtObject { property DGpioChannel channel: DGpioChannel {}\n"
                          "property int answer: channel.type }"),
                 QVariant(0));
    }

    void modelIsReachedThroughTheBackend()
    {
        QCOMPARE(answerOf("BeMaintenanceToolGpio { property int answer: channelsModel.length }"),
                 QVariant(0));
    }

    void listModelCannotBeInstantiated()
    {
        const QString problem = answerOf("OLM_DGpioChannel {}").toString();
        QVERIFY2(problem.contains("OLM_DGpioChannel is not a type"_s), qPrintable(problem));
    }

    void propertiesCannotBeWritten_data()
    {
        const Rows<QByteArray> row("object");
        row("name of a channel", QByteArray("DGpioChannel { name: 'x' }"));
        row("value of a channel", QByteArray("DGpioChannel { value: 1 }"));
        row("version of a backend", QByteArray("BeMaintenanceToolGpio { version: '1' }"));
    }
    void propertiesCannotBeWritten()
    {
        QFETCH(QByteArray, object);
        const QString problem = answerOf(object).toString();
        QVERIFY2(problem.contains("is a read-only property"_s), qPrintable(problem));
    }

    void otherVersionsOfTheModuleAreNotThere()
    {
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import PlgLibToolGpio 2.0\nDGpioChannel {}", QUrl());
        QVERIFY(component.isError());
    }

private:
    QScopedPointer<QObject> m_instance;
};

QTEST_GUILESS_MAIN(TestQmlTypes)
#include "test_qml_types.moc"
