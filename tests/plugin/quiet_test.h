#pragma once

#include "message_log.h"
#include "records.h"

#include <QObject>
#include <QtTest>

#include <optional>

/// A test of which each function finds the host's record as it is at first, and in which nothing may be
/// logged but what a function takes from the log.
class QuietTest : public QObject
{
    Q_OBJECT

protected:
    /// What was logged since the last call, or since the function began.
    QVector<Message> takeMessages()
    {
        QVector<Message> messages = m_log->messages();
        m_log.reset();
        m_log.emplace();
        return messages;
    }

    QStringList takeTexts()
    {
        QStringList texts = m_log->texts();
        takeMessages();
        return texts;
    }

private Q_SLOTS:
    void init()
    {
        resetHostRecord();
        m_log.emplace();
    }

    void cleanup()
    {
        const QStringList texts = takeTexts();
        m_log.reset();
        QCOMPARE(texts, QStringList());
    }

private:
    std::optional<MessageLog> m_log;
};
