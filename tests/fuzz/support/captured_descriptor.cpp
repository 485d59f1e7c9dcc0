#include "captured_descriptor.h"

#include "require.h"

#include <sys/mman.h>
#include <unistd.h>

CapturedDescriptor::CapturedDescriptor(int descriptor)
    : m_descriptor(descriptor)
    , m_original(dup(descriptor))
{
    const int own = memfd_create("captured", MFD_CLOEXEC);
    require(m_original >= 0 && own >= 0 && dup2(own, descriptor) == descriptor,
            "a file in memory can stand in for a descriptor");
    close(own);
}

CapturedDescriptor::~CapturedDescriptor()
{
    dup2(m_original, m_descriptor);
    close(m_original);
}

std::string CapturedDescriptor::text() const
{
    const off_t size = lseek(m_descriptor, 0, SEEK_END);
    require(size >= 0, "a captured descriptor has a size");
    std::string text(static_cast<std::size_t>(size), '\0');
    require(pread(m_descriptor, text.data(), text.size(), 0) == size, "what was captured can be read");
    return text;
}
