#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <optional>
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

    /// Types text and waits until the screen has shown all this, in this order.
    bool answers(const QByteArray& text, const QByteArrayList& shown)
    {
        type(text);
        return std::all_of(shown.cbegin(), shown.cend(),
                           [this](const QByteArray& part) { return shows(part); });
    }

    /// Stops its output, or lets it go on, as tcflow does.
    void flow(int action)
    {
        const int slave = open(ptsname(m_terminal), O_RDWR | O_NOCTTY);
        QCOMPARE(tcflow(slave, action), 0);
        close(slave);
    }

    void send(int signal) { kill(m_process, signal); }

    /// What the screen has shown since it was last asked.
    const QByteArray& seen() const { return m_seen; }

    /// Waits for the end.
    int exitStatus() const
    {
        int status = 0;
        waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

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
    void init() { m_home.emplace(); }

    void commandsParametersChannelsAndStatesAreCompleted()
    {
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("setV\tch\tDO\tsta\tON\n", {"[1] setValue: doneOk=true", "gpio> "}));
        QVERIFY(terminal.answers("getV\tchannel=DOO\t\n", {"[2] getValue: value=1", "gpio> "}));
        QVERIFY(terminal.answers("startL\tch\tDO\ted\tH\t\n", {"lastValue=1 value=true"}));
        QVERIFY(terminal.answers("stopL\tch\tDO\t\n", {"[4] stopListening: done"}));
        QVERIFY(terminal.answers("let L = DOO\t\n", {"gpio> "}));
        QVERIFY(terminal.answers("let M=AL\t\nget M\n", {"ALARM=ON", "gpio> "}));
        QVERIFY(terminal.answers("exp\tL=O\tN\twit\t50\n", {"L=ON", "gpio> "}));
        QVERIFY(terminal.answers("rep\t1\n", {"  ... "}));
        QVERIFY(terminal.answers("en\t\n", {"gpio> "}));
        terminal.type("quit\n");
        QCOMPARE(terminal.end(), 0);
    }

    void theHistoryLastsFromOneRunToTheNext()
    {
        {
            Terminal terminal({"shell"_s}, m_home->path());
            QVERIFY(terminal.shows("gpio> "));
            QVERIFY(terminal.answers("getValue channel=ALARM\n", {"value=1", "gpio> "}));
            terminal.type("\x04");
            QCOMPARE(terminal.end(), 0);
        }
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("\x1b[A", {"getValue channel=ALARM"}));
        QVERIFY(terminal.answers("\n", {"[1] getValue: value=1"}));
    }

    void eventsDoNotTearThePrompt()
    {
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(
            terminal.answers("startListening channel=TEMPERATURE\n", {"runs; \"stop 1\" ends it", "gpio> "}));
        QVERIFY(terminal.answers("getVal", {"lastValue=", "gpio> getVal"}));
        QVERIFY(terminal.answers("ue channel=ALARM\n", {"[2] getValue: value=1"}));
    }

    /// As after Ctrl-S: its buffers are full soon, long before the prompt is due again.
    void aTerminalThatStandsStillHoldsNothingUp()
    {
        const QString trace = m_home->filePath("t.vcd"_s);
        Terminal terminal({"--trace"_s, trace, "shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("setValue channel=DOOR state=BLINK duration=2 dutyCycle=50\n", {"gpio> "}));
        terminal.type(QByteArray("startListening channel=DOOR\n").repeated(20) +
                      "sleep 1\ngetValue channel=DOOR\n");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(trace).size() > 30000, 30000);
        terminal.send(SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(isTraceComplete(trace), 20000);
        terminal.send(SIGTERM); // ends the wait for whoever reads the terminal
        QCOMPARE(terminal.exitStatus(), 1);
    }

    /// Stopped as by Ctrl-S, while nothing waits in its buffers.
    void thePromptComesWhenTheTerminalGoesOn()
    {
        const QString trace = m_home->filePath("t.vcd"_s);
        Terminal terminal({"--trace"_s, trace, "shell"_s, "--echo"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("setValue channel=DOOR state=BLINK duration=2 dutyCycle=50\n", {"gpio> "}));
        QVERIFY(terminal.answers("sleep 300\n", {"> sleep 300\r\n"}));
        terminal.flow(TCOOFF);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(trace).size() > 20000, 30000);
        terminal.flow(TCOON);
        QVERIFY(terminal.shows("gpio> "));
        terminal.flow(TCOOFF);
        terminal.type("getValue channel=ALARM\n");
        terminal.send(SIGTERM);
        QCOMPARE(terminal.exitStatus(), 0);
    }

    void ctrlCForgetsALineThatIsHalfTyped()
    {
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("startListening channel=START\n", {"value=0", "gpio> "}));
        QVERIFY(terminal.answers("getValue chan", {"getValue chan"}));
        QVERIFY(terminal.answers("\x03", {"^C", "gpio> "}));
        QVERIFY(terminal.answers("setValue channel=START state=ON\n", {"value=1", "[2] setValue: done"}));
        terminal.type("quit\n");
        QCOMPARE(terminal.end(), 0);
        QVERIFY(!terminal.seen().contains("Ctrl-D"));
    }

    void ctrlCAtAnEmptyPromptTellsHowToLeave()
    {
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("\x03", {"\"quit\" or Ctrl-D ends the shell", "gpio> "}));
        QVERIFY(terminal.answers("\x04", {"\n"}));
        QCOMPARE(terminal.end(), 0);
    }

    void aBlockHasItsPromptAndCtrlCForgetsIt()
    {
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("repeat 2\n", {"  ... "}));
        QVERIFY(terminal.answers("getValue channel=ALARM\n", {"  ... "}));
        QVERIFY(terminal.answers("end\n", {"[1] getValue: value=1", "[2] getValue: value=1", "gpio> "}));
        QVERIFY(terminal.answers("repeat 2\n", {"  ... "}));
        QVERIFY(terminal.answers("getValue channel=DOOR\n", {"  ... "}));
        QVERIFY(terminal.answers("\x03", {"gpio> "}));
        QVERIFY(terminal.answers("getValue channel=START\n", {"[3] getValue: value=0", "gpio> "}));
    }

    void aFailureEndsNoSessionAndHasNoPlace()
    {
        Terminal terminal({"shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(
            terminal.answers("expect ALARM=OFF\n", {"appvantor: expected ALARM=OFF, found ON", "gpio> "}));
        QVERIFY(terminal.answers("getValue channel=ALARM\n", {"[1] getValue: value=1"}));
    }

    void ctrlCStopsWhatHoldsThePromptBack()
    {
        Terminal terminal({"shell"_s, "--echo"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("sleep 80000000\n", {"> sleep 80000000\r\n"}));
        QVERIFY(terminal.answers("\x03", {"gpio> "}));
        QVERIFY(terminal.answers("getValue channel=ALARM\n", {"[1] getValue: value=1"}));
    }

    void aFailureBesideThePromptBringsItBack()
    {
        Terminal terminal({"--config"_s, example("fault_injection.json"_s), "shell"_s}, m_home->path());
        QVERIFY(terminal.shows("gpio> "));
        QVERIFY(terminal.answers("getValue channel=DEAD &\n", {"runs; \"stop 1\" ends it", "gpio> "}));
        QVERIFY(terminal.answers("getVal", {"\r\x1b[Kappvantor: [1] getValue failed", "gpio> getVal"}));
    }

    void aPulseShowsItsProgress()
    {
        Terminal terminal("run setValue channel=START state=PULSE duration=900"_words, m_home->path());
        QVERIFY(terminal.shows("PULSE [####"));
        QVERIFY(terminal.shows("of 0.9 s"));
        QVERIFY(terminal.shows("\r\x1b[K[1] setValue: doneOk=true"));
        QCOMPARE(terminal.end(), 0);
    }

    void noProgressIsShownWithJson()
    {
        Terminal terminal("--json run setValue channel=START state=PULSE duration=900"_words, m_home->path());
        QCOMPARE(terminal.end(), 0);
        QVERIFY(!terminal.seen().contains("PULSE ["));
        QVERIFY(terminal.seen().contains("\"type\":\"result\""));
    }

    void aTerminalThatGoesAwayEndsTheShell_data()
    {
        const Rows<QByteArray, QByteArray, int> row("line", "sign", "status");
        row("at the prompt", QByteArray(), "gpio> ", 0);
        row("beside an order", "listenToAll\n", "value=", 1);
        row("in a sleep", "sleep 80000000\n", "> sleep 80000000\r\n", 0);
        row("in a pulse", "setValue channel=START state=PULSE duration=60000\n", "duration=60000\r\n", 1);
    }

    /// What then runs ends as by any signal; what is left to say has nowhere to go.
    void aTerminalThatGoesAwayEndsTheShell()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, sign);
        QFETCH(int, status);
        Terminal terminal({"shell"_s, "--echo"_s}, m_home->path());
        if (!line.isEmpty()) {
            QVERIFY(terminal.shows("gpio> "));
            terminal.type(line);
        }
        QVERIFY(terminal.shows(sign));
        QCOMPARE(terminal.hangUp(), status);
    }

    /// As with nohup.
    void aTerminalThatGoesAwayUnheardEndsTheShell()
    {
        Terminal terminal({"shell"_s}, m_home->path(), false);
        QVERIFY(terminal.shows("gpio> "));
        QCOMPARE(terminal.hangUp(), 0);
    }

private:
    std::optional<QTemporaryDir> m_home;
};

QTEST_GUILESS_MAIN(TestTerminal)
#include "test_terminal.moc"
