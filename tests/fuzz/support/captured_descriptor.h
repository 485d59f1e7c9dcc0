#pragma once

#include "require.h"

#include <string>
#include <sys/mman.h>
#include <unistd.h>

/// Takes what is written to a file descriptor while it lives.
class CapturedDescriptor
{
public:
    explicit CapturedDescriptor(int descriptor)
        : m_descriptor(descriptor)
        , m_original(dup(descriptor))
    {
        const int own = memfd_create("captured", MFD_CLOEXEC);
        require(m_original >= 0 && own >= 0 && dup2(own, descriptor) == descriptor,
                "a file in memory can stand in for a descriptor");
        close(own);
    }

    ~CapturedDescriptor()
    {
        dup2(m_original, m_descriptor);
        close(m_original);
    }

    CapturedDescriptor(const CapturedDescriptor&) = delete;
    CapturedDescriptor& operator=(const CapturedDescriptor&) = delete;

    /// What was written so far.
    std::string text() const
    {
        const off_t size = lseek(m_descriptor, 0, SEEK_END);
        require(size >= 0, "a captured descriptor has a size");
        std::string text(static_cast<std::size_t>(size), '\0');
        require(pread(m_descriptor, text.data(), text.size(), 0) == size, "what was captured can be read");
        return text;
    }

private:
    int m_descriptor;
    int m_original;
};
