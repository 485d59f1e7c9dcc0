#include "meta_object_text.h"
#include "p_tool_gpio.h"
#include "recorded_command.h"
#include "records.h"
#include "rows.h"

#include <stdexcept>

class TestPlugin : public QuietTest
{
    Q_OBJECT

    static inline const QUuid c_pluginUuid{"{78c1adc4-57e9-4b97-bb64-a19f85c099a2}"_s};
    static inline const QUuid c_objectUuid{"{00112233-4455-6677-8899-aabbccddeeff}"_s};

    static inline const QStringList c_commandNames = {"setValue"_s,       "switchValue"_s, "getValue"_s,
                                                      "startListening"_s, "init"_s,        "listenToAll"_s};

    /// A plugin that serves another object than it was made for.
    class RenamedPlugin : public PToolGpio
    {
    public:
        QUuid objectUuid() const override { return c_objectUuid; }
    };

private Q_SLOTS:
    // Comes first: later the types are registered.
    void qmlTypesAreRegisteredBetweenTheTwoProperties()
    {
        QCOMPARE(QMetaType::type("DGpioChannel*"), static_cast<int>(QMetaType::UnknownType));
        QMap<QString, bool> registered;
        hostRecord().onCall = [&registered](const QString& call) {
            registered.insert(call, QMetaType::type("DGpioChannel*") != QMetaType::UnknownType &&
                                        QMetaType::type("BeMaintenanceToolGpio*") != QMetaType::UnknownType);
        };
        const PToolGpio plugin;
        QCOMPARE(registered.value("construct the plugin"_s, true), false);
        QCOMPARE(registered.value("setProperty toolType"_s, true), false);
        QCOMPARE(registered.value("setProperty typeName"_s, false), true);
    }

    void constructionCallsTheHostInOrder()
    {
        const PToolGpio plugin;
        QCOMPARE(hostRecord().calls, QStringList({"versionFromString 1.0"_s, "construct the plugin"_s,
                                                  "setProperty toolType"_s, "setProperty typeName"_s}));
        QCOMPARE(hostRecord().versionTexts.size(), 1);
        QVERIFY(!hostRecord().versionTexts.first().asksForSuccess);
        QCOMPARE(hostRecord().versionTexts.first().separator, QChar(QLatin1Char('.')));
    }

    void identityGoesToTheBase()
    {
        hostRecord().version = 0x1000200030004;
        QObject owner;
        const PToolGpio plugin(c_objectUuid, &owner);
        const PluginRecord& record = recordOf(plugin);
        QCOMPARE(record.pluginUuid, c_pluginUuid);
        QCOMPARE(record.pluginName, "Tool Gpio"_s);
        QCOMPARE(static_cast<uint>(record.type), 1416589164U);
        QCOMPARE(record.version, 0x1000200030004ULL);
        QCOMPARE(record.objectUuid, c_objectUuid);
        QCOMPARE(record.parent, &owner);
        QCOMPARE(record.flag, false);
    }

    void prototypeServesNoObjectAndHasNoParent()
    {
        const PToolGpio plugin;
        QVERIFY(recordOf(plugin).objectUuid.isNull());
        QCOMPARE(recordOf(plugin).parent, nullptr);
    }

    void staticIdentityAgreesWithAnInstances()
    {
        const PToolGpio plugin;
        QCOMPARE(PToolGpio::getPluginId(), c_pluginUuid);
        QCOMPARE(PToolGpio::getPluginId(), plugin.pluginUuid());
        QCOMPARE(QByteArray(PToolGpio::getPluginName()), QByteArray("Tool Gpio"));
        QCOMPARE(QString::fromLatin1(PToolGpio::getPluginName()), plugin.pluginName());
        QCOMPARE(static_cast<uint>(PToolGpio::getPluginType()), 0x546F6F6CU);
        QCOMPARE(PToolGpio::getPluginType(), plugin.pluginType());
        QCOMPARE(QByteArray(plugin.pluginSubTypeName()), QByteArray("gpio"));
    }

