#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QVector>

/// What a run of the bench left behind.
struct BenchRun
{
    int status = -1;
    QByteArray output;
    QByteArray errors;

    /// The output as JSON, a line each; an invalid line gives an empty object.
    QVector<QJsonObject> json() const;
    QStringList lines() const;
};

/// Runs the bench from outside until it ends, with input on its standard input.
BenchRun runBench(const QStringList& arguments, const QByteArray& input = QByteArray());

/// The bench as a process that goes on while the test watches it.
class BenchProcess
{
public:
    explicit BenchProcess(const QStringList& arguments);
    ~BenchProcess();
    Q_DISABLE_COPY(BenchProcess)

    QProcess& process() { return m_process; }
    /// Waits until standard output holds text; false when that takes too long.
    bool waitForOutput(const QByteArray& text);
    /// Waits for the end.
    BenchRun end();

private:
    QProcess m_process;
    BenchRun m_run;
};

/// The bench's executable.
QString benchFile();
/// A file of the examples folder.
QString example(const QString& name);
/// Writes text into a new file that lasts as long as the test program, and returns its name.
QString temporaryFile(const QByteArray& text, const QString& suffix = QStringLiteral("json"));
