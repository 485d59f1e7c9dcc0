#include "literals.h"
#include "virtual_slot.h"

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_abstract_plugin.h>
#include <plugin_management/d_abstract_plugin_backend.h>

#include <QtTest>

namespace {

/// The slots of these functions that do not come one after another, right after those of QObject. The names
/// stand in one text, as they are called.
template <typename... Functions>
QStringList outOfOrder(const QString& names, Functions... functions)
{
    int expected = 12;
    QStringList problems;
    const auto check = [&](int slot) {
        if (slot != expected) {
            const QString name = names.section(QLatin1Char(','), expected - 12, expected - 12).trimmed();
            problems.append("%1 at %2, expected at %3"_s.arg(name).arg(slot).arg(expected));
        }
        ++expected;
    };
    (check(virtualSlotOf(functions)), ...);
    return problems;
}

/// A class whose virtual stands right after those of QObject.
class AfterQObject : public QObject
{
public:
    virtual void first();
};

#define OUT_OF_ORDER(...) outOfOrder(QStringLiteral(#__VA_ARGS__), __VA_ARGS__)

/// Names the operations from inside a subclass, where protected ones can be named too.
class SeenCommand : public DAbstractCommand
{
public:
    static QStringList problems()
    {
        using Seen = SeenCommand;
        return OUT_OF_ORDER(&Seen::linkWithItsOrder, &Seen::commandName, &Seen::stopCommandName,
                            &Seen::getOrderId, &Seen::getParameterOrderId, &Seen::isRecurrent, &Seen::isValid,
                            &Seen::description, &Seen::fullDescription, &Seen::commandArguments,
                            &Seen::commandExecute, &Seen::setReply, &Seen::finishTheCommand,
                            &Seen::sigCommandFinished, &Seen::addInstruction, &Seen::createCommand);
    }
};

class SeenPlugin : public DAbstractPlugin
{
public:
    static QStringList problems()
    {
        using Seen = SeenPlugin;
        const auto getProperty =
            static_cast<QVariant (DAbstractPlugin::*)(const QString&) const>(&Seen::getProperty);
        const auto getPropertyOr =
            static_cast<QVariant (DAbstractPlugin::*)(const QString&, const QVariant&) const>(
                &Seen::getProperty);
        return OUT_OF_ORDER(&Seen::initPluginCommands, &Seen::createInstance, &Seen::pluginSubTypeName,
                            &Seen::objectUuid, &Seen::getName, &Seen::pluginUuid, &Seen::pluginName,
                            &Seen::pluginVersion, &Seen::pluginType, &Seen::compatiblePlugins,
                            &Seen::compatibilityString, getProperty, getPropertyOr, &Seen::getFunctions,
                            &Seen::getFunctionDescription, &Seen::getCommandParameters, &Seen::setMainConfig,
                            &Seen::getInMainConfig, &Seen::getInPluginConfig, &Seen::getDebugIdentification,
                            &Seen::getMainConfig, &Seen::setInPluginConfig, &Seen::setInMainConfig);
    }
};

class SeenBackend : public DAbstractPluginBackend
{
public:
    static QStringList problems()
    {
        return OUT_OF_ORDER(&SeenBackend::applyTreatmentReply, &SeenBackend::treatmentReleased);
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
        QCOMPARE(SeenCommand::problems(), QStringList());
        QCOMPARE(SeenPlugin::problems(), QStringList());
        QCOMPARE(SeenBackend::problems(), QStringList());
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
