#pragma once

#include "literals.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QVector>

/// What a run of the bench left behind.
struct BenchRun
{
    int status = -1;
    QByteArray output = {};
    QByteArray errors = {};

    /// The output as JSON, a line each; an invalid line gives an empty object.
    QVector<QJsonObject> json() const;
    QStringList lines() const;
    bool operator==(const BenchRun& other) const;
};

/// Shows a run where a comparison fails.
char* toString(const BenchRun& run);

/// "--json commands"_words are the arguments between the blanks.
QStringList operator""_words(const char* text, std::size_t length);

/// Runs the bench from outside until it ends, with input on its standard input.
BenchRun runBench(const QStringList& arguments, const QByteArray& input = QByteArray());

/// Runs a script of bash until it ends: "$BENCH" is the bench, "$SCRATCH" a new folder, "$EXAMPLES" that of
/// the examples; "unprivileged COMMAND …" runs a command which file permissions and priorities bind even as
/// root, and
/// "until_caught PID NUMBER" waits until a process handles a signal itself.
BenchRun runScript(const QString& script);

/// A process in which no signal is ignored, as it may be in one that was started in the background.
class BenchChild : public QProcess
{
protected:
    void setupChildProcess() override;
};

/// The bench as a process that goes on while the test watches it.
class BenchProcess
{
public:
    /// With files, standard output and standard error go there.
    explicit BenchProcess(const QStringList& arguments, const QString& outputFile = QString(),
                          const QString& errorFile = QString());
    ~BenchProcess();
    Q_DISABLE_COPY(BenchProcess)

    QProcess& process() { return m_process; }
    void send(int signal);
    /// Waits until the bench handles signal itself; false when that takes too long.
    bool waitUntilCaught(int signal);
    /// Waits until the process has been stopped; false when that takes too long.
    bool waitUntilStopped();
    /// Waits until standard output holds text; false when that takes too long.
    bool waitForOutput(const QByteArray& text);
    /// Waits for the end.
    BenchRun end();

private:
    BenchChild m_process;
    BenchRun m_run;
};

/// What stands in file; empty when it cannot be read.
QByteArray contentOf(const QString& file);
/// True when the bench has completed its trace in file: what ran has ended.
bool isTraceComplete(const QString& file);
/// The last levels of the lines in the trace in file, with blanks between them.
QString lastLevels(const QString& file);

/// The bench's executable: of this build, or the one that the variable APPVANTOR names.
QString benchFile();
/// A file of the examples folder.
QString example(const QString& name);
/// Writes text into a new file that lasts as long as the test program, and returns its name.
QString temporaryFile(const QByteArray& text, const QString& suffix = "json"_s);
/// Writes the configuration of a simulated board with a tool into a new file: device and channels are the
/// JSON of what stands in their braces and brackets.
QString boardFile(const QByteArray& device, const QByteArray& channels = QByteArray(),
                  const QByteArray& plugin = "p_tool_gpio");
