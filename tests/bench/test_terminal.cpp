#include "bench_process.h"
#include "literals.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The bench on a terminal of its own.
class Terminal
{
public:
    Terminal(const QStringList& arguments, const QString& home, bool hearsHangUp = true)
    {
        struct winsize size = {24, 100, 0, 0};
        m_process = forkpty(&m_terminal, nullptr, nullptr, &size);
        if (m_process == 0) {
            QByteArray file = benchFile().toLocal8Bit();
            std::vector<QByteArray> texts;
            for (const QString& argument : arguments) {
                texts.push_back(argument.toLocal8Bit());
            }
            std::vector<char*> argv = {file.data()};
            for (QByteArray& text : texts) {
                argv.push_back(text.data());
            }
            argv.push_back(nullptr);
            signal(SIGHUP, hearsHangUp ? SIG_DFL : SIG_IGN);
            setenv("TERM", "xterm", 1);
            setenv("XDG_DATA_HOME", home.toLocal8Bit().constData(), 1);
            execv(file.constData(), argv.data());
            _exit(127);
        }
    }
    ~Terminal()
    {
        kill(m_process, SIGKILL);
        close(m_terminal);
    }
    Q_DISABLE_COPY(Terminal)

    void type(const QByteArray& text)
    {
        QVERIFY(write(m_terminal, text.constData(), static_cast<size_t>(text.size())) > 0);
    }

    /// Waits until the screen has shown text since the last call.
    bool shows(const QByteArray& text)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 20000) {
            const int found = m_seen.indexOf(text);
            if (found >= 0) {
                m_seen.remove(0, found + text.size());
                return true;
            }
            if (!readMore()) {
                return m_seen.contains(text);
            }
        }
        qWarning("%s", m_seen.constData());
        return false;
    }

    /// What the screen has shown since it was last asked.
    const QByteArray& seen() const { return m_seen; }

    /// The terminal goes away, as when its window is closed. Returns the exit status.
    int hangUp()
    {
        close(m_terminal);
        m_terminal = -1;
        return exitStatus();
    }

    int end()
    {
        while (readMore()) {
        }
        return exitStatus();
    }

private:
    int exitStatus() const
    {
        int status = 0;
        waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    bool readMore()
    {
        struct pollfd waiting = {m_terminal, POLLIN, 0};
        if (poll(&waiting, 1, 1000) == 0) {
            return true;
        }
        char buffer[4096];
        const ssize_t count = read(m_terminal, buffer, sizeof(buffer));
        if (count <= 0) {
            return false;
        }
        m_seen.append(buffer, static_cast<int>(count));
        return true;
    }

    int m_terminal = -1;
    pid_t m_process = -1;
    QByteArray m_seen;
};

} // namespace

/// The bench on a terminal.
class TestTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theShellPromptsAndEndsWithTheInput();
    void commandsParametersChannelsAndStatesAreCompleted();
    void theHistoryLastsFromOneRunToTheNext();
    void eventsDoNotTearThePrompt();
    void aTerminalThatStandsStillHoldsNothingUp();
    void ctrlCAtThePromptStopsWhatRunsAndEnds();
    void ctrlCStopsWhatHoldsThePromptBack();
    void aFailureBesideThePromptBringsItBack();
    void aPulseShowsItsProgress();
    void noProgressIsShownWithJson();
    void aTerminalThatGoesAwayEndsTheShell_data();
    void aTerminalThatGoesAwayEndsTheShell();
    void aTerminalThatGoesAwayUnheardEndsTheShell();
};

