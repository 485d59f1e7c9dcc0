#include "narrow_pipe.h"

#include <devices/simulated_board.h>
#include <plugin_management/d_device.h>
#include <trace/vcd_trace.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <sys/time.h>
#include <thread>

namespace {

class NoClient final : public DDeviceClient
{
public:
    void requestReplied(quint64 id, const QVariantMap& reply) override
    {
        Q_UNUSED(id)
        Q_UNUSED(reply)
    }
    void requestFailed(quint64 id, const QString& reason) override
    {
        Q_UNUSED(id)
        Q_UNUSED(reason)
    }
};

SimulatedBoardSetup oneLine()
{
    SimulatedBoardSetup setup;
    setup.lines.append(
        {{QStringLiteral("lamp"), DLine::Kind::Digital, DLine::Direction::Out}, 0, std::nullopt});
    return setup;
}

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

/// The trace of a blinking line that is some pages long.
void blinkFor10000Phases(SimulatedBoard* board, ManualScheduler* time, DDeviceClient* client)
{
    board->send(1, QStringLiteral("setBlink"),
                {{QStringLiteral("channel"), QStringLiteral("lamp")},
                 {QStringLiteral("values"), 1},
                 {QStringLiteral("pulseOnWidth"), 1},
                 {QStringLiteral("pulseOffWidth"), 1}},
                0, client);
    time->advance(10000 * 1000);
}

} // namespace

/// The trace of a board whose time is moved by hand.
class TestVcdTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theEdgesOfABlinkLieExactlyWhereTheDutyCyclePutsThem();
    void theFileIsWrittenATenthOfASecondLaterAtMost();
    void aSignalDoesNotEndTheWaitForAReader();
};

void TestVcdTrace::theEdgesOfABlinkLieExactlyWhereTheDutyCyclePutsThem()
{
    const QTemporaryDir folder;
    ManualScheduler time;
    SimulatedBoard board(oneLine(), &time);
    VcdTrace trace(board);
    QCOMPARE(trace.begin(folder.filePath(QStringLiteral("t.vcd"))), QString());
    NoClient client;
    time.advance(1000);
    board.send(1, QStringLiteral("setBlink"),
               {{QStringLiteral("channel"), QStringLiteral("lamp")},
                {QStringLiteral("values"), 1},
                {QStringLiteral("pulseOnWidth"), 300},
                {QStringLiteral("pulseOffWidth"), 700}},
               0, &client);
    time.advance(2000000);
    QCOMPARE(trace.end(), QString());
    QFile file(folder.filePath(QStringLiteral("t.vcd")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QCOMPARE(text.mid(text.indexOf("#0\n")),
             QByteArray("#0\n$dumpvars\n0!\n$end\n#1000\n1!\n#301000\n0!\n#1001000\n1!\n"
                        "#1301000\n0!\n#2001000\n1!\n#2001000\n"));
}

void TestVcdTrace::theFileIsWrittenATenthOfASecondLaterAtMost()
{
    const QTemporaryDir folder;
    ManualScheduler time;
    SimulatedBoard board(oneLine(), &time);
    VcdTrace trace(board);
    const QString name = folder.filePath(QStringLiteral("t.vcd"));
    QCOMPARE(trace.begin(name), QString());
    NoClient client;
    board.send(1, QStringLiteral("setValues"),
               {{QStringLiteral("channel"), QStringLiteral("lamp")}, {QStringLiteral("values"), 1}}, 0,
               &client);
    const auto isWritten = [&name] {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) && file.readAll().endsWith("$end\n1!\n");
    };
    QVERIFY(!isWritten());
    QTRY_VERIFY(isWritten());
}

/// The reader begins when two alarms have come while the trace waits for it.
void TestVcdTrace::aSignalDoesNotEndTheWaitForAReader()
{
    NarrowPipe pipe;
    ManualScheduler time;
    SimulatedBoard board(oneLine(), &time);
    VcdTrace trace(board);
    QCOMPARE(trace.begin(pipe.file()), QString());
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
    NoClient client;
    QString problem;
    {
        const Alarms interrupting;
        blinkFor10000Phases(&board, &time, &client);
        problem = trace.end();
    }
    written = true;
    reader.join();
    text += pipe.read();
    QCOMPARE(problem, QString());
    QVERIFY(alarms >= 2);
    QVERIFY(text.endsWith("#10000000\n"));
}

QTEST_GUILESS_MAIN(TestVcdTrace)
#include "test_vcd_trace.moc"
