#include "require.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sanitizer/common_interface_defs.h>
#include <unistd.h>

namespace {
int reports = STDERR_FILENO;
}

void require(bool holds, const char* expectation)
{
    if (holds) {
        return;
    }
    dprintf(reports, "Not so: %s\n", expectation);
    std::abort();
}

void keepReports()
{
    reports = dup(STDERR_FILENO);
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(reports)));
}
