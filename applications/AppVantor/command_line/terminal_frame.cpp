#include "terminal_frame.h"

#include <utility>

namespace {

struct Frame
{
    std::function<void()> hide;
    std::function<void()> show;
};

Frame& frame()
{
    static Frame instance;
    return instance;
}

} // namespace

void setTerminalFrame(std::function<void()> hide, std::function<void()> show)
{
    frame() = {std::move(hide), std::move(show)};
}

FramedWriting::FramedWriting()
{
    if (frame().hide) {
        frame().hide();
    }
}

FramedWriting::~FramedWriting()
{
    if (frame().show) {
        frame().show();
    }
}
