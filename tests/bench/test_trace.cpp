#include "bench_process.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QtTest>

#include <csignal>

namespace {

struct Change
{
    qint64 timeUs;
    QString level;
};

/// The changes of each line of a dump, by the line's name.
QHash<QString, QVector<Change>> changesOf(const QByteArray& dump)
{
    QHash<QString, QString> names;
    QHash<QString, QVector<Change>> changes;
    qint64 timeUs = 0;
    for (const QString& line : QString::fromUtf8(dump).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.first() == QLatin1String("$var")) {
            names.insert(words.at(3), words.at(4));
        } else if (line.startsWith(QLatin1Char('#'))) {
            timeUs = line.mid(1).toLongLong();
        } else if (line.startsWith(QLatin1Char('r'))) {
            changes[names.value(words.at(1))].append({timeUs, words.first().mid(1)});
        } else if (line.startsWith(QLatin1Char('0')) || line.startsWith(QLatin1Char('1'))) {
            changes[names.value(line.mid(1))].append({timeUs, line.left(1)});
        }
    }
    return changes;
}

/// The dump after other people's tools have read it and written it again; they must not complain.
QByteArray throughOtherTools(const QString& file)
{
    const QString packed = file + QStringLiteral(".fst");
    QProcess reader;
    reader.setProcessChannelMode(QProcess::MergedChannels);
    reader.start(QStringLiteral("vcd2fst"), {file, packed});
    if (!reader.waitForFinished() || reader.exitCode() != 0 || reader.readAll().toLower().contains("error")) {
        return QByteArray();
    }
    QProcess writer;
    writer.start(QStringLiteral("fst2vcd"), {packed});
    writer.waitForFinished();
    return writer.readAllStandardOutput();
}

QStringList tracedTo(const QString& file)
{
    return {QStringLiteral("--trace"), file};
}

} // namespace

/// The option --trace.
class TestTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theHeadNamesEveryLineWithItsKind();
    void otherToolsReadTheSameLevelsAndTimes();
    void theEdgesOfABlinkLieWhereTheDutyCyclePutsThem();
    void aKilledRunLeavesAReadableTrace();
    void aFullDiskIsToldAtTheStart();
    void aDiskThatFillsUpMeanwhileIsToldOnceAndFailsTheRun();
    void namesAreToldApart();
};

void TestTrace::theHeadNamesEveryLineWithItsKind()
{
    const QString file = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    QCOMPARE(runBench(tracedTo(file) + QStringList{QStringLiteral("commands")}).status, 0);
    QFile dump(file);
    QVERIFY(dump.open(QIODevice::ReadOnly));
    const QByteArray text = dump.readAll();
    QVERIFY(text.startsWith("$version appvantor $end\n$timescale 1 us $end\n$scope module device $end\n"
                            "$var wire 1 ! line0 $end\n"));
    QVERIFY(text.contains("$var real 64 ( adc0 $end\n"));
    QVERIFY(text.contains("$upscope $end\n$enddefinitions $end\n#0\n$dumpvars\n0!\n"));
    QVERIFY(text.contains("r0 *\n$end\n#"));
}

void TestTrace::otherToolsReadTheSameLevelsAndTimes()
{
    const QString file = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    const BenchRun run = runBench(tracedTo(file) + QStringList{QStringLiteral("shell")},
                                  "setValue channel=START state=PULSE duration=100\nsleep 250\n"
                                  "setValue channel=DOOR state=ON\nswitchValue channel=DOOR\nsleep 200\n");
    QCOMPARE(run.status, 0);
    QFile dump(file);
    QVERIFY(dump.open(QIODevice::ReadOnly));
    const auto ours = changesOf(dump.readAll());
    const auto theirs = changesOf(throughOtherTools(file));
    QCOMPARE(ours.size(), 10);
    QCOMPARE(theirs.size(), ours.size());
    for (const QString& line : ours.keys()) {
        const QVector<Change> expected = ours.value(line);
        const QVector<Change> found = theirs.value(line);
        QCOMPARE(found.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(found.at(i).timeUs, expected.at(i).timeUs);
            QCOMPARE(found.at(i).level.toDouble(), expected.at(i).level.toDouble());
        }
    }
    QCOMPARE(ours.value(QStringLiteral("line0")).size(), 3);
    QCOMPARE(ours.value(QStringLiteral("line4")).size(), 3);
    QCOMPARE(ours.value(QStringLiteral("line2")).size(), 3);
    QVERIFY(ours.value(QStringLiteral("adc0")).size() > 3);
    const qint64 delayUs =
        ours.value(QStringLiteral("line4")).at(1).timeUs - ours.value(QStringLiteral("line0")).at(1).timeUs;
    QVERIFY2(delayUs >= 200000 && delayUs < 300000, QByteArray::number(delayUs).constData());
}

