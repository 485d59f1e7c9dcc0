#include "bench_process.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace {
constexpr int c_patienceMs = 30000;
}

QVector<QJsonObject> BenchRun::json() const
{
    QVector<QJsonObject> objects;
    for (const QString& line : lines()) {
        objects.append(QJsonDocument::fromJson(line.toUtf8()).object());
    }
    return objects;
}

QStringList BenchRun::lines() const
{
    return QString::fromUtf8(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

BenchRun runBench(const QStringList& arguments, const QByteArray& input)
{
    BenchProcess bench(arguments);
    bench.process().write(input);
    bench.process().closeWriteChannel();
    return bench.end();
}

BenchProcess::BenchProcess(const QStringList& arguments)
{
    m_process.start(benchFile(), arguments);
    m_process.waitForStarted(c_patienceMs);
}

BenchProcess::~BenchProcess()
{
    m_process.kill();
    m_process.waitForFinished(c_patienceMs);
}

bool BenchProcess::waitForOutput(const QByteArray& text)
{
    QElapsedTimer clock;
    clock.start();
    while (!m_run.output.contains(text)) {
        if (clock.elapsed() > c_patienceMs || m_process.state() == QProcess::NotRunning) {
            return false;
        }
        m_process.waitForReadyRead(100);
        m_run.output += m_process.readAllStandardOutput();
    }
    return true;
}

BenchRun BenchProcess::end()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(c_patienceMs)) {
        m_process.kill();
        m_process.waitForFinished(c_patienceMs);
    }
    m_run.output += m_process.readAllStandardOutput();
    m_run.errors += m_process.readAllStandardError();
    m_run.status = m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    return m_run;
}

QString benchFile()
{
    return QStringLiteral(APPVANTOR);
}

QString example(const QString& name)
{
    return QStringLiteral(EXAMPLES) + QLatin1Char('/') + name;
}

QString temporaryFile(const QByteArray& text, const QString& suffix)
{
    static QTemporaryDir folder;
    static int number = 0;
    QFile file(folder.filePath(QStringLiteral("file%1.%2").arg(++number).arg(suffix)));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text);
    }
    return file.fileName();
}
