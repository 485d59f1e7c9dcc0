#pragma once

#include <configuration/problem.h>
#include <plugin_management/d_failure.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>
#include <process/output.h>

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>

class ChannelNames;
class DOrder;

/// What a line "expect CHANNEL=VALUE [within MS]" asks for.
struct ExpectedLevel
{
    QString name;         ///< of the channel, as it was written
    DToolChannel channel; ///< that this stands for
    int level = 0;
    std::optional<int> withinMs = {};

    /// "DOOR=ON"
    QString text() const;
    /// False when the level is to be there at once.
    bool mayCome() const { return withinMs.value_or(0) > 0; }
};

/// Reads the words after "expect". problem receives what is wrong, or nothing.
ExpectedLevel readExpectedLevel(const QStringList& words, const ChannelNames& names, DWording* problem);

/// Waits for a level of a channel. It reads the channel as an order would; where there is time left, it
/// listens to it, and reads over and over where it cannot be listened to.
class Expectation : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Expectation)

public:
    /// tool must outlive this.
    Expectation(DTool* tool, ExpectedLevel expected);
    ~Expectation() override;

    /// Begins; ended follows from the event loop.
    void start();
    /// Its time is over.
    void stop();

    bool isMet() const { return m_found == m_expected.level; }
    /// Why the channel could not be read, if it could not.
    const DFailure& failure() const { return m_failure; }
    /// "expected DOOR=ON within 500 ms, found OFF"
    DWording complaint() const;
    /// How long it took, in seconds.
    double seconds() const;
    /// Writes what became of it; place is where it stands in a script, if it does.
    void report(const Problem& place, Output* output) const;

Q_SIGNALS:
    void ended();

private:
    void read();
    void listen();
    void readLater();
    void begin(const QString& command, const QVariantMap& arguments);
    void orderEnded();
    void take(const QVariant& reading);
    void dropOrder();
    void end();

    DTool* const m_tool;
    DScheduler* const m_clock;
    const ExpectedLevel m_expected;
    const qint64 m_startUs;
    qint64 m_endUs;
    std::unique_ptr<DOrder> m_order;
    std::optional<int> m_found;
    DFailure m_failure;
    DScheduler::Appointment m_limit;
    DScheduler::Appointment m_nextReading;
    bool m_isListenable = true; ///< as far as is known
    bool m_hasEnded = false;
};
