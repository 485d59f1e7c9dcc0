#include "bench_process.h"
#include "literals.h"

#include <command_line/shell.h>
#include <configuration/bench.h>

#include <QSignalSpy>
#include <QtTest>

/// A device that is lost while a script runs.
class TestLostDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOrderThatLosesItsDeviceMakesStatus3AlsoWhenItIsBackAtTheEnd()
    {
        QVector<Problem> problems;
        DWording problem;
        const auto configuration = readConfiguration(
            boardFile(R"("lines": [ {"name": "a"} ])", QByteArray(), PLUGIN_FILE), &problems);
        const auto bench =
            configuration ? Bench::make(*configuration, DevicePlace::SameThread, &problem) : nullptr;
        QVERIFY2(bench != nullptr, qPrintable(problem.english()));
        LineDevice& board = bench->device();
        board.open();
        Output output(false);
        Shell shell(bench->tools().front().get(), &output, {});
        QSignalSpy ready(&shell, &Shell::ready);
        shell.addLine({{}, 0, "listenToAll"_s});
        QTRY_COMPARE(ready.size(), 1);
        QTRY_COMPARE(board.pendingRequests(), 1);
        board.setPluggedIn(false);
        QTRY_COMPARE(shell.exitStatus(), 3);
        board.setPluggedIn(true);
        QVERIFY(board.connectionProblem().isEmpty());
        QSignalSpy ended(&shell, &Shell::ended);
        shell.addLine({{}, 0, "listenToAll"_s});
        shell.close();
        QTRY_COMPARE(ended.size(), 1);
        QCOMPARE(shell.exitStatus(), 3);
    }
};

QTEST_GUILESS_MAIN(TestLostDevice)
#include "test_lost_device.moc"
