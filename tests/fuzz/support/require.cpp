#include "require.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

void require(bool holds, const char* expectation)
{
    if (holds) {
        return;
    }
    dprintf(STDERR_FILENO, "Not so: %s\n", expectation); // not the stream, which a fuzzer may have taken
    std::abort();
}
