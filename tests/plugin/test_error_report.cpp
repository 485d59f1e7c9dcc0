#include "error_report.h"
#include "literals.h"
#include "quiet_test.h"
#include "records.h"

#include <QtTest>

class TestErrorReport : public QuietTest
{
    Q_OBJECT

    static QString address(const void* object)
    {
        return "0x%1"_s.arg(reinterpret_cast<quintptr>(object), 0, 16);
    }

private Q_SLOTS:
    void isACriticalMessageOfTheDefaultCategoryWithoutAPlace()
    {
        errorReport(this, "some/source", 12) << "ERROR: text";
        const Message message = takeMessages().value(0);
        QCOMPARE(message.type, QtCriticalMsg);
        QCOMPARE(message.category, "default"_s);
        QVERIFY(!message.hasFile);
        QCOMPARE(message.line, 0);
        QVERIFY(!message.hasFunction);
    }

    void listsItsItemsInOrder()
    {
        hostRecord().date = "a \"date\""_s;
        setObjectName("reporter"_s);
        errorReport(this, "some/source", 12) << "ERROR: text: "
                                             << "quoted"_s
                                             << " and " << 5;
        QCOMPARE(
            takeTexts(),
            QStringList(
                {"\n \"a \\\"date\\\"\" ;\t Thread = QThread(%1) ;\t This = TestErrorReport(%2, "
                 "name = \"reporter\") ;\t some/source ;\t 12 ;\t ERROR: text:  \"quoted\"  and  5"_s.arg(
                     address(QThread::currentThread()), address(this))}));
    }

    void namesTheReporterByItsClassWhenItHasNoName()
    {
        const QObject nameless;
        errorReport(&nameless, "s", 1) << "t";
        QVERIFY(takeTexts().value(0).contains(" This = QObject(%1) ;\t "_s.arg(address(&nameless))));
    }

    void namesTheThreadThatReports()
    {
        const QScopedPointer<QThread> thread(QThread::create([this] { errorReport(this, "s", 1) << "t"; }));
        thread->setObjectName("worker"_s);
        thread->start();
        QVERIFY(thread->wait());
        const QString text = takeTexts().join(QString());
        const QRegularExpression named(
            " Thread = \\w+\\(%1, name = \"worker\"\\) ;\t "_s.arg(address(thread.data())));
        QVERIFY2(named.match(text).hasMatch(), qPrintable(text));
    }

    void isWrittenOnceEvenWhenItIsHandedOn()
    {
        {
            const QDebug report = errorReport(this, "s", 1);
            const QDebug copy = report;
            QCOMPARE(takeTexts(), QStringList());
        }
        QCOMPARE(takeTexts().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestErrorReport)
#include "test_error_report.moc"
