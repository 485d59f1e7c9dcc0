#pragma once

#include <plugin_management/d_failure.h>

#include <QObject>
#include <QPointer>
#include <QVariant>

#include <deque>
#include <optional>

class DTool;

/// Runs treatments, orders of a tool's commands, one at a time, from the event loop: those of commands that
/// do something before those of commands that only ask, each kind in its order.
class DTreatmentQueue : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DTreatmentQueue)

public:
    explicit DTreatmentQueue(QObject* parent);

    /// Adds a treatment. False, and nothing is added, when limit treatments of its kind have not been
    /// released.
    bool append(int id, const QString& name, const QVariantMap& parameters, int limit);
    /// Number of treatments that have not been released.
    int size() const;

    /// The tool whose commands run from now on; null for none.
    void setTool(DTool* tool);

Q_SIGNALS:
    /// A treatment's order has succeeded with these results; released follows.
    void replied(int id, const QString& name, const QVariantMap& reply);
    /// A treatment is over: its order ended with results, or for the reason of failure; released follows.
    void ended(const QString& name, const QVariantMap& parameters, const QVariantMap& results,
               const DFailure& failure);
    /// A treatment is over. It is counted no more.
    void released(int id, const QString& name, bool success);

private:
    struct Treatment
    {
        int id;
        QString name;
        QVariantMap parameters;
        bool asks;
    };

    bool asks(const QString& name) const;
    void runNextLater();
    void runNext();
    void release(const QVariantMap& results, const DFailure& failure);

    std::deque<Treatment> m_actions;
    std::deque<Treatment> m_questions;
    std::optional<Treatment> m_running;
    QPointer<DTool> m_tool;
    bool m_busy = false; ///< a treatment runs, or is about to
};
