#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <configuration/bench.h>
#include <plugin_management/d_order.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

/// Two tools whose channels of the same names are lines of one board; each also sees the other's line.
QByteArray configuration(const QByteArray& lines = R"({"name": "a"}, {"name": "b"})")
{
    const auto tool = [](const QByteArray& name, const QByteArray& digit, const QByteArray& own,
                         const QByteArray& other) {
        return R"({ "name": ")" + name + R"(", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a1)" + digit +
               R"(}", "plugin": ")" PLUGIN_FILE R"(", "channels": [
          { "id": "OWN", "value": [ {"id": "direction", "value": "out"}, {"id": "link", "value": ")" +
               own + R"("} ] },
          { "id": "OTHER", "value": [ {"id": "direction", "value": "in"}, {"id": "link", "value": ")" +
               other + R"("} ] } ] })";
    };
    return R"({ "device": { "type": "simulated", "lines": [ )" + lines + R"( ] }, "tools": [)" +
           tool("First", "0", "a", "b") + "," + tool("Second", "1", "b", "a") + "] }";
}

QVariantMap on(const char* channel, const char* state)
{
    return {{"channel"_s, QString::fromLatin1(channel)}, {"state"_s, QString::fromLatin1(state)}};
}

} // namespace

/// Commands of two tools at once on one device.
class TestTwoTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVector<Problem> problems;
        const auto read = readConfiguration(temporaryFile(configuration()), &problems);
        QVERIFY2(read, qPrintable(problems.value(0).toString()));
        DWording problem;
        m_bench = Bench::make(*read, DevicePlace::SameThread, &problem);
        QVERIFY2(m_bench != nullptr, qPrintable(problem.english()));
        m_bench->device().open();
    }

    void cleanup() { m_bench.reset(); }

    void ordersOfBothToolsRunAtOnceEachOnItsOwnChannel()
    {
        DOrder first(tool(0), "setValue"_s, on("OWN", "ON"));
        DOrder second(tool(1), "switchValue"_s, {{"channel"_s, "OWN"_s}});
        QSignalSpy firstEnd(&first, &DOrder::finished);
        QSignalSpy secondEnd(&second, &DOrder::finished);
        first.start();
        second.start();
        QTRY_COMPARE(firstEnd.size() + secondEnd.size(), 2);
        QVERIFY(first.isSuccessful());
        QVERIFY(second.isSuccessful());
        QCOMPARE(m_bench->device().level(0).level, 1);
        QCOMPARE(m_bench->device().level(1).level, 1);
    }

    void aListenerOfOneToolHearsWhatTheOtherDoes()
    {
        DOrder listener(tool(0), "startListening"_s, {{"channel"_s, "OTHER"_s}});
        QSignalSpy events(&listener, &DOrder::eventReceived);
        listener.start();
        QTRY_COMPARE(events.size(), 1);
        DOrder writer(tool(1), "setValue"_s, on("OWN", "ON"));
        writer.start();
        QTRY_COMPARE(events.size(), 2);
        QCOMPARE(events.last().first().toMap().value("lastValue"_s).toInt(), 1);
    }

    void anOrderOfOneToolGoesOnWhenTheOthersAreStopped()
    {
        DOrder first(tool(0), "startListening"_s, {{"channel"_s, "OWN"_s}});
        DOrder second(tool(1), "startListening"_s, {{"channel"_s, "OTHER"_s}});
        QSignalSpy events(&second, &DOrder::eventReceived);
        first.start();
        second.start();
        first.stop();
        DOrder writer(tool(0), "setValue"_s, on("OWN", "ON"));
        writer.start();
        QTRY_COMPARE(events.size(), 2);
        QCOMPARE(second.state(), DOrder::State::Running);
    }

    void everyToolIsSwitchedOffUnlessOneIsNamed_data()
    {
        const Rows<QString, QString> row("words", "levels");
        row("off", "off", "0 0");
        row("off of a tool", "off --tool Second", "1 0");
        row("at the end of an order", "run getValue channel=OWN --off-at-end", "0 0");
        row("at the end of an order of a tool", "--tool Second run getValue channel=OWN --off-at-end", "0 0");
        row("at the end of a window", "window --screenshot %1.png --off-at-end", "0 0");
    }

    void everyToolIsSwitchedOffUnlessOneIsNamed()
    {
        QFETCH(QString, words);
        QFETCH(QString, levels);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        const QString file =
            temporaryFile(configuration(R"({"name": "a", "level": 1}, {"name": "b", "level": 1})"));
        const QString command = words.contains(QLatin1Char('%')) ? words.arg(trace) : words;
        const BenchRun run =
            runBench(QStringList{"--config"_s, file, "--trace"_s, trace} + command.split(QLatin1Char(' ')));
        QCOMPARE(run.status, 0);
        QCOMPARE(lastLevels(trace), levels);
    }

private:
    DTool* tool(int index) const { return m_bench->tools().at(static_cast<std::size_t>(index)).get(); }

    std::unique_ptr<Bench> m_bench;
};

QTEST_GUILESS_MAIN(TestTwoTools)
#include "test_two_tools.moc"
