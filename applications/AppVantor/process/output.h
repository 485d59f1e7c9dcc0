#pragma once

#include "json_line.h"
#include "outlet.h"

#include <QHash>
#include <QString>

#include <functional>

/// Standard output of the bench: one JSON object a line and nothing else, or text for people. It waits for no
/// reader: events that find no room are counted, and the count is told in their place.
class Output : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Output)

public:
    using JsonMaker = std::function<Json()>;
    using TextMaker = std::function<QString()>;

    explicit Output(bool json);

    bool isJson() const { return m_json; }

    /// Writes the JSON form or the text form of one piece of output, whichever was asked for.
    void write(const JsonMaker& json, const TextMaker& text);
    /// The same for an event of an order, which is left out and counted while too much waits for the reader.
    void writeEvent(int order, const JsonMaker& json, const TextMaker& text);
    /// So many events of an order were lost before they came here.
    void eventsLost(int order, quint64 count);
    /// The order will report no more events: what was left out of it is told now.
    void endOfEvents(int order);
    /// Writes a line for people; with JSON nothing.
    void text(const QString& text);

    /// False while so much waits for the reader that results are to wait, too.
    bool hasRoom() const { return m_outlet.hasRoom(); }
    /// True once standard output could not be written to; said once on standard error.
    bool hasFailed() const { return m_outlet.error() != 0; }
    /// What waits for the reader, for Outlet::drain at the end: standard output is closed then.
    Outlet* outlet() { return &m_outlet; }

Q_SIGNALS:
    /// There is room again, after there was none.
    void roomAgain();
    /// Standard output cannot be written to.
    void failed();

private:
    void tellLost(int order, quint64 count, const QString& reason);
    void line(const std::string& line);

    const bool m_json;
    Outlet m_outlet;
    QHash<int, quint64> m_lost; ///< events left out, by their orders
};
