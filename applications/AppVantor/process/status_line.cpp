#include "status_line.h"

#include <utility>

namespace {

struct StatusLine
{
    std::function<void()> hide;
    std::function<void()> show;
};

StatusLine& statusLine()
{
    static StatusLine instance;
    return instance;
}

} // namespace

void setStatusLine(std::function<void()> hide, std::function<void()> show)
{
    statusLine() = {std::move(hide), std::move(show)};
}

StatusLineHider::StatusLineHider()
{
    if (statusLine().hide) {
        statusLine().hide();
    }
}

StatusLineHider::~StatusLineHider()
{
    if (statusLine().show) {
        statusLine().show();
    }
}
