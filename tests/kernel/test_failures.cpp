#include "bench_process.h"
#include "line_bench.h"
#include "sim_chip.h"
#include "text.h"

#include <QFileInfo>
#include <QProcess>
#include <QtTest>

namespace {

/// What the device of these lines cannot be reached for; empty when it can.
QString problemOf(const QVector<QJsonObject>& lines)
{
    return LineBench(lines).device().connectionProblem();
}

/// Keeps why a request failed.
class FailureRecord final : public DDeviceClient
{
public:
    QString reason;

    void requestReplied(quint64, const QVariantMap&) override {}
    void requestFailed(quint64, const QString& text) override { reason = text; }
};

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
    const SimChip chip("busy"_q, 8);
    LineBench holder({output("lamp"_q, chip.name(), 3)});
    QCOMPARE(
        problemOf({input("button"_q, chip.name(), 3)}),
        "\"button\" (line 3 of %1) is busy: \"appvantor\" holds it; end that, then start the bench again"_q
            .arg(chip.name()));
    QCOMPARE(
        problemOf({output("lamp"_q, chip.name(), 3)}),
        "\"lamp\" (line 3 of %1) is busy: \"appvantor\" holds it; end that, then start the bench again"_q.arg(
            chip.name()));
    const Outcome outcome = LineBench({output("lamp"_q, chip.name(), 3)}).get("lamp"_q);
    QVERIFY(!outcome.success && outcome.reason.contains("is busy"_q));
}

void TestFailures::aLineThatIsNotThereIsTold()
{
    const SimChip chip("small"_q, 4);
    for (const QString& line : {"4"_q, "NOBODY"_q}) {
        QCOMPARE(
            problemOf({input("button"_q, chip.name(), line)}),
            "line \"button\": the chip %1 has no line \"%2\"; \"appvantor discover\" lists its lines"_q.arg(
                chip.name(), line));
    }
}

void TestFailures::aChipThatMayNotBeOpenedIsTold()
{
    const SimChip chip("closed"_q, 4);
    QFile::setPermissions("/dev/"_q + chip.name(), QFile::ReadOwner | QFile::WriteOwner);
    const QString file = temporaryFile(configurationOf({input("button"_q, chip.name(), 0)}));
    const auto everybody = QFile::ReadOwner | QFile::ReadOther | QFile::ExeOwner | QFile::ExeOther;
    QFile::setPermissions(file, everybody);
    QFile::setPermissions(QFileInfo(file).path(), everybody | QFile::WriteOwner);
    QProcess bench;
    bench.start("setpriv"_q, {"--reuid=65534"_q, "--regid=65534"_q, "--clear-groups"_q, benchFile(),
                              "--config"_q, file, "run"_q, "getValue"_q, "channel=button"_q});
    QVERIFY(bench.waitForFinished());
    const QByteArray errors = bench.readAllStandardError();
    QVERIFY2(errors.contains("the chip /dev/" + chip.name().toUtf8() + ": permission denied; "),
             errors.constData());
    QCOMPARE(bench.exitCode(), 3);
}

void TestFailures::anInputIsNotWritten()
{
    const SimChip chip("inputs"_q, 4);
    LineBench bench({input("button"_q, chip.name(), 1)});
    for (const QString& instruction : {"setValues"_q, "setBlink"_q}) {
        FailureRecord record;
        bench.device().send(1, instruction, {{"channel"_q, "button"_q}, {"values"_q, 1}}, 0, &record);
        QTRY_COMPARE(record.reason,
                     "\"button\" (line 1 of %1) is an input and cannot be written; \"direction\": "
                     "\"out\" in the configuration makes it an output"_q.arg(chip.name()));
    }
}

void TestFailures::aChipThatGoesEndsTheOrderAndReturns()
{
    SimChip chip("leaving"_q, 4);
    const QString name = chip.name();
    LineBench bench({input("button"_q, "leaving"_q, 1), output("lamp"_q, "leaving"_q, 0)});
    Listening listening(&bench, "startListening"_q, {{"channel"_q, "button"_q}});
    QTRY_COMPARE(listening.events().size(), 1);
    const QString reason =
        "the chip %1 is gone; plug it in or load its driver, and the bench goes on"_q.arg(name);
    chip.unplug();
    QTRY_VERIFY(listening.isOver());
    QVERIFY(!listening.order().isSuccessful());
    QCOMPARE(listening.order().reason(), reason);
    QVERIFY(!bench.device().isConnected());
    QCOMPARE(bench.set("lamp"_q, "ON"_q).reason, reason);
    chip.plugIn();
    QTRY_VERIFY(bench.device().isConnected());
    Listening again(&bench, "startListening"_q, {{"channel"_q, "button"_q}});
    chip.pull(1, 1);
    QTRY_COMPARE(again.lastValue().toInt(), 1);
    QVERIFY(bench.set("lamp"_q, "ON"_q).success);
    QCOMPARE(chip.level(0), 1);
}

void TestFailures::aChipThatGoesEndsABlinking()
{
    SimChip chip("leaving"_q, 4);
    LineBench bench({output("lamp"_q, "leaving"_q, 0)});
    QVERIFY(bench.set("lamp"_q, "BLINK"_q, 40, 50).success);
    QTRY_COMPARE(chip.level(0), 0);
    chip.unplug();
    QTRY_VERIFY(!bench.device().isConnected());
    chip.plugIn();
    QTRY_VERIFY(bench.device().isConnected());
    QTest::qWait(100);
    QCOMPARE(bench.device().level(0), 0);
}

void TestFailures::aChipThatComesLateIsTaken()
{
    SimChip chip("late"_q, 4);
    chip.unplug();
    LineBench bench({output("lamp"_q, "late"_q, 0)});
    QVERIFY(!bench.device().isConnected());
    chip.plugIn();
    QTRY_VERIFY(bench.device().isConnected());
    QVERIFY(bench.set("lamp"_q, "ON"_q).success);
    QCOMPARE(chip.level(0), 1);
}

QTEST_GUILESS_MAIN(TestFailures)
#include "test_failures.moc"
