#pragma once

#include <QStringList>

#include <cstdio>
#include <sys/wait.h>

/// Runs a program, whose arguments hold no apostrophe, and returns its exit status, or -1. What it writes is
/// appended to output. QProcess begins with a system call that emulators do not know.
inline int runProgram(const QStringList& words, QByteArray* output)
{
    const QByteArray command = "'" + words.join(QStringLiteral("' '")).toLocal8Bit() + "'";
    FILE* const program = popen(command.constData(), "r");
    if (!program) {
        return -1;
    }
    char part[4096];
    while (const std::size_t count = fread(part, 1, sizeof part, program)) {
        output->append(part, static_cast<int>(count));
    }
    const int status = pclose(program);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
