#pragma once

#include <QVariant>

class DOrder;

/// Hears, at the very moment, what the host does to commands.
class CommandObserver
{
public:
    /// The order has made its command. What follows names the order by its number.
    virtual void commandLinked(DOrder* order) = 0;
    virtual void executeBegins(quint64 order) = 0;
    virtual void executeEnds(quint64 order, bool accepted) = 0;
    virtual void sendBegins(quint64 order, const QString& instruction, const QVariantMap& arguments,
                            int timeoutMs) = 0;
    virtual void sendEnds(quint64 order, quint64 request) = 0;
    virtual void replyBegins(quint64 order, quint64 request, const QVariantMap& reply) = 0;
    virtual void replyEnds(quint64 order, quint64 request, bool accepted) = 0;
    virtual void finishBegins(quint64 order, bool ok) = 0;
    virtual void finishEnds(quint64 order) = 0;
    virtual void commandDestroyed(quint64 order) = 0;

protected:
    ~CommandObserver() = default;
};
