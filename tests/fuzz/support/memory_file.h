#pragma once

#include <QString>

/// A file that has a name and is on no disk.
class MemoryFile
{
public:
    MemoryFile();
    ~MemoryFile();
    Q_DISABLE_COPY(MemoryFile)

    QString name() const;
    /// Replaces what is in the file.
    void write(const quint8* bytes, std::size_t size) const;

private:
    int m_file;
};
