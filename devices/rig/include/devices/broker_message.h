#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

/// A message that goes to a broker or comes from one.
struct BrokerMessage
{
    QByteArray topic = {};
    QByteArray payload = {};
    /// To the broker: it keeps the message for those who come later. From it: it had kept the message.
    bool retained = false;
    QByteArray responseTopic = {}; ///< where an answer is to go; empty for none
    QByteArray correlation = {};   ///< what the answer is to carry
    int expirySeconds = 0;         ///< after which the broker passes it on no more; 0 for never
};

Q_DECLARE_METATYPE(BrokerMessage)