void TestTerminal::theShellPromptsAndEndsWithTheInput()
{
    QTemporaryDir home;
    Terminal terminal({"shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("getValue channel=ALARM\n");
    QVERIFY(terminal.shows("[1] getValue: value=1"));
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("\x04");
    QCOMPARE(terminal.end(), 0);
}

void TestTerminal::commandsParametersChannelsAndStatesAreCompleted()
{
    QTemporaryDir home;
    Terminal terminal({"shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("setV\tch\tDO\tsta\tON\n");
    QVERIFY(terminal.shows("[1] setValue: doneOk=true"));
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("getV\tchannel=DOO\t\n");
    QVERIFY(terminal.shows("[2] getValue: value=1"));
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("startL\tch\tDO\ted\tH\t\n");
    QVERIFY(terminal.shows("lastValue=1 value=true"));
    terminal.type("stopL\tch\tDO\t\n");
    QVERIFY(terminal.shows("[4] stopListening: done"));
    terminal.type("quit\n");
    QCOMPARE(terminal.end(), 0);
}

void TestTerminal::theHistoryLastsFromOneRunToTheNext()
{
    QTemporaryDir home;
    {
        Terminal terminal({"shell"_s}, home.path());
        QVERIFY(terminal.shows("gpio> "));
        terminal.type("getValue channel=ALARM\n");
        QVERIFY(terminal.shows("value=1"));
        QVERIFY(terminal.shows("gpio> "));
        terminal.type("\x04");
        QCOMPARE(terminal.end(), 0);
    }
    Terminal terminal({"shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("\x1b[A");
    QVERIFY(terminal.shows("getValue channel=ALARM"));
    terminal.type("\n");
    QVERIFY(terminal.shows("[1] getValue: value=1"));
}

void TestTerminal::eventsDoNotTearThePrompt()
{
    QTemporaryDir home;
    Terminal terminal({"shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("startListening channel=TEMPERATURE\n");
    QVERIFY(terminal.shows("runs; \"stop 1\" ends it"));
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("getVal");
    QVERIFY(terminal.shows("lastValue="));
    QVERIFY(terminal.shows("gpio> getVal"));
    terminal.type("ue channel=ALARM\n");
    QVERIFY(terminal.shows("[2] getValue: value=1"));
}

/// As after Ctrl-S: its buffers are full soon.
void TestTerminal::aTerminalThatStandsStillHoldsNothingUp()
{
    QTemporaryDir home;
    const QString trace = home.filePath("t.vcd"_s);
    Terminal terminal({"--trace"_s, trace, "shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type(QByteArray("startListening channel=DOOR\n").repeated(20));
    QVERIFY(terminal.shows("[20] startListening runs"));
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("setValue channel=DOOR state=BLINK duration=2 dutyCycle=50\n");
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(trace).size() > 30000, 30000);
}

void TestTerminal::ctrlCAtThePromptStopsWhatRunsAndEnds()
{
    QTemporaryDir home;
    Terminal terminal({"shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("startListening channel=START\n");
    QVERIFY(terminal.shows("value=0"));
    terminal.type("\x03");
    QVERIFY(terminal.shows("[1] startListening: "));
    QCOMPARE(terminal.end(), 0);
}

void TestTerminal::ctrlCStopsWhatHoldsThePromptBack()
{
    QTemporaryDir home;
    Terminal terminal({"shell"_s, "--echo"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("sleep 80000000\n");
    QVERIFY(terminal.shows("> sleep 80000000\r\n"));
    terminal.type("\x03");
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("getValue channel=ALARM\n");
    QVERIFY(terminal.shows("[1] getValue: value=1"));
}

void TestTerminal::aFailureBesideThePromptBringsItBack()
{
    QTemporaryDir home;
    Terminal terminal({"--config"_s, example("fault_injection.json"_s), "shell"_s}, home.path());
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("getValue channel=DEAD &\n");
    QVERIFY(terminal.shows("runs; \"stop 1\" ends it"));
    QVERIFY(terminal.shows("gpio> "));
    terminal.type("getVal");
    QVERIFY(terminal.shows("\r\x1b[Kappvantor: [1] getValue failed"));
    QVERIFY(terminal.shows("gpio> getVal"));
}

void TestTerminal::noProgressIsShownWithJson()
{
    QTemporaryDir home;
    Terminal terminal(
        {"--json"_s, "run"_s, "setValue"_s, "channel=START"_s, "state=PULSE"_s, "duration=900"_s},
        home.path());
    QCOMPARE(terminal.end(), 0);
    QVERIFY(!terminal.seen().contains("PULSE ["));
    QVERIFY(terminal.seen().contains("\"success\":true"));
}

void TestTerminal::aPulseShowsItsProgress()
{
    QTemporaryDir home;
    Terminal terminal({"run"_s, "setValue"_s, "channel=START"_s, "state=PULSE"_s, "duration=900"_s},
                      home.path());
    QVERIFY(terminal.shows("PULSE [####"));
    QVERIFY(terminal.shows("of 0.9 s"));
    QVERIFY(terminal.shows("\r\x1b[K[1] setValue: doneOk=true"));
    QCOMPARE(terminal.end(), 0);
}

void TestTerminal::aTerminalThatGoesAwayEndsTheShell_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("sign");
    QTest::addColumn<int>("status");
    QTest::newRow("at the prompt") << QByteArray() << QByteArray("gpio> ") << 0;
    QTest::newRow("beside an order") << QByteArray("listenToAll\n") << QByteArray("value=") << 1;
    QTest::newRow("in a sleep") << QByteArray("sleep 80000000\n") << QByteArray("> sleep 80000000\r\n") << 0;
    QTest::newRow("in a pulse") << QByteArray("setValue channel=START state=PULSE duration=60000\n")
                                << QByteArray("duration=60000\r\n") << 1;
}

/// What then runs ends as by any signal; what is left to say has nowhere to go.
void TestTerminal::aTerminalThatGoesAwayEndsTheShell()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, sign);
    QFETCH(int, status);
    QTemporaryDir home;
    Terminal terminal({"shell"_s, "--echo"_s}, home.path());
    if (!line.isEmpty()) {
        QVERIFY(terminal.shows("gpio> "));
        terminal.type(line);
    }
    QVERIFY(terminal.shows(sign));
    QCOMPARE(terminal.hangUp(), status);
}

/// As with nohup.
void TestTerminal::aTerminalThatGoesAwayUnheardEndsTheShell()
{
    QTemporaryDir home;
    Terminal terminal({"shell"_s}, home.path(), false);
    QVERIFY(terminal.shows("gpio> "));
    QCOMPARE(terminal.hangUp(), 0);
}

QTEST_GUILESS_MAIN(TestTerminal)
#include "test_terminal.moc"
