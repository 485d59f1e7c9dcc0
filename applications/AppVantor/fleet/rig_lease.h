#pragma once

#include <plugin_management/d_scheduler.h>
#include <process/json_line.h>

#include <QObject>
#include <QString>

/// Who holds a rig for a time: the orders of others are refused meanwhile.
class RigLease : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(RigLease)

public:
    /// scheduler must outlive this.
    explicit RigLease(DScheduler* scheduler);
    ~RigLease() override;

    /// Gives the rig to holder for so many minutes, or for longer when it has it already. Returns an empty
    /// text, or who has it.
    QString take(const QString& holder, double minutes);
    /// Returns an empty text, or why holder cannot give it back.
    QString release(const QString& holder);
    /// Why the order of somebody is refused; empty when it is not.
    QString refusalOf(const QString& somebody) const;
    Json toJson() const;

Q_SIGNALS:
    void changed();

private:
    void end();

    DScheduler* const m_scheduler;
    QString m_holder; ///< empty for nobody
    qint64 m_untilUs = 0;
    DScheduler::Appointment m_end;
};
