#include "common_scripts.h"
#include "rows.h"
#include "workbench.h"

using Kind = DFailure::Kind;
using State = DDevice::State;
using Fill = std::function<void(CommandScript&)>;
using Deed = std::function<void(Workbench&)>;
Q_DECLARE_METATYPE(Kind)
Q_DECLARE_METATYPE(Fill)
Q_DECLARE_METATYPE(Deed)

namespace {

void fillDeclared(CommandScript& script)
{
    fillReader(script);
    script.stopName = "rest"_s;
    script.parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()},
                         {"value"_s, "ui16"_s, "Value"_s, 1}};
}

void fillTwoReaders(CommandScript& script)
{
    fillReader(script);
    script.execute = [](ScriptedCommand& command) {
        command.send("getValue"_s, {}, 20);
        command.send("getValue"_s, {}, 30);
        return true;
    };
}

/// The given script, with execute in the place of its deed.
Fill doing(const std::function<bool(ScriptedCommand&)>& execute)
{
    return [execute](CommandScript& script) {
        fillReader(script);
        script.execute = execute;
    };
}

Deed replies(const QVariantMap& reply)
{
    return [reply](Workbench& bench) { bench.device->reply(bench.device->lastId(), reply); };
}

Deed loses(const QString& problem)
{
    return [problem](Workbench& bench) { bench.device->lose(problem); };
}

void refuses(Workbench& bench)
{
    bench.device->refuse(bench.device->lastId(), "line is burnt"_s);
}

void closesDevice(Workbench& bench)
{
    bench.device->close();
}

void destroysDevice(Workbench& bench)
{
    bench.device.reset();
}

} // namespace

class TestOrderFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theKindHasANameForPrograms()
    {
        QStringList names;
        for (int kind = 0; kind < static_cast<int>(Kind::Count); ++kind) {
            const DFailure failure = {static_cast<Kind>(kind), DWording::told("why"_s)};
            QCOMPARE(static_cast<bool>(failure), kind != 0);
            names.append(failure.kindName());
        }
        QCOMPARE(names, (QStringList{QString(), "wrongInvocation"_s, "refusedByCommand"_s, "nothingSent"_s,
                                     "replyRejected"_s, "refusedByDevice"_s, "deviceUnreachable"_s,
                                     "timedOut"_s, "stopped"_s, "toolClosed"_s}));
    }

    void anOrderFailsWithKindAndText_data()
    {
        const Rows<Fill, Deed, QVariantMap, Deed, Kind, QString> columns("fill", "before", "arguments",
                                                                         "after", "kind", "text");
        const auto row = [&columns](const char* name, Kind kind, const QString& text, const Fill& fill,
                                    const Deed& before, const Deed& after,
                                    const QVariantMap& arguments = {}) {
            columns(name, fill, before, arguments, after, kind, text);
        };

        row("unknown parameter", Kind::WrongInvocation,
            "unknown parameter \"zone\" of command \"work\"; it takes: \"channel\", \"value\""_s,
            fillDeclared, {}, {}, {{"zone"_s, 1}});
        row("value of the wrong type", Kind::WrongInvocation,
            "parameter \"value\" of command \"work\" cannot hold \"65536\"; expected a whole number from 0 "
            "to "
            "65535"_s,
            fillDeclared, {}, {}, {{"value"_s, 65536}});
        row("the command refuses", Kind::RefusedByCommand, "the command refused to run"_s,
            doing([](ScriptedCommand&) { return false; }), {}, {});
        row("the command refuses after sending", Kind::RefusedByCommand, "the command refused to run"_s,
            doing([](ScriptedCommand& command) { return command.send("getValue"_s) == 0; }), {}, {});
        row("the command ends itself", Kind::RefusedByCommand, "the command failed"_s,
            doing([](ScriptedCommand& command) {
                bool ok = false;
                command.commandFinish(ok);
                return command.send("getValue"_s) != 0;
            }),
            {}, {});
        row("the command does nothing", Kind::NothingSent, "the command sent no device request"_s, doing({}),
            {}, {});
        row("a result can no longer come", Kind::NothingSent,
            "the command waits for nothing more, without having reported value"_s,
            doing([](ScriptedCommand& command) {
                return command.addInstruction("device"_s, "setValues"_s, {}, 0, {}) != 0;
            }),
            {}, replies({}));
        row("reply rejected", Kind::ReplyRejected, "reply rejected"_s, fillReader, {}, replies({}));
        row("reply rejected while another is awaited", Kind::ReplyRejected, "reply rejected"_s,
            fillTwoReaders, {}, replies({}));
        row("refused by the device", Kind::RefusedByDevice, "line is burnt"_s, fillReader, {}, refuses);
        row("refused by the device while listening", Kind::RefusedByDevice, "line is burnt"_s, fillListener,
            {}, refuses);
        row("unknown target", Kind::RefusedByDevice, "unknown target \"printer\" of \"getValue\""_s,
            doing([](ScriptedCommand& command) { return command.sendTo("printer"_s, "getValue"_s) != 0; }),
            {}, [](Workbench& bench) { QVERIFY(bench.device->requests.isEmpty()); });
        row("no device", Kind::DeviceUnreachable, "the tool has no device"_s, fillReader, destroysDevice, {});
        row("closed device", Kind::DeviceUnreachable, "the device is closed"_s, fillReader, closesDevice, {});
        row("lost device", Kind::DeviceUnreachable, "cable pulled"_s, fillReader, loses("cable pulled"_s),
            {});
        row("device closed while the order runs", Kind::DeviceUnreachable, "the device was closed"_s,
            fillListener, {}, closesDevice);
        row("device destroyed while the order runs", Kind::DeviceUnreachable, "the device is gone"_s,
            fillListener, {}, destroysDevice);
        row("device lost while the order runs", Kind::DeviceUnreachable, "cable pulled"_s, fillReader, {},
            loses("cable pulled"_s));
        row("device lost while the order listens", Kind::DeviceUnreachable, "cable pulled"_s, fillListener,
            {}, loses("cable pulled"_s));
        row("device lost, and the reason changes meanwhile", Kind::DeviceUnreachable, "cable pulled"_s,
            fillReader, {}, [](Workbench& bench) {
                bench.device->lose("cable pulled"_s);
                bench.device->lose("board burnt"_s);
            });
        row("device lost, and back meanwhile", Kind::DeviceUnreachable, "cable pulled"_s, fillReader, {},
            [](Workbench& bench) {
                bench.device->lose("cable pulled"_s);
                bench.device->restore();
            });
        row("timed out", Kind::TimedOut, "no reply to \"getValue\" within 20 ms"_s, fillTwoReaders, {},
            [](Workbench& bench) { bench.scheduler.advance(20000); });
        row("tool closed while the order runs", Kind::ToolClosed, "the tool was closed"_s, fillListener, {},
            [](Workbench& bench) { bench.tool.reset(); });
    }

    /// Each ends its order once, through finishTheCommand when there is a command, and lets the command go.
    void anOrderFailsWithKindAndText()
    {
        const auto [fill, before, arguments, after, kind, text] =
            Rows<Fill, Deed, QVariantMap, Deed, Kind, QString>::values();
        Workbench bench(fill);
        if (before) {
            before(bench);
        }
        const auto order = bench.start(arguments);
        if (after) {
            QCOMPARE(order->state(), DOrder::State::Running);
            QCOMPARE(order->failure().kind, Kind::None);
            after(bench);
        }
        deliver();
        QCOMPARE(order->state(), DOrder::State::Finished);
        QVERIFY(!order->isSuccessful());
        QCOMPARE(order->failure().kind, kind);
        QCOMPARE(order->failure().text.english(), text);
        QCOMPARE(bench.ended, QVector<bool>{false});
        const bool hadCommand = kind != Kind::WrongInvocation;
        QCOMPARE(bench.script->outcomes, hadCommand ? QVector<bool>{false} : QVector<bool>());
        QCOMPARE(bench.workingCommands(), 0);
        QVERIFY(bench.device == nullptr || bench.device->pendingRequests() == 0);
    }

    void aStoppedOneShotOrderFails_data()
    {
        const Rows<bool> row("started");
        row("while it runs", true);
        row("before it runs, for good", false);
    }
    void aStoppedOneShotOrderFails()
    {
        QFETCH(bool, started);
        Workbench bench(fillReader);
        const auto order = bench.order();
        if (started) {
            order->start();
        }
        order->stop();
        order->start();
        QCOMPARE(order->failure().kind, Kind::Stopped);
        QCOMPARE(order->failure().text.english(), "stopped before it was complete"_s);
        QCOMPARE(bench.ended, QVector<bool>{false});
        QCOMPARE(bench.script->finishes, started ? 1 : 0);
        QCOMPARE(bench.device->requests.size(), started ? 1 : 0);
        QCOMPARE(bench.device->cancelled.size(), started ? 1 : 0);
    }

    void anOrderOfNoToolFails()
    {
        DOrder order(nullptr, "work"_s, {});
        order.start();
        QCOMPARE(order.failure().kind, Kind::ToolClosed);
        QCOMPARE(order.failure().text.english(), "the tool was closed"_s);
        QVERIFY(order.tool() == nullptr);
    }

    void anUnknownCommandFailsTheOrder()
    {
        Workbench bench(fillDeclared);
        DOrder order(bench.tool.get(), "play"_s, {});
        order.start();
        QCOMPARE(order.failure().kind, Kind::WrongInvocation);
        QCOMPARE(order.failure().text.english(), "unknown command \"play\"; the tool has: work, rest"_s);
    }

    void thePluginThatMakesNoCommandFailsTheOrder()
    {
        class Barren : public ScriptedCommand
        {
        public:
            using ScriptedCommand::ScriptedCommand;
            QSharedPointer<ICommand> createCommand(const QVariantMap&) override { return {}; }
        };
        Workbench bench;
        auto& plugin = dynamic_cast<ScriptedPlugin&>(*bench.tool->plugin());
        plugin.declareInstructionCommand(new Barren(bench.script, {}, &plugin));
        const auto order = bench.start();
        QCOMPARE(order->failure().kind, Kind::RefusedByCommand);
        QCOMPARE(order->failure().text.english(), "the plugin made no command \"work\""_s);
    }
};

QTEST_GUILESS_MAIN(TestOrderFailures)
#include "test_order_failures.moc"
