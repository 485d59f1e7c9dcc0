#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

/// What people are told of an order that does what they hardly meant.
class TestAdvice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUnknownChannelOfAFailedOrderIsToldWithTheNearestOne_data()
    {
        const Rows<QString, QByteArray> row("words", "advice");
        row("getValue channel=DOR", "getValue channel=DOR",
            "; the tool has no channel \"DOR\"; did you mean \"DOOR\"?\n");
        row("startListening channel=door", "startListening channel=door",
            "; the tool has no channel \"door\"; did you mean \"DOOR\"?\n");
        row("switchValue channel=NOWHERE", "switchValue channel=NOWHERE",
            "; the tool has no channel \"NOWHERE\"\n");
        row("stopListening channel=ALARMS", "stopListening channel=ALARMS",
            "; the tool has no channel \"ALARMS\"; did you mean \"ALARM\"?\n");
    }

    void anUnknownChannelOfAFailedOrderIsToldWithTheNearestOne()
    {
        QFETCH(QString, words);
        QFETCH(QByteArray, advice);
        const BenchRun run = runBench(QStringList{"run"_s} + words.split(QLatin1Char(' ')));
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.endsWith(advice), run.errors.constData());
    }

    void aChannelThatThereIsGetsNoAdvice()
    {
        QCOMPARE(
            runBench("run stopListening channel=DOOR"_words),
            (BenchRun{
                1, "",
                "appvantor: [1] stopListening failed: no running order with these arguments to stop\n"}));
    }

    void whatWasHardlyMeantIsCarriedOutWithOneWarning_data()
    {
        const Rows<QString, int, QByteArray> row("words", "status", "warning");
        row("setValue channel=START state=on", "setValue channel=START state=on", 1,
            "\"on\" is no state: nothing is sent to the device; expected one of ON, OFF, BLINK, PULSE; did "
            "you "
            "mean \"ON\"?");
        row("setValue channel=START state=DANCE dutyCycle=150",
            "setValue channel=START state=DANCE dutyCycle=150", 1,
            "\"DANCE\" is no state: nothing is sent to the device; expected one of ON, OFF, BLINK, PULSE");
        row("startListening channel=DOOR edge=re --count 1", "startListening channel=DOOR edge=re --count 1",
            0,
            "\"re\" is no edge: \"value\" is the reading itself, as without an edge; expected one of RE, FE, "
            "HL, "
            "LL; did you mean \"RE\"?");
        row("setValue channel=START state=BLINK dutyCycle=150",
            "setValue channel=START state=BLINK dutyCycle=150", 0,
            "a duty cycle above 100 means widths that are cut to 16 bits: on for 1500 ms, off for 65036 ms");
        row("setValue channel=START state=BLINK dutyCycle=2147483647 duration=2147483647",
            "setValue channel=START state=BLINK dutyCycle=2147483647 duration=2147483647", 0,
            "a duty cycle above 100 means widths that are cut to 16 bits");
        row("setValue channel=START state=BLINK dutyCycle=-10",
            "setValue channel=START state=BLINK dutyCycle=-10", 0,
            "a duty cycle below 0 means that the line stays off");
    }

    void whatWasHardlyMeantIsCarriedOutWithOneWarning()
    {
        QFETCH(QString, words);
        QFETCH(int, status);
        QFETCH(QByteArray, warning);
        const QString command = words.section(QLatin1Char(' '), 0, 0);
        const BenchRun run = runBench(QStringList{"--json"_s, "run"_s} + words.split(QLatin1Char(' ')));
        QCOMPARE(run.status, status);
        QVERIFY2(run.errors.startsWith("appvantor: [1] " + command.toUtf8() + ": " + warning + '\n'),
                 run.errors.constData());
        QCOMPARE(run.output.count("\"warning\":"), 1);
        QCOMPARE(run.json().value(0).value("warning"_s).toString(), QString::fromUtf8(warning));
    }

    void whatWasMeantGetsNoWarning_data()
    {
        const Rows<QString> row("words");
        for (const char* words : {"setValue channel=START state=ON dutyCycle=150",
                                  "setValue channel=START state=BLINK dutyCycle=0",
                                  "setValue channel=START state=BLINK dutyCycle=100",
                                  "startListening channel=DOOR edge= --count 1", "init state=on"}) {
            row(words, words);
        }
    }

    void whatWasMeantGetsNoWarning()
    {
        QFETCH(QString, words);
        const BenchRun run = runBench(QStringList{"run"_s} + words.split(QLatin1Char(' ')));
        QCOMPARE(run, (BenchRun{0, run.output}));
    }
};

QTEST_GUILESS_MAIN(TestAdvice)
#include "test_advice.moc"
