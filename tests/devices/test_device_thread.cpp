#include "boards.h"
#include "recording_client.h"
#include "rows.h"
#include "workbench.h"

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

/// The link between a device in a thread of its own and its front.
class TestDeviceThread : public QObject
{
    Q_OBJECT

    static constexpr int c_bound = 1 << 16;
    static constexpr int c_lines = 3;

    using State = DDevice::State;

    /// A device in the thread of its own, which does there what the test says.
    class ScriptedDriver : public LineDriver
    {
    public:
        using Deed = std::function<void(LineListener&)>;

        ScriptedDriver(LineListener* listener, const Deed& onRequest)
            : m_listener(*listener)
            , m_onRequest(onRequest)
        {}

        void open() override
        {
            for (int line = 0; line < c_lines; ++line) {
                m_listener.lineTold(line, {0, 0, true});
            }
            m_listener.stateTold(State::Connected, {}, 0);
        }
        void close() override {}
        void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override
        {
            Q_UNUSED(arguments)
            if (instruction == QLatin1String("work")) {
                m_onRequest(m_listener);
                m_listener.requestAnswered(id, {}, 0);
            }
        }
        void cancel(quint64 id) override { Q_UNUSED(id) }
        void setInput(int line, int level) override
        {
            Q_UNUSED(line)
            Q_UNUSED(level)
        }
        void setPluggedIn(bool pluggedIn) override { Q_UNUSED(pluggedIn) }

    private:
        LineListener& m_listener;
        const Deed m_onRequest;
    };

    /// From now on the system grants this process no real-time priority.
    static bool giveUpRealtime()
    {
        const rlimit none = {};
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct rights[_LINUX_CAPABILITY_U32S_3] = {};
        if (setrlimit(RLIMIT_RTPRIO, &none) != 0 || syscall(SYS_capget, &header, rights) != 0) {
            return false;
        }
        rights[0].effective &= ~(1U << CAP_SYS_NICE);
        return syscall(SYS_capset, &header, rights) == 0;
    }

    /// Sends a line its levels, 1 and 0 in turn.
    static void flicker(LineListener& listener, int line, int count)
    {
        for (int change = 1; change <= count; ++change) {
            listener.lineTold(line, {change % 2, change, true});
        }
    }

private Q_SLOTS:
    void cleanup() { m_device.reset(); }

    void theDeviceLivesInItsOwnThread()
    {
        QThread* thread = QThread::currentThread();
        make([&thread](LineListener&) { thread = QThread::currentThread(); });
        work();
        QVERIFY(thread != QThread::currentThread());
    }

    void changesPastTheBoundAreCountedAndMadeUpFor()
    {
        make([](LineListener& listener) {
            flicker(listener, 0, c_bound + 5);
            flicker(listener, 1, 7);
        });
        int changes = 0;
        connect(m_device.get(), &LineDevice::lineChanged, this, [&changes] { ++changes; });
        const QSignalSpy lost(m_device.get(), &LineDevice::changesLost);
        connect(m_device.get(), &LineDevice::changesLost, this, [&] {
            QCOMPARE(changes, c_bound); // it stands where the changes are missing
            QCOMPARE(m_device->level(1).sinceUs, qint64{7});
        });
        work();
        QCOMPARE(lost, (QList<QVariantList>{{quint64{12}, qint64{1}, qint64{c_bound + 5}}}));
        QCOMPARE(m_problems, QStringList{"12 changes of lines came too fast and were left out"_s});
        QCOMPARE(changes, c_bound + 2);
        QCOMPARE(m_device->level(0).sinceUs, qint64{c_bound + 5});
        changes = 0;
        work(); // what fell out once is told once
        QCOMPARE(lost.size(), 2);
    }

    void aLossOfTheDeviceStandsWhereItWasTold()
    {
        make([](LineListener& listener) {
            flicker(listener, 0, 2);
            listener.changesLeftOut(3, 2, {{1, {1, 7, true}}});
            flicker(listener, 0, 1);
        });
        QStringList told;
        connect(m_device.get(), &LineDevice::lineChanged, this, [&told](int line, const LineLevel& level) {
            told.append("%1 at %2"_s.arg(line).arg(level.sinceUs));
        });
        connect(m_device.get(), &LineDevice::changesLost, this,
                [&told](quint64 count, qint64 fromUs, qint64 untilUs) {
                    told.append("%1 lost from %2 until %3"_s.arg(count).arg(fromUs).arg(untilUs));
                });
        work();
        QCOMPARE(told,
                 (QStringList{"0 at 1"_s, "0 at 2"_s, "3 lost from 2 until 7"_s, "1 at 7"_s, "0 at 1"_s}));
        QCOMPARE(m_problems, QStringList()); // the device tells why
    }

    void eventsPastTheBoundAreCountedForEachRequest()
    {
        make([](LineListener& listener) {
            flicker(listener, 0, c_bound - 1);
            for (int event = 1; event <= 4; ++event) {
                listener.eventTold(1, {}, event);
                listener.eventTold(2, {}, event);
            }
        });
        m_device->send(1, "listenToAll"_s, {}, 0, &m_listener);
        m_device->send(2, "listenToAll"_s, {}, 0, &m_listener);
        work();
        QCOMPARE(m_listener.ids(), QVector<quint64>{1});
        QCOMPARE(m_listener.lost, (QVector<QPair<quint64, quint64>>{{1, 3}, {2, 4}}));
        QVERIFY(m_problems.isEmpty()); // it is told to who asked
    }

