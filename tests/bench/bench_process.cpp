#include "bench_process.h"
#include "json_checks.h"
#include "literals.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <csignal>
#include <functional>

namespace {
constexpr int c_patienceMs = 30000;

BenchRun endOf(QProcess* process)
{
    BenchRun run;
    if (process->state() != QProcess::NotRunning && !process->waitForFinished(c_patienceMs)) {
        process->kill();
        process->waitForFinished(c_patienceMs);
    }
    run.output = process->readAllStandardOutput();
    run.errors = process->readAllStandardError();
    run.status = process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
    return run;
}

/// What the kernel says of a process after key; empty when it has ended.
QByteArray statusOf(const QProcess& process, const QByteArray& key)
{
    const QByteArray text = contentOf("/proc/%1/status"_s.arg(process.processId()));
    const int start = text.indexOf('\n' + key) + 1 + key.size();
    return text.mid(start, text.indexOf('\n', start) - start).trimmed();
}

bool waitFor(QProcess* process, const std::function<bool()>& condition)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > c_patienceMs || process->waitForFinished(1)) {
            return false;
        }
    }
    return true;
}
} // namespace

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

bool BenchRun::operator==(const BenchRun& other) const
{
    return status == other.status && output == other.output && errors == other.errors;
}

char* toString(const BenchRun& run)
{
    return qstrdup("status " + QByteArray::number(run.status) + "\noutput " + run.output + "\nerrors " +
                   run.errors);
}

QStringList operator""_words(const char* text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length)).split(QLatin1Char(' '));
}

BenchRun runBench(const QStringList& arguments, const QByteArray& input)
{
    BenchProcess bench(arguments);
    bench.process().write(input);
    bench.process().closeWriteChannel();
    return bench.end();
}

BenchRun runScript(const QString& script)
{
    const QTemporaryDir scratch;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("BENCH"_s, benchFile());
    environment.insert("SCRATCH"_s, scratch.path());
    environment.insert("EXAMPLES"_s, QStringLiteral(EXAMPLES));
    // A limit of the files' size would cut off the counts of coverage, which are of no use to anybody then,
    // what Qt keeps of QML files for the next process, which crashes on it, and the temporary file that the
    // thread sanitizer begins with where it can.
    const QString functions =
        "ulimit() { export GCOV_PREFIX=$SCRATCH/.counts QML_DISABLE_DISK_CACHE=1 TMPDIR=/nowhere; "
        "builtin ulimit \"$@\"; }\n"
        "until_caught() { until [ $((0x0$(sed -n 's/^SigCgt:\\t//p' /proc/$1/status) & 1 << $2 - 1)) "
        "-ne 0 ]; do sleep 0.01; done; }\n"
        "unprivileged() { if [ \"$(id -u)\" -ne 0 ]; then \"$@\"; else "
        "setpriv --bounding-set=-dac_override,-dac_read_search,-sys_nice \"$@\"; fi; }\n"_s;
    BenchChild process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(scratch.path());
    process.start("bash"_s, {"-c"_s, functions + script});
    process.waitForStarted(c_patienceMs);
    process.closeWriteChannel();
    const BenchRun run = endOf(&process);
    checkJsonLines(run.output);
    return run;
}

void BenchChild::setupChildProcess()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ}) {
        std::signal(number, SIG_DFL);
    }
}

BenchProcess::BenchProcess(const QStringList& arguments, const QString& outputFile, const QString& errorFile)
{
    m_process.setStandardOutputFile(outputFile);
    m_process.setStandardErrorFile(errorFile);
    m_process.start(benchFile(), arguments);
    m_process.waitForStarted(c_patienceMs);
}

BenchProcess::~BenchProcess()
{
    m_process.kill();
    m_process.waitForFinished(c_patienceMs);
}

void BenchProcess::send(int signal)
{
    kill(static_cast<pid_t>(m_process.processId()), signal);
}

bool BenchProcess::waitUntilCaught(int signal)
{
    return waitFor(&m_process, [this, signal] {
        const quint64 caught = statusOf(m_process, "SigCgt:").toULongLong(nullptr, 16);
        return (caught >> (signal - 1) & 1) != 0;
    });
}

bool BenchProcess::waitUntilStopped()
{
    return waitFor(&m_process, [this] { return statusOf(m_process, "State:").startsWith('T'); });
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
    const BenchRun rest = endOf(&m_process);
    m_run.output += rest.output;
    m_run.errors += rest.errors;
    m_run.status = rest.status;
    checkJsonLines(m_run.output);
    checkConfiguration(m_process.arguments(), m_run.errors);
    return m_run;
}

QByteArray contentOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Its last line is a time without a change.
bool isTraceComplete(const QString& file)
{
    const QByteArray text = contentOf(file);
    return text.endsWith('\n') && text.at(text.lastIndexOf('\n', -2) + 1) == '#';
}

QString lastLevels(const QString& file)
{
    QMap<char, QString> levels;
    for (const QByteArray& line : contentOf(file).split('\n')) {
        const QByteArray change = line.trimmed();
        if (!change.isEmpty() && QByteArray("01").contains(change.front()) && change.size() == 2) {
            levels[change.back()] = QString::fromLatin1(change.left(1));
        } else if (change.startsWith('r')) {
            levels[change.back()] = QString::fromLatin1(change.mid(1).split(' ').first());
        }
    }
    return QStringList(levels.values()).join(QLatin1Char(' '));
}

QString benchFile()
{
    return qEnvironmentVariable("APPVANTOR", QStringLiteral(APPVANTOR));
}

QString example(const QString& name)
{
    return QStringLiteral(EXAMPLES) + QLatin1Char('/') + name;
}

QString temporaryFile(const QByteArray& text, const QString& suffix)
{
    static QTemporaryDir folder;
    static int number = 0;
    QFile file(folder.filePath("file%1.%2"_s.arg(++number).arg(suffix)));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text);
    }
    return file.fileName();
}

QString boardFile(const QByteArray& device, const QByteArray& channels, const QByteArray& plugin)
{
    return temporaryFile(R"({ "device": { "type": "simulated", )" + device +
                         R"( }, "tools": [ { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}",
                         "plugin": ")" +
                         plugin + R"(", "channels": [ )" + channels + " ] } ] }");
}
