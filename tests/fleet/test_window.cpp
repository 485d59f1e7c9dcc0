#include "broker_client.h"
#include "panel_fixture.h"

#include <window/bench_window.h>
#include <window/texts.h>
#include <window_benches.h>

#include <QSettings>

/// The window of a bench that is on a broker.
class TestWindow : public QObject
{
    Q_OBJECT

    /// The file of a bench with one line, and a channel on it.
    static QString benchWith(const QByteArray& line)
    {
        const QByteArray configuration =
            R"({"device": {"type": "simulated", "lines": [{"name": "LINE"}]},
                "tools": [{"name": "Tool", "id": "{4b7a2f10-0000-4000-8000-000000000002}", "plugin": "FILE", "channels": [
                    {"id": "CHANNEL", "value": [{"id": "type", "value": "digitalInput"},
                     {"id": "direction", "value": "out"}, {"id": "link", "value": "LINE"}]}]}]})";
        return temporaryFile(QByteArray(configuration).replace("LINE", line).replace("FILE", PLUGIN_FILE));
    }

    std::unique_ptr<WindowBenches> served(const QString& configuration, const Broker& broker)
    {
        Options options;
        options.serve = broker.url();
        options.offAtEnd = true;
        QVector<Problem> problems;
        auto operation = std::make_unique<Operation>(
            readBench(configuration, DevicePlace::OwnThread, &problems), &m_output);
        operation->begin(options);
        return std::make_unique<WindowBenches>(std::move(operation), options, DevicePlace::OwnThread,
                                               &m_output);
    }

private Q_SLOTS:
    void initTestCase()
    {
        installTexts(QLocale(QLocale::English));
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }

    void showsWhatIsSetFromElsewhere()
    {
        const Broker broker;
        WindowOptions options;
        options.configuration = benchWith("lamp");
        const auto benches = served(options.configuration, broker);
        BenchWindow window(benches.get(), options);
        window.window().show();
        const auto level = [&window] {
            const QQuickItem* item = itemNamed(&window.scene().root(), "lineLevel"_s);
            return item != nullptr ? item->property("text").toString() : QString();
        };
        QTRY_COMPARE(level(), "0"_s);
        BenchProcess elsewhere(
            {"run"_s, "setValue"_s, "channel=CHANNEL"_s, "state=ON"_s, "--broker"_s, broker.url()});
        QTRY_COMPARE_WITH_TIMEOUT(level(), "1"_s, 20000);
        QTRY_COMPARE(elsewhere.process().state(), QProcess::NotRunning);
        QCOMPARE(elsewhere.end(), (BenchRun{0, "[1] setValue: doneOk=true\n"}));
        publish(broker, "appvantor/1/bench-7/line/lamp/set"_s, "0");
        QTRY_COMPARE_WITH_TIMEOUT(level(), "0"_s, 20000);
    }

    void aBenchThatIsOpenedTakesThePlaceOfTheOther()
    {
        const Broker broker;
        const auto benches = served(benchWith("lamp"), broker);
        Reader reader(broker, "appvantor/#"_s);
        const auto last = [&reader](const char* topic) {
            const QVector<QByteArray> messages = reader.messages(QByteArray("appvantor/1/bench-7/") + topic);
            return messages.isEmpty() ? QByteArray() : messages.last();
        };
        QTRY_VERIFY_WITH_TIMEOUT(last("line/lamp").contains("\"v\":0,"), 20000);
        publish(broker, "appvantor/1/bench-7/line/lamp/set"_s, "1");
        QTRY_VERIFY_WITH_TIMEOUT(last("line/lamp").contains("\"v\":1,"), 20000);
        const QByteArray before = last("state");
        QVector<Problem> mistakes;
        benches->exchange(benches->make(benchWith("horn"), &mistakes));
        QTRY_VERIFY_WITH_TIMEOUT(last("line/horn").contains("\"v\":0,"), 20000);
        QTRY_COMPARE(last("line/lamp"), QByteArray("(null)"));
        QVERIFY(last("state").contains("online"));
        QVERIFY(last("state") != before);
        QCOMPARE(benches->end(0), 0);
        QTRY_VERIFY(last("state").contains("offline"));
    }

private:
    QTemporaryDir m_folder;
    Output m_output{false};
};

QTEST_MAIN(TestWindow)
#include "test_window.moc"