/// A loaded machine may be late with an edge, or leave one out; that must not add up. So of the last edges,
/// the best one lies where it should, and none comes early.
void TestTrace::theEdgesOfABlinkLieWhereTheDutyCyclePutsThem()
{
    const QString file = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    const BenchRun run =
        runBench(tracedTo(file) + QStringList{QStringLiteral("run"), QStringLiteral("setValue"),
                                              QStringLiteral("channel=DOOR"), QStringLiteral("state=BLINK"),
                                              QStringLiteral("duration=100"), QStringLiteral("dutyCycle=30"),
                                              QStringLiteral("--for"), QStringLiteral("2.05")});
    QCOMPARE(run.status, 0);
    QFile dump(file);
    QVERIFY(dump.open(QIODevice::ReadOnly));
    const QVector<Change> changes = changesOf(dump.readAll()).value(QStringLiteral("line2"));
    QVERIFY(changes.size() > 12);
    const qint64 startUs = changes.at(1).timeUs;
    qint64 leastLateUs = 100000;
    for (const Change& change : changes.mid(changes.size() - 10)) {
        const qint64 phaseUs = change.level == QLatin1String("1") ? 0 : 30000;
        const qint64 lateUs = (change.timeUs - startUs - phaseUs) % 100000;
        QVERIFY2(lateUs >= 0, QByteArray::number(lateUs).constData());
        leastLateUs = qMin(leastLateUs, lateUs);
    }
    QVERIFY2(leastLateUs <= 2000, QByteArray::number(leastLateUs).constData());
}

void TestTrace::aKilledRunLeavesAReadableTrace()
{
    const QString file = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    BenchProcess bench(tracedTo(file) + QStringList{QStringLiteral("run"), QStringLiteral("listenToAll")});
    QFile dump(file);
    QVERIFY(bench.waitForOutput("value="));
    const auto holdsSamples = [&] {
        dump.close();
        return dump.open(QIODevice::ReadOnly) &&
               changesOf(dump.readAll()).value(QStringLiteral("adc0")).size() > 3;
    };
    QTRY_VERIFY_WITH_TIMEOUT(holdsSamples(), 10000);
    bench.send(SIGKILL);
    bench.end();
    QVERIFY(changesOf(throughOtherTools(file)).value(QStringLiteral("adc0")).size() > 3);
}

void TestTrace::aFullDiskIsToldAtTheStart()
{
    const BenchRun run = runBench(
        tracedTo(QStringLiteral("/dev/full")) +
        QStringList{QStringLiteral("run"), QStringLiteral("getValue"), QStringLiteral("channel=START")});
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors, QByteArray("appvantor: /dev/full: the trace ends here: No space left on device\n"));
}

void TestTrace::aDiskThatFillsUpMeanwhileIsToldOnceAndFailsTheRun()
{
    const QString file = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    QProcess process;
    process.start(QStringLiteral("bash"),
                  {QStringLiteral("-c"),
                   QStringLiteral("trap '' XFSZ; export GCOV_PREFIX=${TMPDIR:-/tmp}/limited; ulimit -f 2; "
                                  "exec \"%1\" --trace \"%2\" run setValue channel=DOOR "
                                  "state=BLINK duration=2 dutyCycle=50 --for 1.5")
                       .arg(benchFile(), file)});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(),
             "appvantor: " + file.toUtf8() + ": the trace ends here: File too large\n");
    QCOMPARE(process.readAllStandardOutput(), QByteArray("[1] setValue: doneOk=true\n"));
    QCOMPARE(process.exitCode(), 1);
}

void TestTrace::namesAreToldApart()
{
    const QString file = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    const QString configuration = temporaryFile(R"({"device": {"type": "simulated", "lines":
      [ {"name": "a b"}, {"name": "a_b"}, {"name": "$end"} ]},
      "tools": [ {"name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio"} ] })");
    QCOMPARE(runBench(tracedTo(file) +
                      QStringList{QStringLiteral("--config"), configuration, QStringLiteral("commands")})
                 .status,
             0);
    const auto theirs = changesOf(throughOtherTools(file));
    QCOMPARE(theirs.size(), 3);
    QVERIFY(theirs.contains(QStringLiteral("_end")));
}

QTEST_GUILESS_MAIN(TestTrace)
#include "test_trace.moc"
