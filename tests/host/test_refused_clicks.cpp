#include "rows.h"
#include "workbench.h"

#include <be_maintenance_plugin.h>
#include <p_tool_gpio.h>

#include <ctime>

/// The plugin as it is, with more channels than its queue has room for, on a device that never answers.
class TestRefusedClicks : public QObject
{
    Q_OBJECT

    static constexpr int c_channels = 310;

    static QVariantMap configuration()
    {
        QVariantMap configuration = Workbench::configuration();
        QVariantList channels;
        for (int number = 0; number < c_channels; ++number) {
            const QString text = QString::number(number);
            channels.append(channelEntry("C"_s + text, "digitalInput"_s, "out"_s, "line"_s + text));
        }
        configuration.insert("channels"_s, channels);
        return configuration;
    }

    static qint64 processorMs()
    {
        timespec time = {};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return time.tv_sec * 1000 + time.tv_nsec / 1000000;
    }

    /// Counts the calls that reach an object through the event loop.
    class CallCounter : public QObject
    {
    public:
        explicit CallCounter(QObject* object) { object->installEventFilter(this); }

        bool eventFilter(QObject* object, QEvent* event) override
        {
            calls += event->type() == QEvent::MetaCall ? 1 : 0;
            return QObject::eventFilter(object, event);
        }

        int calls = 0;
    };

    /// The plugin's backend, bound to a tool whose device never answers by itself.
    struct Panel
    {
        Panel()
        {
            device.open();
            backend.setName("Bench"_s);
            deliver();
        }

        ManualScheduler scheduler;
        RecordingDevice device{&scheduler};
        const DTool tool{configuration(), PToolGpio(), &device};
        BeMaintenanceToolGpio backend;
    };

private Q_SLOTS:
    void aClickThatIsRefusedLetsTheProcessorRest_data()
    {
        const Rows<int> row("refused");
        row("one click", 1);
        row("ten clicks", 10);
    }
    void aClickThatIsRefusedLetsTheProcessorRest()
    {
        QFETCH(int, refused);
        Panel panel;
        QCOMPARE(panel.backend.channelsModel()->length(), c_channels);
        panel.backend.updateChannelsValue();
        for (int row = 0; row < c_channels + refused; ++row) {
            panel.backend.clickedOnChannel(row % c_channels);
        }

        const CallCounter counter(&panel.backend);
        const qint64 processorBefore = processorMs();
        QElapsedTimer clock;
        clock.start();
        QEventLoop loop;
        QTimer::singleShot(1000, &loop, &QEventLoop::quit);
        loop.exec();
        const double seconds = static_cast<double>(clock.elapsed()) / 1000;
        const double comebacks = counter.calls / seconds / refused;
        const double load = static_cast<double>(processorMs() - processorBefore) / 1000 / seconds;
        qInfo("each refused click came back %.1f times a second, at %.0f %% of a processor", comebacks,
              100 * load);
        QVERIFY(counter.calls >= refused);
        QVERIFY(comebacks <= 20);
        QVERIFY(load < 0.25);
    }

    void aClickGoesBeforeTheReadsThatWait()
    {
        Panel panel;
        panel.backend.updateChannelsValue();
        deliver();
        panel.backend.clickedOnChannel(7);
        panel.device.reply(panel.device.lastId(), {{"value"_s, 0}});
        deliver();
        QCOMPARE(panel.device.instructions(), (QStringList{"getValue"_s, "setValues"_s}));
        QCOMPARE(panel.device.requests.constLast().arguments.value("channel"_s), QVariant("line7"_s));
    }
};

QTEST_GUILESS_MAIN(TestRefusedClicks)
#include "test_refused_clicks.moc"
