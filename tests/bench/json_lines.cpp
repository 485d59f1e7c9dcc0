#include "json_lines.h"

#include "literals.h"

#include <QCoreApplication>
#include <QPointer>
#include <QProcess>
#include <QSet>
#include <QtTest>

namespace {

/// One checker serves a test program: to start it takes longer than its work.
class Checker : public QProcess
{
public:
    Checker()
        : QProcess(QCoreApplication::instance())
    {
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
        start(QStringLiteral(CHECK_JSON), {QStringLiteral(JSON_SCHEMA)});
    }
    ~Checker() override
    {
        closeWriteChannel();
        waitForFinished();
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

} // namespace

QByteArray problemOfJsonLine(const QByteArray& line)
{
    static QPointer<Checker> checker;
    if (checker.isNull()) {
        checker = new Checker;
    }
    return checker->problemOf(line);
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