    void answersFailuresAndStatesAreNeverLeftOut()
    {
        make([](LineListener& listener) {
            flicker(listener, 0, c_bound);
            listener.requestAnswered(1, {{"value"_s, 5}}, 0);
            listener.requestRefused(2, {DFailure::Kind::RefusedByDevice, DWording::told("burnt"_s)});
            listener.failureTold(DWording::told("smoke"_s));
        });
        RecordingClient client;
        m_device->send(1, "wait"_s, {}, 0, &client);
        m_device->send(2, "wait"_s, {}, 0, &client);
        work();
        QCOMPARE(client.ids(), (QVector<quint64>{1, 2}));
        QCOMPARE(client.failures(), QStringList{"burnt"_s});
        QCOMPARE(m_problems, QStringList{"smoke"_s});
    }

    void aStateIsToldAfterTheLevelsThatWereLeftOut()
    {
        make([](LineListener& listener) {
            flicker(listener, 0, c_bound);
            listener.lineTold(1, {1, 5, true});
            listener.stateTold(State::Unreachable, DWording::told("cable pulled"_s), 9);
        });
        bool knownWhenLost = true;
        connect(m_device.get(), &DDevice::stateChanged, this,
                [&] { knownWhenLost = m_device->level(0).known || m_device->level(1).known; });
        work();
        QCOMPARE(m_device->state(), State::Unreachable);
        QVERIFY(!knownWhenLost);
        QVERIFY(!m_device->level(1).known);
        QCOMPARE(m_device->level(1).sinceUs, qint64{9});
    }

    /// The device goes on meanwhile: what it tells waits for the batch on its way, up to the bound.
    void aBusyFrontIsSentOneBatchAtATime()
    {
        QSemaphore done;
        make([&done](LineListener& listener) {
            flicker(listener, 0, c_bound);
            done.release();
        });
        RecordingClient client;
        for (quint64 id = 1; id <= 3; ++id) {
            m_device->send(id, "work"_s, {}, 0, &client);
            done.acquire(); // this thread's event loop stands meanwhile
        }
        QTRY_COMPARE(client.heard.size(), 3);
        QCOMPARE(m_problems,
                 QStringList{"%1 changes of lines came too fast and were left out"_s.arg(c_bound)});
    }

    void theFrontMayGoWhereAChangeIsTold_data()
    {
        const Rows<QByteArray> row("signal");
        row("level", QByteArray(SIGNAL(lineChanged(int, LineLevel))));
        row("state", QByteArray(SIGNAL(stateChanged())));
        row("problem", QByteArray(SIGNAL(problemTold(DWording))));
        row("loss", QByteArray(SIGNAL(changesLost(quint64, qint64, qint64))));
    }
    void theFrontMayGoWhereAChangeIsTold()
    {
        QFETCH(QByteArray, signal);
        make([](LineListener& listener) {
            flicker(listener, 0, 10);
            listener.changesLeftOut(3, 10, {{0, {1, 11, true}}});
            listener.failureTold(DWording::told("smoke"_s));
            listener.stateTold(State::Unreachable, DWording::told("cable pulled"_s), 0);
            flicker(listener, 0, 10);
        });
        RecordingClient client;
        m_device->send(1, "work"_s, {}, 0, &client);
        QVERIFY(connect(m_device.get(), signal.constData(), this, SLOT(endDevice())));
        QTRY_VERIFY(m_device == nullptr);
        QCOMPARE(client.failures().size(), 1);
    }

    void theFrontMayGoWhereALevelIsForgotten_data()
    {
        const Rows<bool> row("lost");
        row("lost", true);
        row("closed", false);
    }
    void theFrontMayGoWhereALevelIsForgotten()
    {
        QFETCH(bool, lost);
        make([](LineListener& listener) {
            listener.stateTold(State::Unreachable, DWording::told("cable pulled"_s), 0);
        });
        connect(m_device.get(), &LineDevice::lineChanged, this, &TestDeviceThread::endDevice);
        if (lost) {
            RecordingClient client;
            m_device->send(1, "work"_s, {}, 0, &client);
            QTRY_VERIFY(m_device == nullptr);
        } else {
            m_device->close();
        }
        QVERIFY(m_device == nullptr);
    }

    /// The last: it takes a right from this process.
    void aPriorityThatIsNotGrantedIsTold()
    {
        QVERIFY(giveUpRealtime());
        make({}, DevicePlace::RealtimeThread);
        QTRY_COMPARE(m_problems.size(), 1);
        QVERIFY2(m_problems.constFirst().startsWith("the system grants no real-time priority: "_s),
                 qPrintable(m_problems.constFirst()));
        QVERIFY(m_device->isConnected());
    }

public Q_SLOTS:
    void endDevice() { m_device.reset(); }

private:
    /// Makes the device, and waits until it is there.
    void make(const ScriptedDriver::Deed& onRequest, DevicePlace place = DevicePlace::OwnThread)
    {
        m_problems.clear();
        m_device = std::make_unique<LineDevice>(
            "Scripted"_s, SimulatedBoard::linesOf(digitalOutputs(c_lines)), &m_scheduler, place,
            [onRequest](DScheduler*, LineListener* listener) {
                return std::make_unique<ScriptedDriver>(listener, onRequest);
            },
            OutputsAtEnd::Vanish);
        connect(m_device.get(), &DDevice::problemTold, this,
                [this](const DWording& text) { m_problems.append(text.english()); });
        m_device->open();
        QTRY_VERIFY(m_device->isConnected());
    }

    /// Lets the device do its deed, and waits until all of it has been told.
    void work()
    {
        RecordingClient client;
        m_device->send(1000, "work"_s, {}, 0, &client);
        QTRY_COMPARE(client.heard.size(), 1);
        deliver();
    }

    ManualScheduler m_scheduler;
    RecordingClient m_listener; ///< of requests that end with the device
    std::unique_ptr<LineDevice> m_device;
    QStringList m_problems;
};

QTEST_GUILESS_MAIN(TestDeviceThread)
#include "test_device_thread.moc"
