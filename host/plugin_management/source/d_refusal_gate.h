#pragma once

#include <QElapsedTimer>
#include <QObject>

class DTreatmentQueue;

/// Holds back who was refused room in a full queue and comes again through the event loop at once, which
/// would keep the processor busy: such calls wait, before they reach the caller, until there is room or 50 ms
/// have passed. An event filter, since the virtual tables of backends are not ours to change.
class DRefusalGate : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DRefusalGate)

public:
    /// Watches the calls that caller, its parent, is sent.
    DRefusalGate(QObject* caller, const DTreatmentQueue* queue);

    /// The caller is refused. False, and it is not, when as many calls are held back as can be.
    bool refuse();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool hasRefused() const;

    const DTreatmentQueue* m_queue;
    QElapsedTimer m_sinceRefusal;
    int m_waiting = 0; ///< calls that are held back, one within another
};
