#include "board_bench.h"
#include "rows.h"

#include <devices/line_engine.h>

namespace {

const DFailure c_burnt = {DFailure::Kind::RefusedByDevice, DWording::told("the driver is burnt"_s)};

/// Lines that can be driven and read until the test breaks them.
class BreakableLines : public LineEngine
{
public:
    BreakableLines(const QVector<DLine>& lines, DScheduler* scheduler, LineListener* listener)
        : LineEngine(lines, scheduler, listener)
    {}

    void open() override
    {
        for (int line = 0; line < lines().size(); ++line) {
            setLevel(line, 0, scheduler()->now());
        }
        setConnected(scheduler()->now());
    }

    using LineEngine::setLevel;
    using LineEngine::setUnreadable;

    DFailure failure; ///< of each drive
    int drives = 0;

protected:
    DFailure drive(int line, int level, qint64 timeUs) override
    {
        ++drives;
        if (!failure) {
            setLevel(line, level, timeUs);
        }
        return failure;
    }
};

} // namespace

/// What a device of lines does with the failures of its lines.
class TestLineEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const SimulatedBoardSetup setup = boardOf({output("out"_s), input("in"_s), analogInput("adc"_s)});
        m_device = std::make_unique<LineDevice>(
            "Breakable"_s, SimulatedBoard::linesOf(setup), &m_scheduler, DevicePlace::SameThread,
            [&](DScheduler* scheduler, LineListener* listener) {
                auto made =
                    std::make_unique<BreakableLines>(SimulatedBoard::linesOf(setup), scheduler, listener);
                m_lines = made.get();
                return made;
            },
            OutputsAtEnd::Vanish);
        m_problems = std::make_unique<QSignalSpy>(m_device.get(), &DDevice::problemTold);
        m_device->open();
        m_client.heard.clear();
    }

    void cleanup() { m_device.reset(); }

    void aDriveThatFailsFailsItsRequest_data()
    {
        const Rows<QString> row("instruction");
        row("setValues", "setValues");
        row("setBlink", "setBlink");
    }
    void aDriveThatFailsFailsItsRequest()
    {
        QFETCH(QString, instruction);
        m_lines->failure = c_burnt;
        send(1, instruction, c_blink);
        QCOMPARE(m_client.failures(), QStringList{c_burnt.text.english()});
        QCOMPARE(m_lines->drives, 1);
        QVERIFY(m_problems->isEmpty());
        advanceMs(100);
        QCOMPARE(m_lines->drives, 1);
    }

    void aBlinkWhoseDriveFailsIsToldOnceAndEnds()
    {
        send(1, "setBlink"_s, c_blink);
        advanceMs(25);
        m_lines->failure = c_burnt;
        const int drives = m_lines->drives;
        advanceMs(1000);
        QCOMPARE(m_lines->drives, drives + 1);
        QCOMPARE(m_problems->count(), 1);
        QCOMPARE(m_problems->at(0).at(0).value<DWording>().english(),
                 "line \"out\" blinks no more: the driver is burnt"_s);
        m_lines->failure = {};
        send(2, "setBlink"_s, c_blink);
        advanceMs(10);
        QCOMPARE(m_lines->drives, drives + 3);
    }

    void aLineThatCannotBeReadIsUnknownAndFailsWhoDependsOnIt()
    {
        QSignalSpy changed(m_device.get(), &LineDevice::lineChanged);
        send(1, "listenEvents"_s, {{"channel"_s, "in"_s}});
        send(2, "listenEvents"_s, {{"channel"_s, "out"_s}});
        send(3, "listenToAll"_s, {});
        m_client.heard.clear();
        advanceMs(7);
        const qint64 now = m_scheduler.now();
        m_lines->setUnreadable(1, c_burnt);
        m_lines->setUnreadable(1, c_burnt);
        QCOMPARE(m_problems->count(), 1);
        QCOMPARE(m_problems->at(0).at(0).value<DWording>().english(), c_burnt.text.english());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_device->level(1), (LineLevel{0, now, false}));
        for (const char* instruction : {"getValue", "listenEvents", "listenToAll"}) {
            send(10, QString::fromLatin1(instruction), {{"channel"_s, "in"_s}});
        }
        QCOMPARE(m_client.ids(), (QVector<quint64>{1, 3, 10, 10, 10}));
        QCOMPARE(m_client.failures().count(c_burnt.text.english()), 5);
        QCOMPARE(m_device->pendingRequests(), 1);
        send(1, "listenEvents"_s, {{"channel"_s, "out"_s}});
        m_client.heard.clear();
        m_lines->setLevel(1, 1, now);
        deliver();
        QVERIFY(m_client.heard.isEmpty()); // of a listener that is over
    }

    void anEventIsTrueSinceTheDeviceSawIt()
    {
        send(1, "listenEvents"_s, {{"channel"_s, "in"_s}});
        send(2, "listenToAll"_s, {});
        m_client.heard.clear();
        advanceMs(7);
        m_lines->setLevel(1, 1, 123);
        deliver();
        QCOMPARE(m_device->level(1).sinceUs, qint64{123});
        QCOMPARE(m_client.heard.size(), 2);
        QCOMPARE(m_client.heard.at(0).timeUs, qint64{123});
        QCOMPARE(m_client.heard.at(1).timeUs, qint64{123});
    }

    void aLineThatCanBeReadAgainIsKnownAgain()
    {
        m_lines->setUnreadable(1, c_burnt);
        m_lines->setLevel(1, 0, 20);
        QCOMPARE(m_device->level(1), (LineLevel{0, 20, true}));
        send(1, "listenToAll"_s, {});
        send(2, "getValue"_s, {{"channel"_s, "in"_s}});
        QVERIFY(m_client.failures().isEmpty());
    }

    void anAnalogueLineThatCannotBeReadLeavesTheBinaryNumber()
    {
        send(1, "listenToAll"_s, {});
        m_lines->setUnreadable(2, c_burnt);
        send(2, "listenToAll"_s, {});
        QVERIFY(m_client.failures().isEmpty());
        QCOMPARE(m_device->pendingRequests(), 2);
    }

private:
    void send(quint64 id, const QString& instruction, const QVariantMap& arguments)
    {
        m_device->send(id, instruction, arguments, 0, &m_client);
        deliver();
    }

    void advanceMs(qint64 ms)
    {
        m_scheduler.advance(ms * 1000);
        deliver();
    }

    const QVariantMap c_blink = {
        {"channel"_s, "out"_s}, {"values"_s, 1}, {"pulseOnWidth"_s, 10}, {"pulseOffWidth"_s, 10}};

    ManualScheduler m_scheduler;
    RecordingClient m_client;
    std::unique_ptr<LineDevice> m_device;
    BreakableLines* m_lines = nullptr;
    std::unique_ptr<QSignalSpy> m_problems;
};

QTEST_GUILESS_MAIN(TestLineEngine)
#include "test_line_engine.moc"
