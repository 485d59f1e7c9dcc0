#pragma once

#include <functional>

/// A status line stands on the terminal below the output: a prompt, or a progress bar. It leaves its place to
/// each line that is written, and comes back after it. Sets the functions that do so, or none.
void setStatusLine(std::function<void()> hide, std::function<void()> show);

/// While it lives, the status line is hidden: lines can be written to standard output and standard error.
class StatusLineHider
{
public:
    StatusLineHider();
    ~StatusLineHider();
    StatusLineHider(const StatusLineHider&) = delete;
    StatusLineHider& operator=(const StatusLineHider&) = delete;
};
