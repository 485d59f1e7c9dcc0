#pragma once

#include "json_line.h"
#include "outlet.h"

#include <QString>

#include <cerrno>
#include <functional>

/// Standard output of the bench: one JSON object a line and nothing else, or text for people. It waits for no
/// reader.
class Output : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Output)

public:
    using JsonMaker = std::function<Json()>;
    using TextMaker = std::function<QString()>;

    /// aside puts everything on standard error instead, for a standard output that something else has.
    explicit Output(bool json, bool aside = false);

    bool isJson() const { return m_json; }

    /// Writes the JSON form or the text form of one piece of output, whichever was asked for.
    void write(const JsonMaker& json, const TextMaker& text);
    /// Writes a line for people; with JSON nothing.
    void text(const QString& text);
    /// Writes an object for programs; as text nothing.
    void json(const JsonMaker& json);

    /// False while so much waits for the reader that results are to wait.
    bool hasRoom() const { return m_outlet.hasRoom(); }
    /// False while so much waits for the reader that events are to be left out and counted.
    bool hasRoomForEvents() const;
    /// True once standard output could not be written to. Said once on standard error, unless its reader has
    /// read enough and gone.
    bool hasFailed() const { return m_outlet.error() != 0; }
    bool readerIsGone() const { return m_outlet.error() == EPIPE; }
    /// The number that the reader knows one more order by: 1, 2, and so on.
    int nextOrder() { return ++m_orders; }
    /// What waits for the reader, for Outlet::drain at the end: standard output is closed then.
    Outlet* outlet() { return &m_outlet; }

Q_SIGNALS:
    /// There is room again, after there was none.
    void roomAgain();
    /// Standard output cannot be written to.
    void failed();

private:
    void line(const std::string& line);
    void object(const Json& object);

    const bool m_json;
    const bool m_aside;
    int m_orders = 0;
    Outlet m_outlet;
};
