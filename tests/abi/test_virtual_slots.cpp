#include "literals.h"
#include "virtual_slot.h"

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_abstract_plugin.h>
#include <plugin_management/d_abstract_plugin_backend.h>

#include <QtTest>

namespace {

using Slots = QVector<QPair<QString, int>>;

/// The slots that do not come one after another, right after those of QObject.
QStringList outOfOrder(const Slots& table)
{
    QStringList problems;
    for (int i = 0; i < table.size(); ++i) {
        if (table.at(i).second != 12 + i) {
            problems.append(
                "%1 at %2, expected at %3"_s.arg(table.at(i).first).arg(table.at(i).second).arg(12 + i));
        }
    }
    return problems;
}

/// A class whose virtual stands right after those of QObject.
class AfterQObject : public QObject
{
public:
    virtual void first();
};

#define SLOT_ENTRY(function)                                                                                 \
    {                                                                                                        \
        QStringLiteral(#function), virtualSlotOf(&Seen::function)                                            \
    }

/// Names the operations from inside a subclass, where protected ones can be named too.
class SeenCommand : public DAbstractCommand
{
public:
    static Slots table()
    {
        using Seen = SeenCommand;
        return {SLOT_ENTRY(linkWithItsOrder), SLOT_ENTRY(commandName),         SLOT_ENTRY(stopCommandName),
                SLOT_ENTRY(getOrderId),       SLOT_ENTRY(getParameterOrderId), SLOT_ENTRY(isRecurrent),
                SLOT_ENTRY(isValid),          SLOT_ENTRY(description),         SLOT_ENTRY(fullDescription),
                SLOT_ENTRY(commandArguments), SLOT_ENTRY(commandExecute),      SLOT_ENTRY(setReply),
                SLOT_ENTRY(finishTheCommand), SLOT_ENTRY(sigCommandFinished),  SLOT_ENTRY(addInstruction),
                SLOT_ENTRY(createCommand)};
    }
};

class SeenPlugin : public DAbstractPlugin
{
public:
    static Slots table()
    {
        using Seen = SeenPlugin;
        using GetProperty = QVariant (DAbstractPlugin::*)(const QString&) const;
        using GetPropertyOr = QVariant (DAbstractPlugin::*)(const QString&, const QVariant&) const;
        return {
            SLOT_ENTRY(initPluginCommands),
            SLOT_ENTRY(createInstance),
            SLOT_ENTRY(pluginSubTypeName),
            SLOT_ENTRY(objectUuid),
            SLOT_ENTRY(getName),
            SLOT_ENTRY(pluginUuid),
            SLOT_ENTRY(pluginName),
            SLOT_ENTRY(pluginVersion),
            SLOT_ENTRY(pluginType),
            SLOT_ENTRY(compatiblePlugins),
            SLOT_ENTRY(compatibilityString),
            {"getProperty"_s, virtualSlotOf(static_cast<GetProperty>(&Seen::getProperty))},
            {"getProperty with a fallback"_s, virtualSlotOf(static_cast<GetPropertyOr>(&Seen::getProperty))},
            SLOT_ENTRY(getFunctions),
            SLOT_ENTRY(getFunctionDescription),
            SLOT_ENTRY(getCommandParameters),
            SLOT_ENTRY(setMainConfig),
            SLOT_ENTRY(getInMainConfig),
            SLOT_ENTRY(getInPluginConfig),
            SLOT_ENTRY(getDebugIdentification),
            SLOT_ENTRY(getMainConfig),
            SLOT_ENTRY(setInPluginConfig),
            SLOT_ENTRY(setInMainConfig)};
    }
};

class SeenBackend : public DAbstractPluginBackend
{
public:
    static Slots table()
    {
        using Seen = SeenBackend;
        return {SLOT_ENTRY(applyTreatmentReply), SLOT_ENTRY(treatmentReleased)};
    }
};

} // namespace

class TestVirtualSlots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thoseOfQObjectAreTwelve() { QCOMPARE(virtualSlotOf(&AfterQObject::first), 12); }

    void functionsThatAreNotVirtualHaveNone() { QCOMPARE(virtualSlotOf(&QObject::objectName), -1); }

    void operationsComeInOneRun()
    {
        QCOMPARE(outOfOrder(SeenCommand::table()), QStringList());
        QCOMPARE(outOfOrder(SeenPlugin::table()), QStringList());
        QCOMPARE(outOfOrder(SeenBackend::table()), QStringList());
    }

    void interfacesComeSecondAndKeepTheOrder()
    {
        // An interface's own table begins with its operations, save where its destructor stands before them.
        const int firstOfCommand = virtualSlotOf(&ICommand::linkWithItsOrder);
        QCOMPARE(virtualSlotOf(&ICommand::createCommand), firstOfCommand + 15);
        QCOMPARE(virtualSlotOf(&ICommand::commandExecute), firstOfCommand + 10);
        const int firstOfPlugin = virtualSlotOf(&IPlugin::createInstance);
        QCOMPARE(virtualSlotOf(&IPlugin::pluginSubTypeName), firstOfPlugin + 1);
        QCOMPARE(virtualSlotOf(&IPlugin::objectUuid), firstOfPlugin + 2);
        QCOMPARE(virtualSlotOf(&IPlugin::setInMainConfig), firstOfPlugin + 21);
    }
};

QTEST_GUILESS_MAIN(TestVirtualSlots)
#include "test_virtual_slots.moc"
