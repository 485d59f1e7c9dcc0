#pragma once

#include "require.h"

#include <QString>

#include <literals.h>
#include <sys/mman.h>
#include <unistd.h>

/// A file that has a name and is on no disk.
class MemoryFile
{
public:
    MemoryFile()
        : m_file(memfd_create("fuzzer", MFD_CLOEXEC))
    {
        require(m_file >= 0, "a file can be made in memory");
    }

    ~MemoryFile() { close(m_file); }
    Q_DISABLE_COPY(MemoryFile)

    QString name() const { return "/proc/self/fd/%1"_s.arg(m_file); }
    /// Replaces what is in the file.
    void write(const quint8* bytes, std::size_t size) const
    {
        require(ftruncate(m_file, 0) == 0 && pwrite(m_file, bytes, size, 0) == static_cast<ssize_t>(size),
                "a file in memory can be written");
    }

private:
    int m_file;
};