    void propertiesAreSetWithoutTheFlag()
    {
        const PToolGpio plugin;
        const QVector<PluginRecord::Property>& properties = recordOf(plugin).properties;
        QCOMPARE(properties.size(), 2);
        QCOMPARE(properties.at(0).name, "toolType"_s);
        COMPARE_EXACTLY(properties.at(0).value, QVariant(3));
        QCOMPARE(properties.at(1).name, "typeName"_s);
        COMPARE_EXACTLY(properties.at(1).value, QVariant("gpio"_s));
        QVERIFY(!properties.at(0).flag && !properties.at(1).flag);
    }

    void addsNothingToTheMetaObjectNorToTheSizeOfItsBase()
    {
        QCOMPARE(metaObjectText(PToolGpio::staticMetaObject), QStringList("PToolGpio: DAbstractPlugin"_s));
        QCOMPARE(sizeof(PToolGpio), sizeof(DAbstractPlugin));
    }

    void metaCastKnowsItsNameAndAsksTheBaseForOthers()
    {
        PToolGpio plugin;
        QCOMPARE(plugin.qt_metacast("PToolGpio"), static_cast<void*>(&plugin));
        QCOMPARE(plugin.qt_metacast("DAbstractPlugin"), static_cast<void*>(&plugin));
        QCOMPARE(plugin.qt_metacast("QObject"), static_cast<void*>(&plugin));
        QCOMPARE(plugin.qt_metacast("fr.velt.rd.tav.PToolGpio"), nullptr);
        QCOMPARE(plugin.qt_metacast("Other"), nullptr);
    }

    void createInstanceMakesAWholePluginOfItsOwn()
    {
        QObject owner;
        const PToolGpio prototype(QUuid(), &owner);
        const QScopedPointer<IPlugin> made(prototype.createInstance(c_objectUuid));
        const auto* instance = dynamic_cast<PToolGpio*>(made.data());
        QVERIFY(instance != nullptr && instance != &prototype);
        QCOMPARE(instance->parent(), nullptr);
        QCOMPARE(made->objectUuid(), c_objectUuid);
        QCOMPARE(made->pluginUuid(), c_pluginUuid);
        QCOMPARE(made->pluginName(), "Tool Gpio"_s);
        QCOMPARE(static_cast<uint>(made->pluginType()), 0x546F6F6CU);
        QCOMPARE(made->pluginVersion(), hostRecord().version);
        QCOMPARE(QByteArray(made->pluginSubTypeName()), QByteArray("gpio"));
        QCOMPARE(made->getProperty("toolType"_s), QVariant(3));
        QCOMPARE(made->getProperty("typeName"_s), QVariant("gpio"_s));
        QVERIFY(prototype.objectUuid().isNull());
    }

    void initPluginCommandsDeclaresEachPrototypeBeforeTheNextIsMade()
    {
        PToolGpio plugin(c_objectUuid);
        hostRecord().calls.clear();
        plugin.initPluginCommands();
        QStringList expected;
        for (const QString& name : c_commandNames) {
            expected.append("construct "_s + name);
            expected.append("declareInstructionCommand "_s + name);
        }
        QCOMPARE(hostRecord().calls.filter(QRegularExpression("^(construct|declareInstruction)"_s)),
                 expected);
    }

    void prototypesAreOfTheirClassesAndBelongToThePlugin()
    {
        PToolGpio plugin(c_objectUuid);
        plugin.initPluginCommands();
        const QVector<QByteArray> classes = {"DCmdSetValue",     "DCmdSwitchValue", "DCmdGetValue",
                                             "DCmdListenEvents", "DCmdInitGpio",    "DCmdListenToAll"};
        const QVector<DAbstractCommand*>& prototypes = recordOf(plugin).prototypes;
        QCOMPARE(prototypes.size(), classes.size());
        for (int i = 0; i < classes.size(); ++i) {
            QCOMPARE(QByteArray(prototypes.at(i)->metaObject()->className()), classes.at(i));
            QCOMPARE(prototypes.at(i)->parent(), &plugin);
            QCOMPARE(recordOf(*prototypes.at(i)).arguments, QVariantMap());
            QCOMPARE(prototypes.at(i)->commandName(), c_commandNames.at(i));
        }
    }

