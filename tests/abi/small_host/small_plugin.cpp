#include "small_host.h"

namespace {

/// Inherits rest() and hear(), and all that another worker overrides.
class Digger : public Worker
{
public:
    int work(int hours) override { return hours; }
    int plan() override { return 1; }
    int report() override { return 2; }
    void forget() override { hoursOf(this, 0); }
};

class Sleeper : public Worker
{
public:
    int work(int hours) override { return -hours; }
    int plan() override { return 3; }
    int report() override { return 4; }
};

} // namespace

extern "C" __attribute__((visibility("default"))) Worker* smallPluginWorker(bool digs)
{
    if (digs) {
        return new Digger;
    }
    return new Sleeper;
}
