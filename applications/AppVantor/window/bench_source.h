#pragma once

#include <configuration/bench.h>

#include <functional>

/// A line of a script.
struct ScriptPlace
{
    QString file;
    int number = 0; ///< from 1
    QString text;
};

/// Who is told how a script goes on.
struct ScriptWatch
{
    /// The next line is carried out.
    std::function<void(const ScriptPlace& line)> lineBegun;
    /// All lines are done, or, where complaint has a text, one has failed: it tells file, line and why.
    std::function<void(const Problem& complaint)> ended;
};

/// Where a window takes the benches from that it shows, one after the other, and who carries out scripts on
/// them.
class BenchSource
{
public:
    BenchSource() = default;
    virtual ~BenchSource() = default;
    Q_DISABLE_COPY(BenchSource)

    /// The bench in operation.
    virtual Bench& bench() const = 0;
    /// Makes the bench of a configuration file, or of the built-in configuration without a name; the one in
    /// operation goes on undisturbed. Returns null after mistakes, each of which tells the file, the place
    /// and what was expected.
    virtual std::unique_ptr<Bench> make(const QString& configuration, QVector<Problem>* mistakes) = 0;
    /// Ends the bench in operation with its script; next, which make() gave, takes its place.
    virtual void exchange(std::unique_ptr<Bench> next) = 0;

    /// Tells watch of every script from now on, in place of who was told before.
    virtual void watchScript(ScriptWatch watch) = 0;
    /// Begins to carry out the lines of file on tool. What a script before it left running is stopped.
    /// Returns nothing, or why the file cannot be read.
    virtual DWording beginScript(DTool* tool, const QString& file) = 0;
    /// Number of orders of the last script that have not ended.
    virtual int ordersOfScript() const = 0;
    /// Ends the script and stops what it has running; nobody is told.
    virtual void stopScript() = 0;
};
