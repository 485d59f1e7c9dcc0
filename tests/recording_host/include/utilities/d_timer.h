#pragma once

#include <QTimer>

/// The host's timer, with nothing of its own.
class Q_DECL_EXPORT DTimer : public QTimer
{
public:
    explicit DTimer(QObject* parent);
};
