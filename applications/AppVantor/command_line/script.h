#pragma once

#include <configuration/problem.h>

#include <QString>

#include <deque>
#include <vector>

/// A line of a script, and where it stands.
struct ScriptLine
{
    QString file;
    int number = 0; ///< from 1; 0 where a person types it, who needs no place
    QString text;
    DWording problem = {}; ///< what is wrong with it as the beginning or the end of a block

    /// A complaint about the line.
    Problem told(const DWording& complaint = {}) const;
    /// "tour.orders:12"; empty where a person types.
    QString place() const;
};

/// The lines of a script in the order in which they are carried out: those between "repeat N" and "end" come
/// N times. A block is there once its end is; one whose first line is wrong is left out.
class Script
{
public:
    /// Adds the next line that was read.
    void add(ScriptLine line);
    /// What was read ends here: a block that is still open is wrong.
    void endInput();
    /// Forgets the block that is still open.
    void dropOpenBlock();
    void clear();

    bool isInBlock() const { return !m_open.empty() || m_ignoredBlocks > 0; }
    bool isEmpty() const { return m_statements.empty(); }
    /// Takes the next line to carry out, which may have a problem instead; there must be one.
    ScriptLine next();

    /// The lines that were wrong so far.
    const std::vector<ScriptLine>& problems() const { return m_problems; }

private:
    /// A line, or a block: then the body is not empty, and the line is that of its "repeat".
    struct Statement
    {
        ScriptLine line;
        int rounds = 0;
        std::vector<Statement> body = {};
    };

    /// How far a block has come.
    struct Frame
    {
        const Statement* block;
        std::size_t index = 0;
        int round = 0;
    };

    void open(ScriptLine line, const QStringList& words);
    void close(ScriptLine line, const QStringList& words);
    void append(Statement statement);
    void refuse(ScriptLine line, const DWording& problem);
    const Statement& step();

    std::deque<Statement> m_statements;
    std::vector<Statement> m_open; ///< the blocks whose end is not there yet, the outermost first
    int m_openSize = 0;            ///< characters in these
    int m_ignoredBlocks = 0;       ///< blocks that are left out, one within the other
    std::vector<Frame> m_frames;   ///< the blocks that are being carried out, the outermost first
    std::vector<ScriptLine> m_problems;
};
