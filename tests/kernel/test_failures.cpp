#include "bench_process.h"
#include "far_side.h"
#include "line_bench.h"
#include "literals.h"
#include "recording_client.h"
#include "rows.h"
#include "sim_chip.h"

#include <QFileInfo>
#include <QProcess>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What the device of these lines cannot be reached for; empty when it can.
QString problemOf(const QVector<QJsonObject>& lines)
{
    return LineBench(lines).device().connectionProblem().english();
}

} // namespace

/// What goes wrong with lines of the kernel, and what is told then.
class TestFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBusyLineNamesItsHolder()
    {
        const SimChip chip("busy"_s, 8);
        LineBench holder({output("lamp"_s, chip.name(), 3)});
        QCOMPARE(
            problemOf({input("button"_s, chip.name(), 3)}),
            "\"button\" (line 3 of %1) is busy: \"appvantor\" holds it; end that, and the bench goes on"_s
                .arg(chip.name()));
        QCOMPARE(
            problemOf({output("lamp"_s, chip.name(), 3)}),
            "\"lamp\" (line 3 of %1) is busy: \"appvantor\" holds it; end that, and the bench goes on"_s.arg(
                chip.name()));
        const Outcome outcome = LineBench({output("lamp"_s, chip.name(), 3)}).get("lamp"_s);
        QVERIFY(!outcome.success && outcome.failure.text.english().contains("is busy"_s));
    }

    void aLineThatIsLetGoIsTaken()
    {
        const SimChip chip("busy"_s, 8);
        QProcess holder;
        holder.start("gpioset"_s, {"--mode=signal"_s, chip.name(), "3=1"_s});
        int error = 0;
        const auto kernel = GpioChip::open("/dev/"_s + chip.name(), &error);
        QTRY_VERIFY(kernel->line(3)->used);
        LineBench bench({input("button"_s, chip.name(), 2), output("lamp"_s, chip.name(), 3)});
        QCOMPARE(
            bench.device().connectionProblem().english(),
            "\"lamp\" (line 3 of %1) is busy: \"gpioset\" holds it; end that, and the bench goes on"_s.arg(
                chip.name()));
        QVERIFY(!kernel->line(2)->used); // all or none
        holder.terminate();
        QVERIFY(holder.waitForFinished());
        QTRY_VERIFY(bench.device().isConnected());
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
    }

    void aLineThatIsNotThereIsTold()
    {
        QCOMPARE(
            problemOf({input("button"_s, QString(), "NOBODY"_s)}),
            "line \"button\": no GPIO chip has a line \"NOBODY\"; \"appvantor discover\" lists those of this machine"_s);
        const SimChip chip("small"_s, 4);
        for (const QString& line : {"4"_s, "NOBODY"_s}) {
            QCOMPARE(
                problemOf({input("button"_s, chip.name(), line)}),
                "line \"button\": the chip %1 has no line \"%2\"; \"appvantor discover\" lists its lines"_s
                    .arg(chip.name(), line));
        }
    }

    void aSettingThatTheKernelRefusesNamesTheLine()
    {
        const SimChip chip("refusing"_s, 4);
        QCOMPARE(
            problemOf({input("a"_s, chip.name(), 0), input("b"_s, chip.name(), 1, {{"clock"_s, "hte"_s}}),
                       output("c"_s, chip.name(), 2)}),
            "\"b\" (line 1 of %1) cannot be an input as configured: operation not supported; its driver may "
            "not offer "
            "this direction, bias, drive or debounce, or edges at all"_s.arg(chip.name()));
    }

    void aChipThatMayNotBeOpenedIsTold()
    {
        const SimChip chip("closed"_s, 4);
        QFile::setPermissions("/dev/"_s + chip.name(), QFile::ReadOwner | QFile::WriteOwner);
        const QString file = temporaryFile(configurationOf({input("button"_s, chip.name(), 0)}));
        const auto everybody = QFile::ReadOwner | QFile::ReadOther | QFile::ExeOwner | QFile::ExeOther;
        QFile::setPermissions(file, everybody);
        QFile::setPermissions(QFileInfo(file).path(), everybody | QFile::WriteOwner);
        for (const QStringList& arguments :
             {QStringList{"--config"_s, file, "run"_s, "getValue"_s, "channel=button"_s},
              QStringList{"discover"_s}}) {
            QProcess bench;
            bench.start("setpriv"_s,
                        QStringList{"--reuid=65534"_s, "--regid=65534"_s, "--clear-groups"_s, benchFile()} +
                            arguments);
            QVERIFY(bench.waitForFinished());
            const QByteArray errors = bench.readAllStandardError();
            QVERIFY2(errors.contains("the chip /dev/" + chip.name().toUtf8() + ": permission denied; "),
                     errors.constData());
            QCOMPARE(bench.exitCode(), 3);
        }
    }

    /// A user without rights, whose group is then given the chip.
    void aChipThatMayBeOpenedLaterIsTaken()
    {
        const SimChip chip("closed"_s, 4, {"LAMP"_s});
        const QByteArray file = "/dev/" + chip.name().toUtf8();
        QVERIFY(chmod(file, 0600) == 0);
        QVERIFY(seteuid(65534) == 0);
        {
            LineBench bench({output("LAMP"_s, QString(), "LAMP"_s)});
            const QString problem = bench.device().connectionProblem().english();
            QVERIFY2(problem.startsWith("the chip %1: permission denied; "_s.arg(QString::fromUtf8(file))),
                     qPrintable(problem));
            QVERIFY(seteuid(0) == 0);
            QVERIFY(chmod(file, 0666) == 0);
            QVERIFY(seteuid(65534) == 0);
            QTRY_VERIFY(bench.device().isConnected());
            QVERIFY(bench.set("LAMP"_s, "ON"_s).success);
            QCOMPARE(chip.level(0), 1);
        }
        QVERIFY(seteuid(0) == 0);
    }

    void anInputIsNotWritten()
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

    void aChipThatGoesEndsTheOrderAndReturns()
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
        QCOMPARE(listening.order().failure().text.english(), reason);
        QCOMPARE(listening.order().failure().kind, DFailure::Kind::DeviceUnreachable);
        QVERIFY(!bench.device().isConnected());
        QCOMPARE(bench.set("lamp"_s, "ON"_s).failure.text.english(), reason);
        chip.plugIn();
        QTRY_VERIFY(bench.device().isConnected());
        Listening again(&bench, "startListening"_s, {{"channel"_s, "button"_s}});
        chip.pull(1, 1);
        QTRY_COMPARE(again.lastValue().toInt(), 1);
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        QCOMPARE(chip.level(0), 1);
    }

    void aLossIsToldOnceHoweverManyLinesBlink()
    {
        SimChip chip("leaving"_s, 4);
        const QString name = chip.name();
        LineBench bench(
            {output("a"_s, "leaving"_s, 0), output("b"_s, "leaving"_s, 1), input("c"_s, "leaving"_s, 2)});
        QStringList told;
        connect(&bench.device(), &DDevice::problemTold, this,
                [&told](const DWording& text) { told.append(text.english()); });
        connect(&bench.device(), &DDevice::stateChanged, this, [&] {
            told.append(bench.device().isConnected() ? "back"_s
                                                     : bench.device().connectionProblem().english());
        });
        for (const QString& channel : {"a"_s, "b"_s}) {
            QVERIFY(bench.set(channel, "BLINK"_s, 2, 50).success);
        }
        Listening listening(&bench, "listenToAll"_s, {});
        QTRY_VERIFY(listening.events().size() > 4);
        chip.unplug();
        QTRY_VERIFY(!bench.device().isConnected());
        chip.plugIn();
        QTRY_VERIFY(bench.device().isConnected());
        QTest::qWait(50);
        QCOMPARE(told,
                 QStringList(
                     {"the chip %1 is gone; plug it in or load its driver, and the bench goes on"_s.arg(name),
                      "back"_s}));
        QVERIFY(listening.isOver());
        for (const int line : {0, 1}) {
            QCOMPARE(bench.device().level(line), LineLevel({0, 0, true})); // and blink no more
        }
    }

    void anOutputStartsAgainAsConfigured_data()
    {
        const Rows<QJsonObject, int> row("settings", "level");
        row("as configured, without a word", QJsonObject(), 0);
        row("as configured", {{"onReturn"_s, "configured"_s}, {"level"_s, 1}}, 1);
        row("as it was", {{"onReturn"_s, "restore"_s}}, 1);
        row("as it is found", {{"onReturn"_s, "leave"_s}, {"level"_s, 1}}, 0);
        row("as it is found, the other way round", {{"onReturn"_s, "leave"_s}, {"activeLow"_s, true}}, 1);
    }

    void anOutputStartsAgainAsConfigured()
    {
        QFETCH(QJsonObject, settings);
        QFETCH(int, level);
        SimChip chip("leaving"_s, 4);
        LineBench bench({output("lamp"_s, "leaving"_s, 0, settings), input("button"_s, "leaving"_s, 1)});
        QCOMPARE(bench.device().level(0).level, settings.value("level"_s).toInt());
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        chip.unplug();
        QTRY_VERIFY(!bench.device().isConnected());
        chip.plugIn();
        QTRY_VERIFY(bench.device().isConnected());
        QCOMPARE(bench.device().level(0), LineLevel({level, 0, true}));
        QCOMPARE(chip.level(0), settings.contains("activeLow"_s) ? 1 - level : level);
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        QCOMPARE(chip.level(0), settings.contains("activeLow"_s) ? 0 : 1);
    }

    void linesOfOtherChipsStayAsTheyAre()
    {
        SimChip leaving("leaving"_s, 4);
        const SimChip staying("staying"_s, 4);
        LineBench bench({input("button"_s, "leaving"_s, 0), output("lamp"_s, "staying"_s, 0),
                         input("door"_s, "staying"_s, 1)});
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        FarSide farSide(staying.levelFile(0));
        leaving.unplug();
        QTRY_VERIFY(!bench.device().isConnected());
        staying.pull(1, 1);
        leaving.plugIn();
        QTRY_VERIFY(bench.device().isConnected());
        QCOMPARE(farSide.end().size(), 1);
        QCOMPARE(bench.device().level(1), LineLevel({1, 0, true}));
        QCOMPARE(bench.device().level(2), LineLevel({1, 0, true}));
    }

    void foreignChipsChangeNothing()
    {
        const SimChip chip("own"_s, 4);
        LineBench bench({output("lamp"_s, "own"_s, 0)});
        int changes = 0;
        connect(&bench.device(), &DDevice::stateChanged, this, [&changes] { ++changes; });
        QVERIFY(bench.set("lamp"_s, "BLINK"_s, 20, 50).success);
        int blinks = 0;
        connect(&bench.device(), &LineDevice::lineChanged, this, [&blinks] { ++blinks; });
        for (int time = 0; time < 100; ++time) {
            const int before = blinks;
            const SimChip foreign("foreign"_s, 4);
            QTRY_VERIFY(blinks > before);
        }
        QCOMPARE(changes, 0);
    }

    void aChipThatGoesEndsAPulse()
    {
        SimChip chip("leaving"_s, 4);
        LineBench bench({output("lamp"_s, "leaving"_s, 0)});
        DOrder pulse(bench.tool(), "setValue"_s,
                     {{"channel"_s, "lamp"_s}, {"state"_s, "PULSE"_s}, {"duration"_s, 500}});
        pulse.start();
        QTRY_COMPARE(chip.level(0), 1);
        chip.unplug();
        QTRY_COMPARE(pulse.state(), DOrder::State::Finished);
        QCOMPARE(pulse.failure().kind, DFailure::Kind::DeviceUnreachable);
        chip.plugIn();
        QTRY_VERIFY(bench.device().isConnected());
        QCOMPARE(chip.level(0), 0);
    }

    void aChipThatComesLateIsTaken()
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
};

QTEST_GUILESS_MAIN(TestFailures)
#include "test_failures.moc"
