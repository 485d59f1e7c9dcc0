#include "diagnostics.h"

#include "outlet.h"
#include "status_line.h"

#include <string>
#include <unistd.h>
#include <utility>

namespace {

/// Standard error, and how many texts its reader has missed.
struct StandardError
{
    Outlet outlet{STDERR_FILENO};
    quint64 lost = 0;
};

StandardError& standardError()
{
    static StandardError instance;
    return instance;
}

void tellLoss()
{
    const quint64 lost = std::exchange(standardError().lost, 0);
    if (lost > 0) {
        standardError().outlet.write("appvantor: " + std::to_string(lost) +
                                     " messages lost: the reader was too slow\n");
    }
}

} // namespace

void diagnostic(const QString& text)
{
    writeMessageLine("appvantor: " + text.toStdString()); // whole, whatever is in it
}

void writeMessageLine(const std::string& line)
{
    const StatusLineHider hider;
    if (standardError().outlet.hasRoom()) {
        tellLoss();
        standardError().outlet.write(line + '\n');
    } else {
        ++standardError().lost;
    }
}

void writeStatusLine(const std::string& text)
{
    if (standardError().outlet.waiting() == 0) {
        standardError().outlet.write(text);
    }
}

void drainStandardError()
{
    tellLoss();
    Outlet::drain({&standardError().outlet});
}
