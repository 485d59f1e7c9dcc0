#pragma once

#include "message_log.h"

#include <QObject>

#include <optional>

/// A test of which each function finds the host's record as it is at first, and in which nothing may be
/// logged but what a function takes from the log.
class QuietTest : public QObject
{
    Q_OBJECT

protected:
    /// What was logged since the last call, or since the function began.
    QVector<Message> takeMessages();
    QStringList takeTexts();

private Q_SLOTS:
    void init();
    void cleanup();

private:
    std::optional<MessageLog> m_log;
};
