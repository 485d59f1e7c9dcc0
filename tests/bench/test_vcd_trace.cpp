#include "literals.h"
#include "manual_scheduler.h"
#include "narrow_pipe.h"
#include "recording_client.h"

#include <devices/simulated_board.h>
#include <trace/vcd_trace.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <sys/time.h>
#include <thread>

namespace {

/// A board with a lamp, and a knob that is turned by hand, at the time 0.
class Board
{
public:
    Board()
        : m_device(makeSimulatedBoard(setup(), &m_time, DevicePlace::SameThread))
    {
        m_device->open();
    }

    LineDevice& device() { return *m_device; }
    void advance(qint64 us) { m_time.advance(us); }
    void turnKnob(int level) { m_device->setInput(1, level); }
    void drive(const char* instruction, int onMs = 0, int offMs = 0)
    {
        m_device->send(
            ++m_requests, QString::fromLatin1(instruction),
            {{"channel"_s, "lamp"_s}, {"values"_s, 1}, {"pulseOnWidth"_s, onMs}, {"pulseOffWidth"_s, offMs}},
            0, &m_client);
    }

private:
    static SimulatedBoardSetup setup()
    {
        SimulatedBoardSetup setup;
        setup.lines.append({{"lamp"_s, DLine::Kind::Digital, DLine::Direction::Out}, 0, std::nullopt});
        setup.lines.append({{"knob"_s, DLine::Kind::Analog, DLine::Direction::In}, 0, std::nullopt});
        return setup;
    }

    ManualScheduler m_time;
    RecordingClient m_client;
    std::unique_ptr<LineDevice> m_device;
    quint64 m_requests = 0;
};

/// A trace in a file of its own.
class FileTrace
{
public:
    explicit FileTrace(Board* board)
        : m_trace(board->device())
    {
        m_problem = m_trace.begin(m_folder.filePath("t.vcd"_s));
    }

    void end() { QCOMPARE(m_trace.end(), DWording()); }
    const DWording& problem() const { return m_problem; }
    /// What is in the file, from the time 0 on.
    QByteArray changes() const
    {
        const QByteArray text = this->text();
        return text.mid(text.indexOf("#0\n"));
    }
    QByteArray text() const
    {
        QFile file(m_folder.filePath("t.vcd"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_folder;
    VcdTrace m_trace;
    DWording m_problem;
};

const char* const c_start = "#0\n$dumpvars\n0!\nr0 \"\n$end\n";

std::atomic<int> alarms = {0};

/// Has the process interrupted by SIGALRM again and again, as long as it lives.
class Alarms
{
public:
    Alarms()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) { ++alarms; };
        sigaction(SIGALRM, &action, &m_before);
        set(20000);
    }
    ~Alarms()
    {
        set(0);
        sigaction(SIGALRM, &m_before, nullptr);
    }
    Q_DISABLE_COPY(Alarms)

private:
    static void set(suseconds_t intervalUs)
    {
        const struct itimerval interval = {{0, intervalUs}, {0, intervalUs}};
        setitimer(ITIMER_REAL, &interval, nullptr);
    }

    struct sigaction m_before = {};
};

} // namespace

/// The trace of a board whose time is moved by hand.
class TestVcdTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { std::signal(SIGPIPE, SIG_IGN); }

    void theHeadHasTheTimeThatTheOthersCountFrom()
    {
        Board board;
        board.advance(3723004005);
        const FileTrace file(&board);
        QCOMPARE(file.problem(), DWording());
        const QString date = QString::fromUtf8(file.text()).section(QLatin1Char(' '), 1, 1);
        QCOMPARE(QDateTime::fromString(date.left(19) + date.mid(26), Qt::ISODate).toSecsSinceEpoch(),
                 ManualScheduler::c_wallClockOffsetUs / 1000000 + 3723);
        QCOMPARE(date.mid(19, 7), ".004005"_s);
    }

    void theEdgesOfABlinkLieExactlyWhereTheDutyCyclePutsThem()
    {
        Board board;
        FileTrace file(&board);
        board.advance(1000);
        board.drive("setBlink", 300, 700);
        board.advance(2000000);
        file.end();
        QCOMPARE(file.changes(), c_start + QByteArray("#1000\n1!\n#301000\n0!\n#1001000\n1!\n#1301000\n0!\n"
                                                      "#2001000\n1!\n#2001000\n"));
    }

