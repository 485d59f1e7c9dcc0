#include "bench_process.h"
#include "literals.h"
#include "rows.h"

namespace {

/// What an interactive shell shows when this is typed.
BenchRun type(const QString& shell, const QString& setup, const QString& typed)
{
    return runScript(
        "PATH=${BENCH%/*}:$PATH; export COMPLETION=%1\n"
        "printf '%b' \"$(cat <<'END'\n%2\n%3\nexit\\n\nEND\n)\" | script -qec '%4' /dev/null"_s.arg(
            QStringLiteral(COMPLETION), setup, typed, shell));
}

} // namespace

/// Completion of the bench's own command line.
class TestCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLastWordIsCompleted_data()
    {
        const Rows<QStringList, QByteArray> row("words", "completions");
        const QString lights = example("traffic_light.json"_s);
        row("a subcommand", {"wi"_s}, "window\n");
        row("a subcommand behind an option", {"--json"_s, "wi"_s}, "window\n");
        row("an option", {"window"_s, "--th"_s}, "--theme\n");
        row("an option that the subcommand has not", {"get"_s, "--th"_s}, "");
        row("an option of all", {"--conf"_s}, "--config\n");
        row("a value of few", {"--theme"_s, ""_s}, "light\ndark\n");
        row("a value in the same word", {"window"_s, "--theme=d"_s}, "--theme=dark\n");
        row("a value of an option without a list", {"--for"_s, ""_s}, "");
        row("a file", {"--config"_s, "exam"_s}, "");
        row("a tool", {"--tool"_s, "F"_s}, "Front panel\n");
        row("a channel to get", {"get"_s, "RUNNING"_s, "DO"_s}, "DOOR\n");
        row("a channel to watch", {"watch"_s, "--edge"_s, "rising"_s, "DO"_s}, "DOOR\n");
        row("a channel to set", {"set"_s, "DOOR=ON"_s, "STA"_s}, "START=\n");
        row("a level", {"set"_s, "START="_s}, "START=ON\nSTART=OFF\n");
        row("a command", {"run"_s, "sw"_s}, "switchValue\n");
        row("a parameter", {"run"_s, "setValue"_s, "channel=START"_s, "st"_s}, "state=\n");
        row("a state", {"run"_s, "setValue"_s, "state=P"_s}, "state=PULSE\n");
        row("a channel of a configuration", {"--config"_s, lights, "get"_s, "R"_s}, "RED\n");
        row("a channel of one in the same word", {"--config="_s + lights, "get"_s, "R"_s}, "RED\n");
        row("a tool that is not there", {"--tool"_s, "Piano"_s, "get"_s, "D"_s}, "");
        row("behind what is no subcommand", {"play"_s, "wi"_s}, "window\n");
    }

    void theLastWordIsCompleted()
    {
        QFETCH(QStringList, words);
        QFETCH(QByteArray, completions);
        QCOMPARE(runBench(QStringList{"complete"_s, "--"_s} + words), (BenchRun{0, completions}));
    }

    void aConfigurationThatIsWrongCompletesNothing()
    {
        const BenchRun run =
            runBench({"complete"_s, "--"_s, "--config"_s, temporaryFile("{"), "get"_s, ""_s});
        QCOMPARE(run, (BenchRun{0, "", run.errors}));
    }

    void aConfigurationFromAPipeIsLeftAlone()
    {
        QCOMPARE(runScript("mkfifo c; \"$BENCH\" complete -- --config c get ''"_s), BenchRun{0});
    }

    void aShellCompletesWhatIsTyped_data()
    {
        const Rows<QString, QString> row("shell", "setup");
        row("bash", "bash --norc --noprofile -i",
            ". /usr/share/bash-completion/bash_completion; . $COMPLETION/bash/appvantor\\n");
        row("zsh", "zsh -f -i", "fpath=($COMPLETION/zsh $fpath); autoload -U compinit; compinit -u -D\\n");
    }

    /// Each line shows that the bench was given the words whole.
    void aShellCompletesWhatIsTyped()
    {
        QFETCH(QString, shell);
        QFETCH(QString, setup);
        const BenchRun run =
            type(shell, setup,
                 "appvantor --tool Fr\\tge\\tDO\\t\\n"
                 "appvantor --config %1 get RE\\t\\n"
                 "appvantor run getValue cha\\tALA\\t\\n"_s.arg(example("traffic_light.json"_s)));
        for (const char* shown : {"DOOR=OFF\r\n", "RED=OFF\r\n", "[1] getValue: value=1\r\n"}) {
            QVERIFY2(run.output.contains(shown), run.output.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestCompletion)
#include "test_completion.moc"
