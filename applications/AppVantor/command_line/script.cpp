#include "script.h"

#include "invocation.h"

#include <utility>

namespace {
constexpr int c_mostRounds = 1000000;
constexpr std::size_t c_deepest = 16;
constexpr int c_largestBlock = 1 << 24;
} // namespace

Problem ScriptLine::told(const DWording& complaint) const
{
    return number > 0 ? Problem{complaint, file, number} : Problem{complaint};
}

QString ScriptLine::place() const
{
    return number > 0 ? QStringLiteral("%1:%2").arg(file).arg(number) : QString();
}

void Script::add(ScriptLine line)
{
    DWording problem;
    const QStringList words = splitLine(line.text, &problem); // a problem is told when the line has its turn
    const QString word = problem.isEmpty() ? words.value(0) : QString();
    if (word == QLatin1String("repeat")) {
        open(std::move(line), words);
    } else if (word == QLatin1String("end")) {
        close(std::move(line), words);
    } else if (m_ignoredBlocks == 0) {
        append({std::move(line)});
    }
}

void Script::open(ScriptLine line, const QStringList& words)
{
    bool ok = false;
    const int rounds = words.value(1).toInt(&ok);
    if (m_ignoredBlocks > 0) {
        ++m_ignoredBlocks;
    } else if (words.size() != 2 || !ok || rounds < 1 || rounds > c_mostRounds) {
        refuse(std::move(line), wording(R"(expected "repeat N", N from 1 to %1)").arg(c_mostRounds));
        m_ignoredBlocks = 1;
    } else if (m_open.size() == c_deepest) {
        refuse(std::move(line), wording("expected blocks at most %1 deep").arg(c_deepest));
        m_ignoredBlocks = 1;
    } else {
        m_open.push_back({std::move(line), rounds});
    }
}

void Script::close(ScriptLine line, const QStringList& words)
{
    if (m_ignoredBlocks > 0) {
        --m_ignoredBlocks;
    } else if (words.size() != 1) {
        refuse(std::move(line), wording(R"(expected nothing after "end")"));
    } else if (m_open.empty()) {
        refuse(std::move(line), wording(R"("end" without a "repeat")"));
    } else {
        Statement block = std::move(m_open.back());
        m_open.pop_back();
        if (!block.body.empty()) {
            append(std::move(block));
        }
    }
}

void Script::append(Statement statement)
{
    if (m_open.empty()) {
        m_statements.push_back(std::move(statement));
        m_openSize = 0;
        return;
    }
    m_openSize += statement.line.text.size();
    if (m_openSize > c_largestBlock) {
        const ScriptLine first = m_open.front().line;
        dropOpenBlock();
        refuse(first, wording("expected a block of at most %1 characters").arg(c_largestBlock));
        m_ignoredBlocks = 1;
        return;
    }
    m_open.back().body.push_back(std::move(statement));
}

void Script::refuse(ScriptLine line, const DWording& problem)
{
    line.problem = problem;
    m_problems.push_back(line);
    append({std::move(line)});
}

void Script::endInput()
{
    if (!m_open.empty()) {
        const ScriptLine line = m_open.back().line;
        dropOpenBlock();
        refuse(line, wording(R"("repeat" without an "end")"));
    }
    m_ignoredBlocks = 0;
}

void Script::dropOpenBlock()
{
    m_open.clear();
    m_openSize = 0;
    m_ignoredBlocks = 0;
}

void Script::clear()
{
    *this = Script();
}

ScriptLine Script::next()
{
    if (m_frames.empty() && m_statements.front().body.empty()) {
        ScriptLine line = std::move(m_statements.front().line);
        m_statements.pop_front();
        return line;
    }
    if (m_frames.empty()) {
        m_frames.push_back({&m_statements.front()});
    }
    const Statement* statement = &step();
    while (!statement->body.empty()) {
        m_frames.push_back({statement});
        statement = &step();
    }
    ScriptLine line = statement->line;
    while (!m_frames.empty() && m_frames.back().round == m_frames.back().block->rounds) {
        m_frames.pop_back();
    }
    if (m_frames.empty()) {
        m_statements.pop_front();
    }
    return line;
}

/// Goes one statement on in the innermost block.
const Script::Statement& Script::step()
{
    Frame& frame = m_frames.back();
    const Statement& statement = frame.block->body.at(frame.index);
    if (++frame.index == frame.block->body.size()) {
        frame.index = 0;
        ++frame.round;
    }
    return statement;
}
