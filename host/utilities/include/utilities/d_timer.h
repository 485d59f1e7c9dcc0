#pragma once

#include <utilities/utilities_global.h>

#include <QTimer>

/// The host's timer: a QTimer that keeps its interval to the millisecond.
class UTILITIES_EXPORT DTimer : public QTimer
{
    Q_OBJECT
    Q_DISABLE_COPY(DTimer)

public:
    /// Makes a stopped timer, child of parent (or of none).
    explicit DTimer(QObject* parent = nullptr);
    ~DTimer() override;
};
