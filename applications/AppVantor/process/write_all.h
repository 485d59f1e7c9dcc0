#pragma once

#include <QByteArray>
#include <QIODevice>

/// Writes data to target, which must be open without a buffer. Returns false when not all of it can be
/// written: a disk that fills up takes a part first, and only then tells why it takes no more.
inline bool writeAll(const QByteArray& data, QIODevice* target)
{
    qint64 done = 0;
    qint64 written = 1;
    while (done < data.size() && written > 0) {
        written = target->write(data.constData() + done, data.size() - done);
        done += written;
    }
    return written > 0;
}
