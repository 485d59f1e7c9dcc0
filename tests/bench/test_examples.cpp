#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

BenchRun runExample(const QString& name)
{
    return runBench({"--config"_s, example(name + ".json"_s), "--json"_s, "shell"_s, "--keep-going"_s,
                     example(name + ".orders"_s)});
}

QVector<int> lastValues(const BenchRun& run, int number)
{
    QVector<int> values;
    for (const QJsonObject& line : run.json()) {
        if (line.value("type"_s).toString() == "event"_s && line.value("order"_s).toInt() == number) {
            values.append(line.value("results"_s).toObject().value("lastValue"_s).toInt());
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
    void everyConfigurationIsRight_data()
    {
        const Rows<QString> row("file");
        const QStringList names = QDir(example({})).entryList({"*.json"_s});
        for (const QString& name : names) {
            row(name.toUtf8(), example(name));
        }
    }

    void everyConfigurationIsRight()
    {
        QFETCH(QString, file);
        const BenchRun run = runBench({"--config"_s, file, "commands"_s});
        QCOMPARE(run, (BenchRun{0, run.output}));
    }

    void theTourEndsWell()
    {
        const BenchRun run = runBench({"shell"_s, "--echo"_s, example("tour.orders"_s)});
        QCOMPARE(run, (BenchRun{0, run.output}));
        for (const char* line :
             {"[2] setValue: doneOk=true", "[3] getValue: value=1", "lastValue=1 value=true",
              "[12] switchValue: doneOk=true", "[13] getValue: value="}) {
            QVERIFY2(run.output.contains(line), line);
        }
    }

    void theSensorsOfTheTrafficLightSeeItsRound()
    {
        const BenchRun run = runExample("traffic_light"_s);
        QCOMPARE(run.status, 0);
        QCOMPARE(lastValues(run, 1), QVector<int>({0, 1, 0, 1, 0}));
        QCOMPARE(lastValues(run, 2), QVector<int>({0, 1, 0}));
    }

    void theLampFollowsTheButton()
    {
        const BenchRun run = runExample("button_and_lamp"_s);
        QCOMPARE(run.status, 0);
        QCOMPARE(lastValues(run, 1), QVector<int>({0, 1, 0, 1, 0, 1, 0}));
        QCOMPARE(run.output.count("\"value\":true}}\n"), 3);
        QCOMPARE(run.output.count(R"({"type":"expectation")"), 8);
    }

    void eachDefectOfTheFaultyBoardHasItsReason()
    {
        const BenchRun run = runExample("fault_injection"_s);
        QCOMPARE(run.status, 1);
        QStringList ends;
        for (const QJsonObject& line : run.json()) {
            ends.append(line.value("reason"_s).toString("done"_s));
        }
        QCOMPARE(ends, QStringList({"done"_s, "done"_s, "reply rejected"_s, "reply rejected"_s,
                                    "the board refuses \"setValues\" of channel \"stubborn\""_s,
                                    "no reply to \"getValue\" of channel \"dead\" within 4000 ms"_s}));
    }
};

QTEST_GUILESS_MAIN(TestExamples)
#include "test_examples.moc"