    void theFileIsWrittenATenthOfASecondLaterAtMost()
    {
        Board board;
        const FileTrace file(&board);
        board.drive("setValues");
        board.advance(99999);
        QCOMPARE(file.changes(), QByteArray(c_start));
        board.advance(1);
        QCOMPARE(file.changes(), c_start + QByteArray("1!\n"));
    }

    void levelsOfABoardThatIsAwayAreUnknown()
    {
        Board board;
        FileTrace file(&board);
        board.advance(5);
        board.device().setPluggedIn(false);
        board.advance(5);
        board.device().setPluggedIn(true);
        file.end();
        QCOMPARE(file.changes(), c_start + QByteArray("#5\nx!\nrnan \"\n#10\n0!\nr0 \"\n#10\n"));
    }

    /// The device says that three changes from 20 to 40 µs came too fast.
    void aGapThatTheDeviceLeavesIsMarked()
    {
        Board board;
        FileTrace file(&board);
        board.advance(10);
        board.turnKnob(5);
        Q_EMIT board.device().changesLost(3, 20, 40);
        board.advance(50);
        board.turnKnob(6);
        file.end();
        QCOMPARE(file.changes(),
                 c_start + QByteArray("#10\nr5 \"\n#20\n$dumpoff\nx!\nrnan \"\n$end\n#40\n"
                                      "$comment 3 changes lost $end\n$dumpon\n0!\nr5 \"\n$end\n"
                                      "#60\nr6 \"\n#60\n"));
    }

    /// Its reader reads nothing until so much waits that no more is taken.
    void aGapIsMarkedWhereChangesAreLost()
    {
        constexpr int changes = 600000;
        Board board;
        VcdTrace trace(board.device());
        NarrowPipe pipe(1 << 20); // goes first: the trace waits for no reader then
        QCOMPARE(trace.begin(pipe.file()), DWording());
        for (int change = 1; change <= changes; ++change) {
            board.advance(1000);
            board.turnKnob(60000 + change % 2);
        }
        QByteArray text;
        const auto isWrittenOut = [&] {
            text += pipe.read();
            board.advance(100000);
            return text.endsWith("$end\n") && text.contains("$dumpon");
        };
        QTRY_VERIFY_WITH_TIMEOUT(isWrittenOut(), 30000);
        board.turnKnob(7);
        QCOMPARE(trace.end(), DWording());
        text += pipe.read();
        const int kept = text.count("\nr6000") - 1; // the level after the gap is no change
        const QByteArray lost = QByteArray::number(changes - kept);
        const QByteArray gap = "\n#" + QByteArray::number((kept + 1) * 1000) +
                               "\n$dumpoff\nx!\nrnan \"\n$end\n#" + QByteArray::number(changes * 1000) +
                               "\n$comment " + lost + " changes lost $end\n$dumpon\n0!\nr60000 \"\n$end\n#";
        QVERIFY2(text.contains(gap), text.mid(text.indexOf("$dumpoff") - 40, 200).constData());
        QVERIFY(text.size() > 8 << 20);
        QVERIFY2(text.mid(text.lastIndexOf("$end\n")).contains("\nr7 \"\n#"), text.right(80).constData());
    }

    /// The reader begins when two alarms have come while the trace waits for it.
    void aSignalDoesNotEndTheWaitForAReader()
    {
        Board board;
        VcdTrace trace(board.device());
        NarrowPipe pipe; // goes first: the trace waits for no reader then
        QCOMPARE(trace.begin(pipe.file()), DWording());
        board.drive("setBlink", 1, 1);
        board.advance(10000 * 1000);
        sigset_t alarm;
        sigemptyset(&alarm);
        sigaddset(&alarm, SIGALRM);
        pthread_sigmask(SIG_BLOCK, &alarm, nullptr);
        std::atomic<bool> written = {false};
        QByteArray text;
        std::thread reader([&] {
            while (!written) {
                if (alarms >= 2) {
                    text += pipe.read();
                }
                std::this_thread::yield();
            }
        });
        pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
        {
            const Alarms interrupting;
            trace.end();
        }
        written = true;
        reader.join();
        text += pipe.read();
        QCOMPARE(trace.problem(), DWording());
        QVERIFY(alarms >= 2);
        QVERIFY(text.endsWith("#10000000\n"));
    }
};

QTEST_GUILESS_MAIN(TestVcdTrace)
#include "test_vcd_trace.moc"
