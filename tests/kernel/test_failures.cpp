#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "recording_client.h"
#include "sim_chip.h"

#include <QFileInfo>
#include <QProcess>
#include <QtTest>

namespace {

/// What the device of these lines cannot be reached for; empty when it can.
QString problemOf(const QVector<QJsonObject>& lines)
{
    return LineBench(lines).device().connectionProblem();
}

} // namespace

/// What goes wrong with lines of the kernel, and what is told then.
class TestFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBusyLineNamesItsHolder();
    void aLineThatIsNotThereIsTold();
    void aChipThatMayNotBeOpenedIsTold();
    void anInputIsNotWritten();
    void aChipThatGoesEndsTheOrderAndReturns();
    void aChipThatGoesEndsABlinking();
    void aChipThatComesLateIsTaken();
};

void TestFailures::aBusyLineNamesItsHolder()
{
    const SimChip chip("busy"_s, 8);
    LineBench holder({output("lamp"_s, chip.name(), 3)});
    QCOMPARE(
        problemOf({input("button"_s, chip.name(), 3)}),
        "\"button\" (line 3 of %1) is busy: \"appvantor\" holds it; end that, then start the bench again"_s
            .arg(chip.name()));
    QCOMPARE(
        problemOf({output("lamp"_s, chip.name(), 3)}),
        "\"lamp\" (line 3 of %1) is busy: \"appvantor\" holds it; end that, then start the bench again"_s.arg(
            chip.name()));
    const Outcome outcome = LineBench({output("lamp"_s, chip.name(), 3)}).get("lamp"_s);
    QVERIFY(!outcome.success && outcome.failure.text.contains("is busy"_s));
}

void TestFailures::aLineThatIsNotThereIsTold()
{
    const SimChip chip("small"_s, 4);
    for (const QString& line : {"4"_s, "NOBODY"_s}) {
        QCOMPARE(
            problemOf({input("button"_s, chip.name(), line)}),
            "line \"button\": the chip %1 has no line \"%2\"; \"appvantor discover\" lists its lines"_s.arg(
                chip.name(), line));
    }
}

void TestFailures::aChipThatMayNotBeOpenedIsTold()
{
    const SimChip chip("closed"_s, 4);
    QFile::setPermissions("/dev/"_s + chip.name(), QFile::ReadOwner | QFile::WriteOwner);
    const QString file = temporaryFile(configurationOf({input("button"_s, chip.name(), 0)}));
    const auto everybody = QFile::ReadOwner | QFile::ReadOther | QFile::ExeOwner | QFile::ExeOther;
    QFile::setPermissions(file, everybody);
    QFile::setPermissions(QFileInfo(file).path(), everybody | QFile::WriteOwner);
    QProcess bench;
    bench.start("setpriv"_s, {"--reuid=65534"_s, "--regid=65534"_s, "--clear-groups"_s, benchFile(),
                              "--config"_s, file, "run"_s, "getValue"_s, "channel=button"_s});
    QVERIFY(bench.waitForFinished());
    const QByteArray errors = bench.readAllStandardError();
    QVERIFY2(errors.contains("the chip /dev/" + chip.name().toUtf8() + ": permission denied; "),
             errors.constData());
    QCOMPARE(bench.exitCode(), 3);
}

void TestFailures::anInputIsNotWritten()
{
    const SimChip chip("inputs"_s, 4);
    LineBench bench({input("button"_s, chip.name(), 1)});
    for (const QString& instruction : {"setValues"_s, "setBlink"_s}) {
        RecordingClient client;
        bench.device().send(1, instruction, {{"channel"_s, "button"_s}, {"values"_s, 1}}, 0, &client);
        QTRY_COMPARE(
            client.failures(),
            QStringList("\"button\" (line 1 of %1) is an input and cannot be written; \"direction\": "
                        "\"out\" in the configuration makes it an output"_s.arg(chip.name())));
    }
}

void TestFailures::aChipThatGoesEndsTheOrderAndReturns()
{
    SimChip chip("leaving"_s, 4);
    const QString name = chip.name();
    LineBench bench({input("button"_s, "leaving"_s, 1), output("lamp"_s, "leaving"_s, 0)});
    Listening listening(&bench, "startListening"_s, {{"channel"_s, "button"_s}});
    QTRY_COMPARE(listening.events().size(), 1);
    const QString reason =
        "the chip %1 is gone; plug it in or load its driver, and the bench goes on"_s.arg(name);
    chip.unplug();
    QTRY_VERIFY(listening.isOver());
    QVERIFY(!listening.order().isSuccessful());
    QCOMPARE(listening.order().failure().text, reason);
    QCOMPARE(listening.order().failure().kind, DFailure::Kind::DeviceUnreachable);
    QVERIFY(!bench.device().isConnected());
    QCOMPARE(bench.set("lamp"_s, "ON"_s).failure.text, reason);
    chip.plugIn();
    QTRY_VERIFY(bench.device().isConnected());
    Listening again(&bench, "startListening"_s, {{"channel"_s, "button"_s}});
    chip.pull(1, 1);
    QTRY_COMPARE(again.lastValue().toInt(), 1);
    QVERIFY(bench.set("lamp"_s, "ON"_s).success);
    QCOMPARE(chip.level(0), 1);
}

void TestFailures::aChipThatGoesEndsABlinking()
{
    SimChip chip("leaving"_s, 4);
    LineBench bench({output("lamp"_s, "leaving"_s, 0)});
    QVERIFY(bench.set("lamp"_s, "BLINK"_s, 40, 50).success);
    QTRY_COMPARE(chip.level(0), 0);
    chip.unplug();
    QTRY_VERIFY(!bench.device().isConnected());
    chip.plugIn();
    QTRY_VERIFY(bench.device().isConnected());
    QTest::qWait(100);
    QCOMPARE(bench.device().level(0).level, 0);
}

void TestFailures::aChipThatComesLateIsTaken()
{
    SimChip chip("late"_s, 4);
    chip.unplug();
    LineBench bench({output("lamp"_s, "late"_s, 0)});
    QVERIFY(!bench.device().isConnected());
    chip.plugIn();
    QTRY_VERIFY(bench.device().isConnected());
    QVERIFY(bench.set("lamp"_s, "ON"_s).success);
    QCOMPARE(chip.level(0), 1);
}

QTEST_GUILESS_MAIN(TestFailures)
#include "test_failures.moc"
