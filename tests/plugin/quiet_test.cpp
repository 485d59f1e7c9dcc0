#include "quiet_test.h"

#include "host_record.h"

#include <QtTest>

QVector<Message> QuietTest::takeMessages()
{
    QVector<Message> messages = m_log->messages();
    m_log.reset();
    m_log.emplace();
    return messages;
}

QStringList QuietTest::takeTexts()
{
    QStringList texts = m_log->texts();
    takeMessages();
    return texts;
}

void QuietTest::init()
{
    resetHostRecord();
    m_log.emplace();
}

void QuietTest::cleanup()
{
    const QStringList texts = takeTexts();
    m_log.reset();
    QCOMPARE(texts, QStringList());
}
