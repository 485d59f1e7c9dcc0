#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

/// What is not run here, by its beginning, and why.
struct LeftOut
{
    const char* beginning;
    const char* reason;
};
constexpr LeftOut c_leftOut[] = {
    {"appvantor [", "says what can be written"},
    {"appvantor discover", "shows GPIO chips: see tests/kernel"},
    {"appvantor --config bench.json", "shows GPIO lines, or mistakes: see test_configuration_files"},
    {"appvantor window", "needs a window: see test_pictures"},
    {"./run panel", "needs a window: see test_pictures"},
    {"./run  ", "builds the bench"},
    {"./test", "runs all tests"},
    {"cmake ", "builds everything"},
    {"packaging/", "builds packages: see tests/packages"},
    {"sudo apt ", "installs packages: see tests/packages"},
    {"appvantor --config examples/plugin", "needs a built plugin: see tests/install"},
    {"ctest ", "runs all tests"},
    {"tools/", "checks sources and libraries"},
    {"appvantor serve", "needs a broker: see tests/fleet"},
    {"appvantor rigs", "needs a broker: see tests/fleet"},
    {"appvantor run setValue channel=START state=ON --rig", "needs a broker: see tests/fleet"},
    {"appvantor get START RUNNING --rig", "needs a broker: see tests/fleet"},
};

struct CommandLine
{
    QByteArray place;
    QString text;
    bool showsOutput = false;
    QString output = {};
};

/// The commands in the blocks of a document: lines that begin with "$ ", with the output below them; in
/// blocks of the shell every line, and elsewhere those that call the bench.
QVector<CommandLine> commandsOf(const QString& file)
{
    QVector<CommandLine> commands;
    QString block;        // its first line; empty outside
    bool isBelow = false; // a command that shows its output
    QString end;          // of the text that a command is given
    const QStringList lines = QString::fromUtf8(contentOf(file)).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        const bool isShown = line.startsWith("$ "_s);
        const bool isPlain = block == "```sh"_s || line.startsWith("appvantor "_s);
        if (line.startsWith("```"_s)) {
            block = block.isEmpty() ? line : QString();
            isBelow = false;
        } else if (!end.isEmpty()) {
            commands.last().text += QLatin1Char('\n') + line;
            end = line == end ? QString() : end;
        } else if (!block.isEmpty() && !line.isEmpty() && (isShown || isPlain)) {
            const QByteArray place = QByteArray::number(i + 1).rightJustified(4) + ": " + line.toUtf8();
            commands.append({place, isShown ? line.mid(2) : line, isShown});
            isBelow = isShown;
            end = QRegularExpression("<<'(\\w+)'"_s).match(line).captured(1);
        } else if (isBelow) {
            commands.last().output += line + QLatin1Char('\n');
        }
    }
    return commands;
}

/// Times, and readings of courses, are others each time.
QString normalised(QString text)
{
    text.replace(
        QRegularExpression("(\\d{4}-\\d\\d-\\d\\dT)?\\d\\d:\\d\\d:\\d\\d\\.\\d{6}([+-]\\d\\d:\\d\\d)?"_s),
        "TIME"_s);
    return text.replace(QRegularExpression("\\b\\d{5}\\b"_s), "READING"_s);
}

} // namespace

/// The documents say what happens.
class TestUserGuide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatADocumentShowsHappens_data()
    {
        const Rows<QString, bool, QString> row("command", "isShown", "output");
        for (const char* file : {USER_GUIDE, README}) {
            const QVector<CommandLine> commands = commandsOf(QString::fromLatin1(file));
            QVERIFY(commands.size() > 5);
            for (const CommandLine& command : commands) {
                const bool isLeftOut =
                    std::any_of(std::begin(c_leftOut), std::end(c_leftOut), [&](const LeftOut& leftOut) {
                        return command.text.startsWith(QLatin1String(leftOut.beginning));
                    });
                if (!isLeftOut) {
                    row(command.place, command.text, command.showsOutput, command.output);
                }
            }
        }
    }

    void whatADocumentShowsHappens()
    {
        QFETCH(QString, command);
        QFETCH(bool, isShown);
        QFETCH(QString, output);
        const BenchRun run = runScript("ln -s \"$EXAMPLES\" examples\n"
                                       "appvantor() { \"$BENCH\" \"$@\" 2>&1; }\n"_s +
                                       QString(command).replace("./run "_s, "appvantor "_s));
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors, QByteArray());
        if (isShown) {
            QCOMPARE(normalised(QString::fromUtf8(run.output)), normalised(output));
        }
    }
};

QTEST_GUILESS_MAIN(TestUserGuide)
#include "test_user_guide.moc"
