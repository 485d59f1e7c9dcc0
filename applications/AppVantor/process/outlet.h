#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A queue in front of a descriptor that somebody else reads: what is written goes out when there is room,
/// and nobody waits for the reader. Without an event loop, it goes out with the next text and at the end.
class Q_DECL_EXPORT Outlet : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Outlet)

public:
    /// What may wait for the reader, in bytes, before room runs out.
    static constexpr std::size_t c_bound = 8 << 20;

    /// The descriptor stays the caller's. A pipe or terminal is opened anew where that is possible, since
    /// other processes share it and it must not be made non-blocking.
    explicit Outlet(int descriptor, QObject* parent = nullptr);
    ~Outlet() override;

    /// Queues text, whether there is room or not.
    void write(std::string_view text);
    /// False while more than the bound waits: what can be left out is to be left out.
    bool hasRoom() const { return waiting() < c_bound; }
    /// What waits for the reader, in bytes.
    std::size_t waiting() const { return m_waiting.size() - m_written; }
    /// Waits until all of these have written everything, each at the pace of its own reader; a signal ends
    /// that. Each is closed as soon as it has, so that its reader sees the end. Null ones are left out.
    static void drain(std::vector<Outlet*> outlets);
    /// What errno said when the descriptor could not be written to; 0 as long as it can. Nothing is taken any
    /// more then.
    int error() const { return m_error; }

Q_SIGNALS:
    /// There is room again, after there was none.
    void roomAgain();
    /// The descriptor cannot be written to.
    void failed(int error);
    /// drain has written everything, or what can be written; what was opened anew is closed.
    void drained();

private:
    void flush();
    void fail(int error);
    int target() const { return m_own >= 0 ? m_own : m_given; }
    void closeOwn();

    const int m_given;
    int m_own;            ///< what was opened anew; -1 for nothing
    const bool m_mayWait; ///< writing waits where there is no room
    std::string m_waiting;
    std::size_t m_written = 0; ///< so much of the beginning has gone
    int m_error = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
