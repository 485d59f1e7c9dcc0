#include "json_checks.h"

#include "bench_process.h"
#include "literals.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <algorithm>

namespace {

/// One checker serves a test program: to start it takes longer than its work.
class Checker : public QProcess
{
public:
    Checker()
        : QProcess(QCoreApplication::instance())
    {
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
        start(QStringLiteral(CHECK_JSON), {QStringLiteral(DOCS)});
    }
    ~Checker() override
    {
        closeWriteChannel();
        waitForFinished();
    }

    /// That of the test program.
    static Checker& instance()
    {
        static QPointer<Checker> checker;
        if (checker.isNull()) {
            checker = new Checker;
        }
        return *checker;
    }

    /// What is wrong with a line; empty when it is right.
    QByteArray problemOf(const QByteArray& line)
    {
        write(line + '\n');
        while (!canReadLine()) {
            if (!waitForReadyRead()) {
                return "the checker does not answer: " + errorString().toUtf8();
            }
        }
        return readLine().trimmed();
    }
};

/// Lines of one shape differ in the figures of their numbers and times only.
QByteArray shapeOf(QByteArray line)
{
    for (char& character : line) {
        character = character >= '1' && character <= '9' ? '0' : character;
    }
    return line;
}

/// What errors tell of mistakes in file, without their places.
QStringList mistakesIn(const QString& file, const QByteArray& errors)
{
    const QRegularExpression mistake(
        "^appvantor: %1:\\d+:\\d+: (.*)$"_s.arg(QRegularExpression::escape(file)),
        QRegularExpression::MultilineOption);
    QStringList mistakes;
    auto matches = mistake.globalMatch(QString::fromUtf8(errors));
    while (matches.hasNext()) {
        mistakes.append(matches.next().captured(1));
    }
    return mistakes;
}

/// True for a mistake that no schema can tell: names that are not their own, or refer to what does not suit,
/// and numbers that do not suit each other.
bool isBeyondTheSchema(const QString& mistake)
{
    static const QRegularExpression beyond("(expected an? (name|identifier|line) of its own, .* is taken"
                                           "|expected \"(?!(type|direction|link)\").*\" once"
                                           "|expected the name of a line, found \".*\""
                                           "|, expected a free input"
                                           "|the wires of \".*\" form a loop"
                                           "|a wire leads to \".*\", expected \"in\""
                                           "|expected \"link\" to name (a|an output) line.*"
                                           "|line \".*\" of the chip \".*\" is used already, expected another"
                                           "|expected at least \"low\", \\d+)$"_s);
    return beyond.match(mistake).hasMatch();
}

} // namespace

QByteArray problemOfJsonLine(const QByteArray& line)
{
    return Checker::instance().problemOf(line);
}

void checkJsonLines(const QByteArray& output)
{
    static QSet<QByteArray> known;
    const QList<QByteArray> lines = output.left(output.lastIndexOf('\n') + 1).split('\n');
    for (const QByteArray& line : lines) {
        const QByteArray shape = shapeOf(line);
        if (!line.startsWith("{\"") || known.contains(shape)) {
            continue;
        }
        const QByteArray problem = problemOfJsonLine(line);
        if (!problem.isEmpty()) {
            QTest::qFail((problem + "\nin " + line).constData(), __FILE__, __LINE__);
            return;
        }
        known.insert(shape);
    }
}

void checkVerdictOnConfiguration(const QString& file, const QStringList& mistakes)
{
    const bool isWrong = std::any_of(mistakes.cbegin(), mistakes.cend(),
                                     [](const QString& mistake) { return !isBeyondTheSchema(mistake); });
    const QByteArray problem = Checker::instance().problemOf("configuration " + file.toUtf8());
    if (isWrong == problem.isEmpty()) {
        const QByteArray told = mistakes.join("; "_s).toUtf8();
        QTest::qFail(("the schema: \"" + problem + "\"\nthe bench: \"" + told + "\"\nof " + contentOf(file))
                         .constData(),
                     __FILE__, __LINE__);
    }
}

void checkConfiguration(const QStringList& arguments, const QByteArray& errors)
{
    const int option = arguments.indexOf("--config"_s);
    const QString file = arguments.value(option + 1);
    if (option >= 0 && QFileInfo(file).isFile() && QFileInfo(file).size() > 0) {
        checkVerdictOnConfiguration(file, mistakesIn(file, errors));
    }
}
