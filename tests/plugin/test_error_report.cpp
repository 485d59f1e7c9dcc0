#include "error_report.h"
#include "host_record.h"
#include "message_log.h"
#include "text.h"

#include <QThread>
#include <QtTest>

namespace {

QString address(const void* object)
{
    return "0x%1"_q.arg(reinterpret_cast<quintptr>(object), 0, 16);
}

} // namespace

class TestErrorReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isACriticalMessageOfTheDefaultCategoryWithoutAPlace()
    {
        const MessageLog log;
        errorReport(this, "some/source", 12) << "ERROR: text";
        QCOMPARE(log.messages().size(), 1);
        const Message& message = log.messages().first();
        QCOMPARE(message.type, QtCriticalMsg);
        QCOMPARE(message.category, "default"_q);
        QVERIFY(!message.hasFile);
        QCOMPARE(message.line, 0);
        QVERIFY(!message.hasFunction);
    }

    void listsItsItemsInOrder()
    {
        hostRecord().date = "a \"date\""_q;
        setObjectName("reporter"_q);
        const MessageLog log;
        errorReport(this, "some/source", 12) << "ERROR: text: "
                                             << "quoted"_q
                                             << " and " << 5;
        QCOMPARE(
            log.texts(),
            QStringList(
                {"\n \"a \\\"date\\\"\" ;\t Thread = QThread(%1) ;\t This = TestErrorReport(%2, "
                 "name = \"reporter\") ;\t some/source ;\t 12 ;\t ERROR: text:  \"quoted\"  and  5"_q.arg(
                     address(QThread::currentThread()), address(this))}));
    }

    void namesTheReporterByItsClassWhenItHasNoName()
    {
        const QObject nameless;
        const MessageLog log;
        errorReport(&nameless, "s", 1) << "t";
        QVERIFY(log.texts().first().contains(" This = QObject(%1) ;\t "_q.arg(address(&nameless))));
    }

    void namesTheThreadThatReports()
    {
        const MessageLog log;
        const QScopedPointer<QThread> thread(QThread::create([this] { errorReport(this, "s", 1) << "t"; }));
        thread->setObjectName("worker"_q);
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(log.messages().size(), 1);
        const QRegularExpression named(
            " Thread = \\w+\\(%1, name = \"worker\"\\) ;\t "_q.arg(address(thread.data())));
        QVERIFY2(named.match(log.texts().first()).hasMatch(), qPrintable(log.texts().first()));
    }

    void isWrittenOnceEvenWhenItIsHandedOn()
    {
        const MessageLog log;
        {
            const QDebug report = errorReport(this, "s", 1);
            const QDebug copy = report;
            QVERIFY(log.messages().isEmpty());
        }
        QCOMPARE(log.messages().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestErrorReport)
#include "test_error_report.moc"
