#include "workbench.h"

#include <QtTest>

class TestAbstractCommand : public QObject
{
    Q_OBJECT

    static std::shared_ptr<CommandScript> scriptWithDeclarations()
    {
        auto script = std::make_shared<CommandScript>();
        script->stopName = "rest"_s;
        script->parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()},
                              {"value"_s, "ui16"_s, "Value"_s, 1}};
        script->results = {{"doneOk"_s, "bool"_s, "Job done"_s, false}};
        return script;
    }

    /// Runs look inside the command of a started order.
    static void insideAnOrder(const QVariantMap& arguments, const std::function<void(ScriptedCommand&)>& look)
    {
        bool looked = false;
        Workbench bench(
            [](CommandScript& script) { script.parameters = scriptWithDeclarations()->parameters; });
        bench.script->execute = [&](ScriptedCommand& command) {
            look(command);
            looked = true;
            return false;
        };
        bench.start(arguments);
        QVERIFY(looked);
    }

private Q_SLOTS:
    void aCommandTellsWhatItDeclared()
    {
        const ScriptedCommand command(scriptWithDeclarations(), {{"value"_s, 5}}, nullptr);
        QCOMPARE(command.commandName(), "work"_s);
        QCOMPARE(command.objectName(), "work"_s);
        QCOMPARE(command.stopCommandName(), "rest"_s);
        QCOMPARE(command.description(), "Works"_s);
        QCOMPARE(command.commandArguments(), (QVariantMap{{"value"_s, 5}}));
        QCOMPARE(command.fullDescription(),
                 "Works\nparameter channel (strg): Channel"
                 "\nparameter value (ui16): Value\nresult doneOk (bool): Job done"_s);
        const DCommandDescription& declared = command.declaration();
        QCOMPARE(declared.name, "work"_s);
        QCOMPARE(declared.stopName, "rest"_s);
        QCOMPARE(declared.parameters.size(), std::size_t{2});
        QCOMPARE(declared.parameters.at(0).name, "channel"_s);
        QCOMPARE(declared.parameters.at(1).defaultValue, QVariant(1));
        QCOMPARE(declared.results.at(0).typeTag, "bool"_s);
        QCOMPARE(ScriptedCommand(std::make_shared<CommandScript>(), {}, nullptr).stopCommandName(),
                 QString());
    }

    void aParameterIsTheArgumentElseTheFallbackElseTheDeclaredDefault()
    {
        const ScriptedCommand given(scriptWithDeclarations(), {{"value"_s, 5}}, nullptr);
        const ScriptedCommand bare(scriptWithDeclarations(), {}, nullptr);
        QCOMPARE(given.getParameterValue("value"_s, 7), QVariant(5));
        QCOMPARE(bare.getParameterValue("value"_s, 7), QVariant(7));
        QCOMPARE(bare.getParameterValue("value"_s, QVariant()), QVariant(1));
        QVERIFY(!bare.getParameterValue("channel"_s, QVariant()).isValid());
        QVERIFY(!bare.getParameterValue("colour"_s, QVariant()).isValid());
        QCOMPARE(bare.getParameterValue("colour"_s, 7), QVariant(7));
    }

    void aSectionIsTheArgumentAsItWasGiven()
    {
        const QVariantMap sections{{"list"_s, QVariantList{1, 2}},
                                   {"map"_s, QVariantMap{{"id"_s, 1}}},
                                   {"names"_s, QStringList{"a"_s}},
                                   {"text"_s, "1,2"_s}};
        ScriptedCommand command(scriptWithDeclarations(), sections, nullptr);
        for (auto section = sections.cbegin(); section != sections.cend(); ++section) {
            QCOMPARE(command.getParametersSection(section.key()), section.value());
        }
        QVERIFY(!command.getParametersSection("none"_s).isValid());
        QVERIFY(!command.getParametersSection("value"_s).isValid());
    }

    void theOrderThatAnInvocationNamesIsItsArgument()
    {
        QCOMPARE(
            ScriptedCommand(scriptWithDeclarations(), {{"orderId"_s, 12}}, nullptr).getParameterOrderId(),
            quint64{12});
        QCOMPARE(ScriptedCommand(scriptWithDeclarations(), {}, nullptr).getParameterOrderId(), quint64{0});
    }

    void withoutAnOrderACommandCanDoNothing()
    {
        ScriptedCommand command(scriptWithDeclarations(), {}, nullptr);
        QVERIFY(!command.isValid());
        QVERIFY(!command.isRecurrent());
        QCOMPARE(command.getOrderId(), quint64{0});
        QVERIFY(!command.commandExecute());
        QCOMPARE(command.send("getValue"_s), quint64{0});
        QVERIFY(!command.setReply(1, {}));
        QVERIFY(!command.commandUpdateResult("doneOk"_s, true));
        QCOMPARE(command.getLinkedChannel("LAMP"_s), QString());
        QCOMPARE(command.getInfoFromChannel("LAMP"_s, "direction"_s, QMetaType::QString, "none"_s),
                 QVariant("none"_s));
        command.commandSetReply({{"doneOk"_s, true}});
        command.stopTheInstruction(1);
    }

    void aCommandIsLinkedWithAnOrderOnly()
    {
        ScriptedCommand command(scriptWithDeclarations(), {}, nullptr);
        QObject noOrder;
        command.linkWithItsOrder(&noOrder);
        QVERIFY(!command.isValid());
        command.linkWithItsOrder(nullptr);
        QVERIFY(!command.isValid());
    }

    void finishingIsToldOnce()
    {
        ScriptedCommand command(scriptWithDeclarations(), {}, nullptr);
        QSignalSpy finished(&command, SIGNAL(sigCommandFinished(bool)));
        bool ok = false;
        command.finishTheCommand(ok);
        ok = true;
        command.commandFinish(ok);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(0).toBool(), false);
    }

    void theCommandOfAnOrderKnowsItsOrderAndTool()
    {
        insideAnOrder({}, [](ScriptedCommand& command) {
            QVERIFY(command.isValid());
            QVERIFY(command.getOrderId() > 0);
            QCOMPARE(command.getLinkedChannel("LAMP"_s), "line0"_s);
            QCOMPARE(command.getLinkedChannel("OTHER"_s), QString());
            QCOMPARE(command.getInfoFromChannel("LAMP"_s, "direction"_s, QMetaType::QString, QVariant()),
                     QVariant("out"_s));
            QCOMPARE(command.getInfoFromChannel("LAMP"_s, "colour"_s, QMetaType::QString, "red"_s),
                     QVariant("red"_s));
        });
    }

    void theCommandOfAnOrderHasItsArgumentsConvertedAndItsSectionsAsTheyAre()
    {
        const QStringList channels{"A"_s, "B"_s};
        insideAnOrder({{"channel"_s, 5}, {"channels"_s, channels}}, [&](ScriptedCommand& command) {
            QCOMPARE(command.getParameterValue("channel"_s, QVariant()), QVariant("5"_s));
            QCOMPARE(command.getParameterValue("value"_s, QVariant()), QVariant(1));
            QCOMPARE(command.getParametersSection("channels"_s), QVariant(channels));
            QCOMPARE(command.getParametersSection("channels"_s).type(), QVariant::StringList);
        });
    }
};

QTEST_GUILESS_MAIN(TestAbstractCommand)
#include "test_abstract_command.moc"
