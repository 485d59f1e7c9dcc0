#include "bench_process.h"

#include <QFile>
#include <QtTest>

namespace {

BenchRun runExample(const QString& name)
{
    QFile orders(example(name + QStringLiteral(".orders")));
    if (!orders.open(QIODevice::ReadOnly)) {
        return {};
    }
    return runBench({QStringLiteral("--config"), example(name + QStringLiteral(".json")),
                     QStringLiteral("--json"), QStringLiteral("shell")},
                    orders.readAll());
}

QVector<int> lastValues(const BenchRun& run, int number)
{
    QVector<int> values;
    for (const QJsonObject& line : run.json()) {
        if (line.contains(QLatin1String("event")) && line.value(QLatin1String("order")).toInt() == number) {
            values.append(
                line.value(QLatin1String("event")).toObject().value(QLatin1String("lastValue")).toInt());
        }
    }
    return values;
}

} // namespace

/// The examples do what they say.
class TestExamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTourEndsWell();
    void theSensorsOfTheTrafficLightSeeItsRound();
    void theLampFollowsTheButton();
    void eachDefectOfTheFaultyBoardHasItsReason();
};

void TestExamples::theTourEndsWell()
{
    QFile orders(example(QStringLiteral("tour.orders")));
    QVERIFY(orders.open(QIODevice::ReadOnly));
    const BenchRun run = runBench({QStringLiteral("shell"), QStringLiteral("--echo")}, orders.readAll());
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
    for (const char* line : {"[2] setValue: doneOk=true", "[3] getValue: value=1", "lastValue=1 value=true",
                             "[12] switchValue: doneOk=true", "[13] getValue: value="}) {
        QVERIFY2(run.output.contains(line), line);
    }
}

void TestExamples::theSensorsOfTheTrafficLightSeeItsRound()
{
    const BenchRun run = runExample(QStringLiteral("traffic_light"));
    QCOMPARE(run.status, 0);
    QCOMPARE(lastValues(run, 1), QVector<int>({0, 1, 0, 1, 0}));
    QCOMPARE(lastValues(run, 2), QVector<int>({0, 1, 0}));
}

void TestExamples::theLampFollowsTheButton()
{
    const BenchRun run = runExample(QStringLiteral("button_and_lamp"));
    QCOMPARE(run.status, 0);
    QCOMPARE(lastValues(run, 1), QVector<int>({0, 1, 0, 1, 0, 1, 0}));
    QCOMPARE(run.output.count("\"value\":true"), 3);
    QCOMPARE(run.output.count(R"("command":"getValue","success":true,"results":{"value":1})"), 2);
    QCOMPARE(run.output.count(R"("command":"getValue","success":true,"results":{"value":0})"), 2);
}

void TestExamples::eachDefectOfTheFaultyBoardHasItsReason()
{
    const BenchRun run = runExample(QStringLiteral("fault_injection"));
    QCOMPARE(run.status, 1);
    QStringList ends;
    for (const QJsonObject& line : run.json()) {
        ends.append(line.value(QLatin1String("success")).toBool()
                        ? QStringLiteral("done")
                        : line.value(QLatin1String("reason")).toString());
    }
    QCOMPARE(ends,
             QStringList({QStringLiteral("done"), QStringLiteral("done"), QStringLiteral("reply rejected"),
                          QStringLiteral("reply rejected"),
                          QStringLiteral("the board refuses \"setValues\" of channel \"stubborn\""),
                          QStringLiteral("no reply to \"getValue\" of channel \"dead\" within 4000 ms")}));
}

QTEST_GUILESS_MAIN(TestExamples)
#include "test_examples.moc"
