#include "boards.h"
#include "recording_client.h"
#include "rows.h"
#include "workbench.h"

/// A board in real time, wherever it lives: what must happen is waited for, and never comes too early.
class TestPlaces : public QObject
{
    Q_OBJECT

    static inline const QVariantMap c_in = {{"channel"_s, "in"_s}};
    static inline const QVariantMap c_out = {{"channel"_s, "out"_s}};
    static inline const QVariantMap c_high = {{"channel"_s, "out"_s}, {"values"_s, 1}};
    static inline const QString c_unplugged = "the simulated board is unplugged"_s;

    static QVariantMap blink(const QString& channel, int widthMs)
    {
        return {{"channel"_s, channel},
                {"values"_s, 1},
                {"pulseOnWidth"_s, widthMs},
                {"pulseOffWidth"_s, widthMs}};
    }

private Q_SLOTS:
    void initTestCase_data()
    {
        const Rows<int> row("place");
        row("same thread", static_cast<int>(DevicePlace::SameThread));
        row("own thread", static_cast<int>(DevicePlace::OwnThread));
        row("real-time thread", static_cast<int>(DevicePlace::RealtimeThread));
    }

    void init()
    {
        m_scheduler = std::make_unique<DSteadyScheduler>();
        m_client = std::make_unique<RecordingClient>();
        make(boardOf({output("out"_s), input("in"_s, 1), input("echo"_s)}, {{0, 2, 0, false}}));
    }

    void cleanup() { m_board.reset(); }

    void levelsAreUnknownUntilTheBoardIsThere()
    {
        QCOMPARE(m_board->state(), DDevice::State::Closed);
        QVERIFY(!m_board->level(1).known);
        QVector<bool> knownWhenTold;
        connect(m_board.get(), &DDevice::stateChanged, this, [&] {
            if (m_board->isConnected()) {
                knownWhenTold.append(m_board->level(1).known);
            }
        });
        m_board->open();
        QTRY_COMPARE(knownWhenTold, QVector<bool>{true});
        QCOMPARE(m_board->level(1).level, 1);
    }

