#include <sys/reboot.h>

/// Ends the kernel of the tests.
int main()
{
    return reboot(RB_POWER_OFF) == 0 ? 0 : 1;
}