    void endOfTheDeclarationIsSignalledOnce()
    {
        PToolGpio plugin(c_objectUuid);
        QSignalSpy done(&plugin, &DAbstractPlugin::sigCommandsInitDone);
        plugin.initPluginCommands();
        QCOMPARE(done.count(), 1);
        QCOMPARE(done.first().at(0).value<QUuid>(), c_objectUuid);
        QCOMPARE(done.first().at(1).toStringList(), c_commandNames);
    }

    void signalCarriesTheObjectThatAnOverrideNames()
    {
        RenamedPlugin plugin;
        QSignalSpy done(&plugin, &DAbstractPlugin::sigCommandsInitDone);
        plugin.initPluginCommands();
        QCOMPARE(done.first().at(0).value<QUuid>(), c_objectUuid);
    }

    void secondDeclarationMakesASecondSet()
    {
        PToolGpio plugin;
        QSignalSpy done(&plugin, &DAbstractPlugin::sigCommandsInitDone);
        plugin.initPluginCommands();
        plugin.initPluginCommands();
        QCOMPARE(recordOf(plugin).prototypes.size(), 12);
        QCOMPARE(
            QSet<DAbstractCommand*>(recordOf(plugin).prototypes.cbegin(), recordOf(plugin).prototypes.cend())
                .size(),
            12);
        QCOMPARE(done.count(), 2);
        QCOMPARE(done.last().at(1).toStringList(), c_commandNames + c_commandNames);
    }

    void prototypesDieWithThePlugin()
    {
        QVector<QPointer<QObject>> prototypes;
        {
            PToolGpio plugin;
            plugin.initPluginCommands();
            for (DAbstractCommand* prototype : recordOf(plugin).prototypes) {
                prototypes.append(prototype);
            }
            QVERIFY(!prototypes.first().isNull());
        }
        for (const QPointer<QObject>& prototype : prototypes) {
            QVERIFY(prototype.isNull());
        }
    }

    void failureWhileAPropertyIsSetDestroysTheBaseAndGoesOn_data()
    {
        const Rows<QString> row("call");
        row("the first property", "setProperty toolType");
        row("the last property", "setProperty typeName");
    }
    void failureWhileAPropertyIsSetDestroysTheBaseAndGoesOn()
    {
        QFETCH(QString, call);
        hostRecord().onCall = [call](const QString& made) {
            if (made == call) {
                throw std::runtime_error("no memory");
            }
        };
        QVERIFY_EXCEPTION_THROWN(PToolGpio(), std::runtime_error);
        QCOMPARE(hostRecord().calls.last(), "destroy the plugin"_s);
    }

    void failureWhileACommandIsMadeKeepsTheEarlierOnes()
    {
        PToolGpio plugin;
        QSignalSpy done(&plugin, &DAbstractPlugin::sigCommandsInitDone);
        hostRecord().onCall = [](const QString& made) {
            if (made == "declareAResult value"_s) {
                throw std::runtime_error("no memory");
            }
        };
        QVERIFY_EXCEPTION_THROWN(plugin.initPluginCommands(), std::runtime_error);
        QCOMPARE(hostRecord().calls.last(), "destroy getValue"_s);
        QCOMPARE(recordOf(plugin).prototypes.size(), 2);
        QCOMPARE(plugin.children().size(), 2);
        QCOMPARE(done.count(), 0);
    }

    void nothingIsLoggedByMakingAndDestroying()
    {
        const PToolGpio prototype;
        const QScopedPointer<IPlugin> instance(prototype.createInstance(c_objectUuid));
    }

    void pointerAndListTypesAreRegistered()
    {
        const PToolGpio plugin;
        for (const char* name : {"DGpioChannel*", "BeMaintenanceToolGpio*", "QQmlListProperty<DGpioChannel>",
                                 "QQmlListProperty<BeMaintenanceToolGpio>"}) {
            QVERIFY2(QMetaType::type(name) != QMetaType::UnknownType, name);
        }
    }
};

QTEST_GUILESS_MAIN(TestPlugin)
#include "test_p_tool_gpio.moc"