    void requestsAreAnsweredInTheirOrder()
    {
        m_board->open();
        const qint64 before = m_scheduler->now();
        send(1, "setValues"_s, c_high);
        send(2, "getValue"_s, c_out);
        send(3, "getValue"_s, {{"channel"_s, "nowhere"_s}});
        send(4, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->heard.size(), 4);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2, 3, 4}));
        QCOMPARE(m_client->replied("value"_s), (QVariantList{1, 1}));
        QCOMPARE(m_client->failures(), QStringList{"unknown channel \"nowhere\""_s});
        QVERIFY(m_client->heard.at(0).timeUs >= before);
        QVERIFY(m_client->heard.at(3).timeUs <= m_scheduler->now());
        QCOMPARE(m_board->pendingRequests(), 0);
    }

    void listenersHearEachChangeUntilTheyAreCancelled()
    {
        m_board->open();
        send(1, "listenEvents"_s, c_in);
        for (const int level : {0, 1, 0}) {
            m_board->setInput(1, level);
        }
        send(2, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->heard.size(), 5);
        QCOMPARE(m_client->replied("values"_s, 1),
                 (QVariantList{QVariantList{1}, QVariantList{0}, QVariantList{1}, QVariantList{0}}));
        m_board->cancel(1);
        m_board->setInput(1, 1);
        send(3, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->ids(), (QVector<quint64>{1, 1, 1, 1, 2, 3}));
    }

    void aBlinkingLineIsHeardAndNeverTooEarly()
    {
        m_board->open();
        send(1, "listenEvents"_s, {{"channel"_s, "echo"_s}});
        const qint64 start = m_scheduler->now();
        send(2, "setBlink"_s, blink("out"_s, 20));
        QTRY_VERIFY(m_client->heard.size() >= 7);
        m_board->close();
        int phase = -1; // its level at first is no phase of it
        qint64 last = 0;
        for (const auto& what : qAsConst(m_client->heard)) {
            if (what.id == 1 && !what.failure) {
                QVERIFY(phase < 0 || what.timeUs >= start + phase * qint64{20000});
                QVERIFY(what.timeUs >= last);
                last = what.timeUs;
                ++phase;
            }
        }
    }

    void aSilentLineRunsIntoTheTimeLimit()
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s)});
        setup.faults = {{SimulatedBoardSetup::Fault::Kind::Silent, {}, {}, 0}};
        make(setup);
        m_board->open();
        m_board->send(1, "getValue"_s, c_out, 10, m_client.get());
        QTRY_COMPARE(m_client->failures(),
                     QStringList{"no reply to \"getValue\" of channel \"out\" within 10 ms"_s});
    }

    void aLateLineAnswersWithinTheTimeLimit()
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s)});
        setup.faults = {{SimulatedBoardSetup::Fault::Kind::Late, {}, {}, 10000}};
        make(setup);
        m_board->open();
        const qint64 start = m_scheduler->now();
        m_board->send(1, "getValue"_s, c_out, 5000, m_client.get());
        QTRY_COMPARE(m_client->replied("value"_s), QVariantList{0});
        QVERIFY(m_client->heard.constFirst().timeUs >= start + 10000);
    }

    void unpluggingFailsWhatIsPendingAndForgetsTheLevels()
    {
        m_board->open();
        send(1, "listenEvents"_s, c_in);
        QTRY_COMPARE(m_client->heard.size(), 1);
        m_board->setPluggedIn(false);
        QTRY_COMPARE(m_client->failures(), QStringList{c_unplugged});
        QCOMPARE(m_board->connectionProblem().english(), c_unplugged);
        QVERIFY(!m_board->level(1).known);
        m_board->setPluggedIn(true);
        QTRY_VERIFY(m_board->isConnected());
        QVERIFY(m_board->level(1).known);
        send(2, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->replied("value"_s), QVariantList{1});
    }

    void closingFailsWhatIsPendingAndNothingFollows()
    {
        m_board->open();
        send(1, "setBlink"_s, blink("out"_s, 1));
        send(2, "listenEvents"_s, c_out);
        QTRY_VERIFY(m_client->heard.size() >= 5);
        m_board->close();
        QCOMPARE(m_board->state(), DDevice::State::Closed);
        QVERIFY(!m_board->level(0).known);
        QSignalSpy lines(m_board.get(), &LineDevice::lineChanged);
        QSignalSpy states(m_board.get(), &DDevice::stateChanged);
        QTRY_COMPARE(m_client->failures(), QStringList{"the device was closed"_s});
        m_board->open();
        send(3, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->heard.constLast().id, quint64{3});
        QCOMPARE(lines.count(), 3); // each line once, when the board was there again
        QCOMPARE(states.count(), 2);
        QVERIFY(m_board->isConnected());
    }

    void aBoardClosedAtOnceStaysClosed()
    {
        QVector<DDevice::State> states;
        connect(m_board.get(), &DDevice::stateChanged, this, [&] {
            if (m_board->state() != DDevice::State::Connecting) {
                states.append(m_board->state());
            }
        });
        m_board->open();
        m_board->close();
        QVERIFY(states.endsWith(DDevice::State::Closed));
        states.clear();
        send(1, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->failures(), QStringList{"the device is closed"_s});
        m_board->open();
        send(2, "getValue"_s, c_in);
        QTRY_COMPARE(m_client->replied("value"_s), QVariantList{1});
        QCOMPARE(states, QVector<DDevice::State>{DDevice::State::Connected});
    }

    void aBoardMayGoWhileItIsBusy()
    {
        m_board->open();
        send(1, "listenToAll"_s, {});
        send(2, "setBlink"_s, blink("out"_s, 1));
        QTRY_VERIFY(m_client->heard.size() >= 10);
        for (quint64 id = 3; id < 1000; ++id) {
            send(id, "getValue"_s, c_in);
        }
        m_board.reset();
        const int heard = m_client->heard.size();
        QCOMPARE(m_client->failures().count("the device is gone"_s), 998);
        deliver();
        QCOMPARE(m_client->heard.size(), heard);
    }

    void aBoardMayGoBeforeItIsOpened()
    {
        send(1, "getValue"_s, c_in);
        m_board.reset();
        QCOMPARE(m_client->failures(), QStringList{"the device is gone"_s});
    }

    void thePresentLevelsAreToldAfterAFrontWasBusy()
    {
        m_board->open();
        send(1, "setBlink"_s, blink("out"_s, 1));
        QTRY_COMPARE(m_client->heard.size(), 1);
        QElapsedTimer busy;
        busy.start();
        while (!busy.hasExpired(50)) {
        }
        send(2, "setValues"_s, c_high);
        QTRY_COMPARE(m_client->heard.size(), 2);
        QCOMPARE(m_board->level(0).level, 1);
        QCOMPARE(m_board->level(2).level, 1);
    }

private:
    void make(const SimulatedBoardSetup& setup)
    {
        QFETCH_GLOBAL(int, place);
        m_board = makeSimulatedBoard(setup, m_scheduler.get(), static_cast<DevicePlace>(place));
    }

    void send(quint64 id, const QString& instruction, const QVariantMap& arguments)
    {
        m_board->send(id, instruction, arguments, 0, m_client.get());
    }

    std::unique_ptr<DSteadyScheduler> m_scheduler;
    std::unique_ptr<RecordingClient> m_client;
    std::unique_ptr<LineDevice> m_board;
};

QTEST_GUILESS_MAIN(TestPlaces)
#include "test_places.moc"
