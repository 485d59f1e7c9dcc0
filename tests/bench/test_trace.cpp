#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>

namespace {

/// The changes of each line of a dump, each with its time in microseconds and the level, by the line's name.
using Changes = QMap<QString, QVector<QPair<qint64, double>>>;

Changes changesOf(const QByteArray& dump)
{
    QHash<QString, QString> names; // of several, the first: that of the line
    Changes changes;
    qint64 timeUs = 0;
    for (const QString& line : QString::fromUtf8(dump).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.first() == QLatin1String("$var")) {
            if (!names.contains(words.at(3))) {
                names.insert(words.at(3), words.at(4));
            }
        } else if (line.startsWith(QLatin1Char('#'))) {
            timeUs = line.mid(1).toLongLong();
        } else if (line.startsWith(QLatin1Char('r'))) {
            changes[names.value(words.at(1))].append({timeUs, words.first().mid(1).toDouble()});
        } else if (line.startsWith(QLatin1Char('0')) || line.startsWith(QLatin1Char('1'))) {
            changes[names.value(line.mid(1))].append({timeUs, line.leftRef(1).toDouble()});
        }
    }
    return changes;
}

/// The dump after other people's tools have read it and written it again; they must not complain.
QByteArray throughOtherTools(const QString& file)
{
    const QString packed = file + ".fst"_s;
    QProcess reader;
    reader.setProcessChannelMode(QProcess::MergedChannels);
    reader.start("vcd2fst"_s, {file, packed});
    if (!reader.waitForFinished() || reader.exitCode() != 0 || reader.readAll().toLower().contains("error")) {
        return QByteArray();
    }
    QProcess writer;
    writer.start("fst2vcd"_s, {packed});
    writer.waitForFinished();
    return writer.readAllStandardOutput();
}

} // namespace

