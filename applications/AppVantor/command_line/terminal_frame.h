#pragma once

#include <functional>

/// What stands on the terminal below the output, a prompt or a progress line, must leave its place to each
/// line that is written, and come back after it. Sets the functions that do so, or none.
void setTerminalFrame(std::function<void()> hide, std::function<void()> show);

/// While it lives, the frame is hidden: lines can be written to standard output and standard error.
class FramedWriting
{
public:
    FramedWriting();
    ~FramedWriting();
    FramedWriting(const FramedWriting&) = delete;
    FramedWriting& operator=(const FramedWriting&) = delete;
};
