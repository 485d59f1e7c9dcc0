#include "memory_file.h"

#include "require.h"

#include <literals.h>

#include <sys/mman.h>
#include <unistd.h>

MemoryFile::MemoryFile()
    : m_file(memfd_create("fuzzer", MFD_CLOEXEC))
{
    require(m_file >= 0, "a file can be made in memory");
}

MemoryFile::~MemoryFile()
{
    close(m_file);
}

QString MemoryFile::name() const
{
    return "/proc/self/fd/%1"_s.arg(m_file);
}

void MemoryFile::write(const quint8* bytes, std::size_t size) const
{
    require(ftruncate(m_file, 0) == 0 && pwrite(m_file, bytes, size, 0) == static_cast<ssize_t>(size),
            "a file in memory can be written");
}
