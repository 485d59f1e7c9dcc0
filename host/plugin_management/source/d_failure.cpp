#include <plugin_management/d_failure.h>

#include <array>

QString DFailure::kindName() const
{
    static constexpr std::array<const char*, static_cast<std::size_t>(Kind::Count)> names = {
        "",
        "wrongInvocation",
        "refusedByCommand",
        "nothingSent",
        "replyRejected",
        "refusedByDevice",
        "deviceUnreachable",
        "timedOut",
        "stopped",
        "toolClosed"};
    return QString::fromLatin1(names.at(static_cast<std::size_t>(kind)));
}
