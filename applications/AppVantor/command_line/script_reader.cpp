#include "script_reader.h"

#include "shell.h"

#include <process/line_reader.h>

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr qint64 c_largestFile = 1 << 26;

QString standardInput()
{
    return QStringLiteral("-");
}
} // namespace

ScriptReader::Source::~Source()
{
    reader.reset();
    if (descriptor > STDERR_FILENO) {
        ::close(descriptor);
    }
}

ScriptReader::ScriptReader(Shell* shell)
    : m_shell(shell)
{
    connect(shell, &Shell::ready, this, &ScriptReader::goOn);
    connect(shell, &Shell::brokenOff, this, &ScriptReader::end);
}

ScriptReader::~ScriptReader() = default;

DWording ScriptReader::begin(const QStringList& files)
{
    for (const QString& file : files) {
        auto source = std::make_unique<Source>();
        DWording problem = open(file, source.get());
        if (!problem.isEmpty()) {
            return problem;
        }
        m_sources.push_back(std::move(source));
    }
    bool right = true;
    for (const auto& source : m_sources) {
        right = checkBlocks(*source) && right;
    }
    if (right) {
        goOn();
    } else {
        end();
    }
    return {};
}

DWording ScriptReader::open(const QString& file, Source* source)
{
    if (file == standardInput()) {
        source->name = QStringLiteral("<stdin>");
        source->descriptor = STDIN_FILENO;
        return {};
    }
    source->name = file;
    source->descriptor = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const DWording failure = wording("%1: the orders cannot be read: %2");
    struct stat status = {};
    if (source->descriptor < 0 || fstat(source->descriptor, &status) != 0) {
        return failure.arg(file, DWording::told(qt_error_string(errno)));
    }
    if (S_ISDIR(status.st_mode)) {
        return failure.arg(file, wording("expected a file, found a folder"));
    }
    source->isWhole = S_ISREG(status.st_mode);
    if (!source->isWhole) {
        return {};
    }
    QFile whole;
    whole.open(source->descriptor, QIODevice::ReadOnly);
    const QByteArray text = whole.read(c_largestFile + 1);
    if (whole.error() != QFileDevice::NoError) {
        return failure.arg(file, DWording::told(whole.errorString()));
    }
    if (text.size() > c_largestFile) {
        return failure.arg(file, wording("expected at most %1 bytes").arg(c_largestFile));
    }
    int start = 0;
    while (start < text.size()) {
        const int newline = text.indexOf('\n', start);
        const int stop = newline < 0 ? text.size() : newline;
        source->lines.push_back({file, static_cast<int>(source->lines.size()) + 1,
                                 QString::fromUtf8(text.constData() + start, stop - start)});
        start = stop + 1;
    }
    return {};
}

/// Tells the shell of the blocks that are wrong.
bool ScriptReader::checkBlocks(const Source& source)
{
    Script script;
    for (const ScriptLine& line : source.lines) {
        script.add(line);
    }
    script.endInput();
    for (const ScriptLine& line : script.problems()) {
        m_shell->refuse(line, line.problem);
    }
    return script.problems().empty();
}

/// The shell has use for more.
void ScriptReader::goOn()
{
    if (m_sources.empty()) {
        end();
        return;
    }
    Source* source = m_sources.front().get();
    if (source->isWhole) {
        for (const ScriptLine& line : source->lines) {
            m_shell->addLine(line);
        }
        endSource();
    } else if (source->reader == nullptr) {
        read(source);
    } else {
        source->reader->resume();
    }
}

void ScriptReader::read(Source* source)
{
    const bool isInput = source->descriptor == STDIN_FILENO;
    source->reader = std::make_unique<LineReader>(source->descriptor, isInput ? wording("standard input")
                                                                              : DWording::name(source->name));
    connect(source->reader.get(), &LineReader::lineRead, this, [this, source](const QString& text) {
        m_shell->addLine({source->name, ++source->linesRead, text});
    });
    connect(source->reader.get(), &LineReader::ended, this, [this, source](const DWording& problem) {
        source->reader.release()->deleteLater(); // its signal is on the stack
        if (!problem.isEmpty()) {
            m_shell->refuse({source->name, 0, QString()}, problem);
        }
        endSource();
    });
}

void ScriptReader::endSource()
{
    m_shell->endInput();
    if (!m_sources.empty()) {
        m_sources.pop_front();
    }
}

void ScriptReader::end()
{
    if (!m_hasEnded) {
        m_hasEnded = true;
        m_sources.clear();
        Q_EMIT ended();
    }
}
