#pragma once

#include <plugin_management/d_wording.h>

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Reads a descriptor line by line, from the event loop, no further ahead than one chunk: what was read
/// makes it pause. The last line needs no line end.
class LineReader : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LineReader)

public:
    /// The descriptor stays the caller's; messages call it name.
    LineReader(int descriptor, const DWording& name, QObject* parent = nullptr);

    /// Goes on after a pause.
    void resume();

Q_SIGNALS:
    void lineRead(const QString& line);
    /// The input is over, by itself or, with a problem, because it cannot be taken.
    void ended(const DWording& problem);

private:
    void readMore();
    QString lineAt(int start, int end) const;
    void end(const DWording& problem);

    const DWording m_name;
    const int m_descriptor;
    QSocketNotifier m_notifier;
    QByteArray m_rest;
    bool m_ended = false;
};
