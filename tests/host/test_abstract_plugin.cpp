#include "literals.h"
#include "scripted_plugin.h"

#include <QtTest>

class TestAbstractPlugin : public QObject
{
    Q_OBJECT

    static inline const QUuid c_object{"{11111111-2222-3333-4444-555555555555}"};

    static ScriptedPlugin::Scripts scriptsNamed(const QStringList& names)
    {
        ScriptedPlugin::Scripts scripts;
        for (const QString& name : names) {
            auto script = std::make_shared<CommandScript>();
            script->name = name;
            script->description = "Does "_s + name;
            scripts.append(script);
        }
        return scripts;
    }

private Q_SLOTS:
    void theIdentityIsTheOneGivenAtConstruction()
    {
        const ScriptedPlugin plugin({}, c_object);
        const IPlugin& face = plugin;
        QCOMPARE(face.pluginUuid(), ScriptedPlugin::uuid());
        QCOMPARE(face.pluginName(), "Scripted"_s);
        QCOMPARE(face.pluginType(), IPlugin::CeTpTool);
        QCOMPARE(face.pluginVersion(), 0x0001000200030004ULL);
        QCOMPARE(face.objectUuid(), c_object);
        QCOMPARE(plugin.objectName(), "Scripted"_s);
        QVERIFY(plugin.parent() == nullptr);
        QCOMPARE(plugin.compatiblePlugins(), QStringList{ScriptedPlugin::uuid().toString()});
        QCOMPARE(plugin.compatibilityString(), ScriptedPlugin::uuid().toString());
        QCOMPARE(ScriptedPlugin().getName(), "Scripted"_s);
        QCOMPARE(plugin.getName(), "Scripted {11111111-2222-3333-4444-555555555555}"_s);
        QCOMPARE(plugin.getDebugIdentification(),
                 "Scripted {11111111-2222-3333-4444-555555555555} version 0x0001000200030004"_s);
    }

    void aPropertyChangesUntilItIsStoredReadOnly()
    {
        ScriptedPlugin plugin;
        QVERIFY(!plugin.getProperty("toolType"_s).isValid());
        QCOMPARE(plugin.getProperty("toolType"_s, "red"_s), QVariant("red"_s));
        QCOMPARE(plugin.getProperty("standalone"_s), QVariant(false));
        plugin.setProperty("toolType"_s, 1, false);
        plugin.setProperty("toolType"_s, 2, true);
        plugin.setProperty("toolType"_s, 3, false);
        plugin.setProperty("toolType"_s, 4, true);
        QCOMPARE(plugin.getProperty("toolType"_s), QVariant(2));
        QCOMPARE(plugin.getProperty("toolType"_s, 7), QVariant(2));
    }

    void commandsAreListedInTheOrderOfTheirDeclaration()
    {
        ScriptedPlugin plugin(scriptsNamed({"write"_s, "read"_s, "await"_s}), c_object);
        QSignalSpy done(&plugin, &DAbstractPlugin::sigCommandsInitDone);
        QCOMPARE(plugin.commandNames(), QStringList());
        plugin.initPluginCommands();
        const QStringList names{"write"_s, "read"_s, "await"_s};
        QCOMPARE(plugin.commandNames(), names);
        QCOMPARE(plugin.getFunctions(), names);
        QCOMPARE(done.count(), 1);
        QCOMPARE(done.at(0).at(0).toUuid(), c_object);
        QCOMPARE(done.at(0).at(1).toStringList(), names);
        QCOMPARE(plugin.getFunctionDescription("read"_s), "Does read"_s);
        QCOMPARE(plugin.getFunctionDescription("Read"_s), QString());
        QVERIFY(plugin.command("read"_s) != nullptr);
        QVERIFY(plugin.command("erase"_s) == nullptr);
    }

    void aSecondCommandOfANameTakesThePlaceOfTheFirst()
    {
        ScriptedPlugin plugin(scriptsNamed({"write"_s, "read"_s}));
        plugin.initPluginCommands();
        const auto second = scriptsNamed({"write"_s}).constFirst();
        second->description = "Does it anew"_s;
        auto* command = new ScriptedCommand(second, {}, &plugin);
        plugin.declareInstructionCommand(command);
        plugin.declareInstructionCommand(nullptr);
        QCOMPARE(plugin.commandNames(), (QStringList{"write"_s, "read"_s}));
        QCOMPARE(plugin.command("write"_s), command);
        QCOMPARE(plugin.getFunctionDescription("write"_s), "Does it anew"_s);
    }

    void aPrototypeThatIsGoneIsNoLongerListed()
    {
        ScriptedPlugin plugin(scriptsNamed({"write"_s, "read"_s}));
        plugin.initPluginCommands();
        delete plugin.command("write"_s);
        QCOMPARE(plugin.commandNames(), QStringList{"read"_s});
        QVERIFY(plugin.command("write"_s) == nullptr);
    }

    void commandParametersTellNameTypeDescriptionAndDefault()
    {
        const auto scripts = scriptsNamed({"write"_s});
        scripts.constFirst()->parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()},
                                            {"value"_s, "ui16"_s, "Value"_s, 1}};
        ScriptedPlugin plugin(scripts);
        plugin.initPluginCommands();
        QCOMPARE(plugin.getCommandParameters("write"_s),
                 (QVariantList{QVariantMap{{"name"_s, "channel"_s},
                                           {"type"_s, "strg"_s},
                                           {"description"_s, "Channel"_s},
                                           {"default"_s, QVariant()}},
                               QVariantMap{{"name"_s, "value"_s},
                                           {"type"_s, "ui16"_s},
                                           {"description"_s, "Value"_s},
                                           {"default"_s, 1}}}));
        QCOMPARE(plugin.getCommandParameters("erase"_s), QVariantList());
    }

    void theMainConfigurationIsReplacedWholeOrSetByEntryApartFromThePlugins()
    {
        ScriptedPlugin plugin;
        plugin.setInMainConfig("old"_s, 1);
        plugin.setMainConfig({{"name"_s, "Bench"_s}});
        plugin.setInMainConfig("id"_s, 5);
        plugin.setInPluginConfig("name"_s, 7);
        QCOMPARE(plugin.getMainConfig(), (QVariantMap{{"name"_s, "Bench"_s}, {"id"_s, 5}}));
        QCOMPARE(plugin.getInMainConfig("name"_s), QVariant("Bench"_s));
        QVERIFY(!plugin.getInMainConfig("old"_s).isValid());
        QCOMPARE(plugin.getInPluginConfig("name"_s), QVariant(7));
        QVERIFY(!plugin.getInPluginConfig("id"_s).isValid());
    }
};

QTEST_GUILESS_MAIN(TestAbstractPlugin)
#include "test_abstract_plugin.moc"
