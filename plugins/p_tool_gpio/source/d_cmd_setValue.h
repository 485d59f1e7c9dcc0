#pragma once

#include <plugin_management/d_abstract_command.h>

#include <QMap>

class DTimer;

/// The command "setValue": drives an output channel on, off, blinking, or on for one pulse.
class DCmdSetValue : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(DCmdSetValue)

public:
    DCmdSetValue(const QVariantMap& parameters, QObject* parent);
    explicit DCmdSetValue(QObject* parent);

    /// Sends the request of the state; false for a missing channel or one that is no output. A text that
    /// names no state is accepted and does nothing.
    bool commandExecute() override;
    /// A pulse that is stopped leaves the output as it is.
    void finishTheCommand(bool& ok) override;
    QSharedPointer<ICommand> createCommand(const QVariantMap& parameters) override;

private:
    void startPulse();
    void sendSetRequest(const quint16& value, const float& fraction, bool useStateInstruction);
    void stopPulseTimer();
    void onPulseElapsed();
    bool onSetReply(quint64 instructionId, const QVariantMap& reply);

    QMap<QString, int> m_states;
    int m_state = 0;
    int m_duration = 0;
    quint16 m_value = 1;
    float m_dutyCycle = 0;
    DTimer* m_pulseTimer = nullptr;
    QString m_deviceChannel;
};
