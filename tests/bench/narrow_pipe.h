#pragma once

#include "bench_process.h"
#include "json_checks.h"
#include "literals.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

/// The reading end of a named pipe that holds as little as a page.
class NarrowPipe
{
public:
    explicit NarrowPipe(int bytes = 4096)
        : m_file(m_folder.filePath("pipe"_s))
    {
        const QByteArray name = QFile::encodeName(m_file);
        mkfifo(name.constData(), S_IRUSR | S_IWUSR);
        m_end = open(name.constData(), O_RDONLY | O_NONBLOCK);
        fcntl(m_end, F_SETPIPE_SZ, bytes);
    }
    ~NarrowPipe() { close(m_end); }
    Q_DISABLE_COPY(NarrowPipe)

    const QString& file() const { return m_file; }

    /// True while it holds anything: one page then takes no other write.
    bool isFull() const
    {
        int count = 0;
        return ioctl(m_end, FIONREAD, &count) == 0 && count > 0;
    }

    /// True when somebody has written to it, and nobody can any more.
    bool isClosed() const
    {
        struct pollfd waiting = {m_end, POLLIN, 0};
        return poll(&waiting, 1, 0) == 1 && (waiting.revents & POLLHUP) != 0;
    }

    /// What it is given until the bench ends.
    QByteArray readUntilEnd(BenchProcess* bench)
    {
        QByteArray text;
        while (bench->process().state() != QProcess::NotRunning) {
            text += read();
            bench->process().waitForFinished(1);
        }
        text += read();
        checkJsonLines(text);
        return text;
    }

    /// What it holds.
    QByteArray read()
    {
        QByteArray text;
        char buffer[4096];
        for (ssize_t count = ::read(m_end, buffer, sizeof(buffer)); count > 0;
             count = ::read(m_end, buffer, sizeof(buffer))) {
            text.append(buffer, static_cast<int>(count));
        }
        return text;
    }

private:
    QTemporaryDir m_folder;
    QString m_file;
    int m_end = -1;
};
