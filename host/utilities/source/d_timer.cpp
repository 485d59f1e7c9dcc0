#include <utilities/d_timer.h>

DTimer::DTimer(QObject* parent)
    : QTimer(parent)
{
    setTimerType(Qt::PreciseTimer);
}

DTimer::~DTimer() = default;