/// The option --trace.
class TestTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theHeadNamesEveryLineWithItsKind()
    {
        const QString file = temporaryFile(QByteArray(), "vcd"_s);
        QCOMPARE(runBench({"--trace"_s, file, "commands"_s}).status, 0);
        const QByteArray text = contentOf(file);
        QVERIFY(text.startsWith("$date "));
        QVERIFY(text.contains(" $end\n$version " + runBench({"--version"_s}).output.trimmed() +
                              " $end\n$timescale 1 us $end\n$scope module device $end\n"
                              "$var wire 1 ! line0 $end\n"));
        QVERIFY(text.contains("$var real 64 ( adc0 $end\n"));
        QVERIFY(text.contains("$upscope $end\n$scope module Front_panel $end\n$var wire 1 ! START $end\n"));
        QVERIFY(text.contains("$upscope $end\n$enddefinitions $end\n#0\n$dumpvars\n0!\n"));
        QVERIFY(text.contains("r0 *\n$end\n#"));
    }

    void otherToolsReadTheSameLevelsAndTimes()
    {
        const QString file = temporaryFile(QByteArray(), "vcd"_s);
        const BenchRun run =
            runBench({"--trace"_s, file, "shell"_s},
                     "setValue channel=START state=PULSE duration=100\nsleep 250\n"
                     "setValue channel=DOOR state=ON\nswitchValue channel=DOOR\nsleep 200\n");
        QCOMPARE(run.status, 0);
        const Changes ours = changesOf(contentOf(file));
        QVERIFY(changesOf(throughOtherTools(file)) == ours);
        QCOMPARE(ours.size(), 10);
        QCOMPARE(ours.value("line0"_s).size(), 3);
        QCOMPARE(ours.value("line4"_s).size(), 3);
        QCOMPARE(ours.value("line2"_s).size(), 3);
        QVERIFY(ours.value("adc0"_s).size() > 3);
        const qint64 delayUs = ours.value("line4"_s).at(1).first - ours.value("line0"_s).at(1).first;
        QVERIFY2(delayUs >= 200000 && delayUs < 300000, QByteArray::number(delayUs).constData());
    }

    void eventsHaveTheTimesOfTheTrace_data()
    {
        const Rows<QString> row("options");
        row("text", QString());
        row("JSON", "--json");
    }

    void eventsHaveTheTimesOfTheTrace()
    {
        QFETCH(QString, options);
        const BenchRun run = runScript(
            "TZ=Asia/Kathmandu \"$BENCH\" %1 --trace t shell <<< $'startListening channel=DOOR\\n"
            "setValue channel=DOOR state=BLINK duration=20 dutyCycle=50\\nsleep 200'; cat t"_s.arg(options));
        const QByteArray trace = run.output.mid(run.output.indexOf("$date "));
        const QString date = QString::fromUtf8(trace).section(QLatin1Char(' '), 1, 1);
        const QRegularExpression parts("^(\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d)\\.(\\d{6})\\+05:45$"_s);
        QVERIFY2(parts.match(date).hasMatch(), qPrintable(date));
        const auto start = QDateTime::fromString(parts.match(date).captured(1), Qt::ISODate);
        QStringList expected;
        for (const auto& change : changesOf(trace).value("line2"_s)) {
            const qint64 timeUs = parts.match(date).captured(2).toInt() + change.first;
            expected.append(start.addSecs(timeUs / 1000000).toString("yyyy-MM-ddTHH:mm:ss"_s) +
                            ".%1+05:45"_s.arg(timeUs % 1000000, 6, 10, QLatin1Char('0')));
        }
        const QRegularExpression time(options.isEmpty() ? "^\\[1\\] ([\\d:.]+)  "_s
                                                        : "\"time\":\"([^\"]+)\""_s);
        QStringList told;
        for (const QString& line : run.lines()) {
            const QString text = time.match(line).captured(1);
            if (!text.isEmpty()) {
                told.append(options.isEmpty() ? date.left(11) + text + "+05:45"_s : text);
            }
        }
        QVERIFY(told.size() > 5);
        // The first tells the level as it was found, and the script may end with a change that was not told
        // any more.
        QCOMPARE(told.mid(1), expected.mid(1, told.size() - 1));
    }

    void aKilledRunLeavesAReadableTrace()
    {
        const QString file = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench({"--trace"_s, file, "run"_s, "listenToAll"_s});
        QVERIFY(bench.waitForOutput("value="));
        QTRY_VERIFY_WITH_TIMEOUT(changesOf(contentOf(file)).value("adc0"_s).size() > 3, 10000);
        bench.send(SIGKILL);
        bench.end();
        QVERIFY(changesOf(throughOtherTools(file)).value("adc0"_s).size() > 3);
    }

    void channelsAreNamedBesideTheirLinesByTheirTools()
    {
        const QString file = temporaryFile(QByteArray(), "vcd"_s);
        const QString configuration =
            boardFile(R"("lines": [ {"name": "a"}, {"name": "b"} ])",
                      R"({"id": "B 1", "value": [ {"id": "link", "value": "b"} ]}, {"id": "none"},
               {"id": "B_1", "value": [ {"id": "link", "value": "b"} ]})");
        QCOMPARE(runBench({"--trace"_s, file, "--config"_s, configuration, "commands"_s}).status, 0);
        QVERIFY2(contentOf(file).contains("$var wire 1 \" b $end\n$upscope $end\n"
                                          "$scope module T $end\n$var wire 1 \" B_1 $end\n"
                                          "$var wire 1 \" B_1_ $end\n$upscope $end\n$enddefinitions"),
                 contentOf(file).constData());
        const QByteArray theirs = throughOtherTools(file);
        for (const char* name : {" module device ", " module T ", " B_1 ", " B_1_ "}) {
            QVERIFY2(theirs.contains(name), theirs.constData());
        }
    }

    void aTraceOnStandardOutputHasItAlone()
    {
        const BenchRun run = runScript("\"$BENCH\" --trace - run setValue channel=START state=ON | cat"_s);
        QCOMPARE(run.errors, QByteArray("[1] setValue: doneOk=true\n"));
        QVERIFY2(run.output.startsWith("$date "), run.output.constData());
        QCOMPARE(changesOf(run.output).value("line0"_s).size(), 2);
        QCOMPARE(run.output.mid(run.output.lastIndexOf('\n', -2) + 1).left(1), QByteArray("#"));
    }

    void namesAreToldApart()
    {
        const QString file = temporaryFile(QByteArray(), "vcd"_s);
        const QString configuration =
            boardFile(R"("lines": [ {"name": "a b"}, {"name": "a_b"}, {"name": "$end"} ])");
        QCOMPARE(runBench({"--trace"_s, file, "--config"_s, configuration, "commands"_s}).status, 0);
        const auto theirs = changesOf(throughOtherTools(file));
        QCOMPARE(theirs.size(), 3);
        QVERIFY(theirs.contains("_end"_s));
    }
};

QTEST_GUILESS_MAIN(TestTrace)
#include "test_trace.moc"
