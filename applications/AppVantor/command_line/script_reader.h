#pragma once

#include "script.h"

#include <QObject>
#include <QStringList>

#include <deque>
#include <memory>

class LineReader;
class Shell;

/// Reads scripts into a shell, one after the other: a file whole, so that its blocks are known to be right
/// before anything runs; standard input, a pipe or a device line by line, as the shell has use for them.
class ScriptReader : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptReader)

public:
    /// shell must outlive this.
    explicit ScriptReader(Shell* shell);
    ~ScriptReader() override;

    /// Begins to read files; "-" is standard input. Returns nothing, or which of them cannot be read;
    /// the shell is told itself of wrong blocks.
    DWording begin(const QStringList& files);

Q_SIGNALS:
    /// The shell has had all lines, or wants no more.
    void ended();

private:
    struct Source
    {
        Source() = default;
        ~Source();
        Q_DISABLE_COPY(Source)

        QString name;
        int descriptor = -1;
        bool isWhole = false; ///< all of its lines are there
        std::vector<ScriptLine> lines;
        int linesRead = 0;                  ///< where they are not
        std::unique_ptr<LineReader> reader; ///< once its turn has come
    };

    static DWording open(const QString& file, Source* source);
    bool checkBlocks(const Source& source);
    void goOn();
    void read(Source* source);
    void endSource();
    void end();

    Shell* const m_shell;
    std::deque<std::unique_ptr<Source>> m_sources;
    bool m_hasEnded = false;
};
