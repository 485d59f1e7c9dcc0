#pragma once

#include <plugin_management/d_scheduler.h>

/// A scheduler that keeps every appointment too late by the same time, as a busy process does.
class LateScheduler : public DScheduler
{
    Q_OBJECT
    Q_DISABLE_COPY(LateScheduler)

public:
    explicit LateScheduler(qint64 lateUs);
    ~LateScheduler() override;

    qint64 now() const override;
    /// Keeps the earliest appointment.
    void keepNext();

protected:
    void rearm() override;

private:
    const qint64 m_lateUs;
    qint64 m_now = 0;
};
