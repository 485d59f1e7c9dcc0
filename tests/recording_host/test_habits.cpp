#include "backend_record.h"
#include "command_record.h"
#include "host_record.h"

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_abstract_plugin_backend.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

class Command : public DAbstractCommand
{
public:
    explicit Command(const QVariantMap& arguments, QObject* parent = nullptr)
        : DAbstractCommand(QStringLiteral("any"), arguments, parent)
    {
        declareAParameter(QStringLiteral("value"), QStringLiteral("ui16"), QString(), QVariant());
    }

    QSharedPointer<ICommand> createCommand(const QVariantMap& arguments) override
    {
        return QSharedPointer<Command>::create(arguments, parent());
    }
    QVariant value() const { return getParameterValue(QStringLiteral("value"), QVariant()); }
};

class Backend : public DAbstractPluginBackend
{
public:
    Backend()
        : DAbstractPluginBackend(QString(), nullptr)
    {}

    using DAbstractPluginBackend::boundToolObject;
    using DAbstractPluginBackend::queueTreatment;
};

} // namespace

/// What the recording host does by habit, so that the tests on hosts of other habits are what they say.
class HabitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWorkingInstanceStaysWithTheParentOrNot()
    {
        QObject owner;
        Command prototype({}, &owner);
        const QSharedPointer<ICommand> made = commandOfAnOrder(prototype, {});
        QCOMPARE(dynamic_cast<Command&>(*made).parent(), hostHas(HostHabit::KeepsParents) ? &owner : nullptr);
    }

    void someTreatmentsAreRefusedOrNone()
    {
        Backend backend;
        constexpr int count = 100;
        for (int id = 0; id < count; ++id) {
            backend.queueTreatment(id, QStringLiteral("any"), {});
        }
        const int accepted = recordOf(backend).accepted.size();
        QCOMPARE(recordOf(backend).asked.size(), count);
        if (hostHas(HostHabit::RefusesAtRandom)) {
            QVERIFY(accepted > 0 && accepted < count);
        } else {
            QCOMPARE(accepted, count);
        }
    }

    void aBackendIsInitialisedWithItsToolOrOnceWithoutOne()
    {
        Backend backend;
        DBoundTool tool;
        QVector<DBoundTool*> bound;
        connect(&backend, &Backend::abstractBackendInitialized,
                [&] { bound.append(backend.boundToolObject); });
        initialise(backend, &tool);
        initialise(backend, &tool);
        QCOMPARE(bound, hostHas(HostHabit::InitialisesTooEarly) ? QVector<DBoundTool*>({nullptr})
                                                                : QVector<DBoundTool*>({&tool, &tool}));
        QCOMPARE(backend.boundToolObject, &tool);
    }

    void valuesAreConvertedOrLeftAsTheyAre_data()
    {
        QTest::addColumn<QVariant>("given");
        QTest::addColumn<int>("converted");
        QTest::newRow("a bool") << QVariant(true) << 1;
        QTest::newRow("70000") << QVariant(70000) << 4464;
        QTest::newRow("minus one") << QVariant(-1) << 65535;
        QTest::newRow("a text") << QVariant(QStringLiteral("12")) << 12;
    }

    void valuesAreConvertedOrLeftAsTheyAre()
    {
        QFETCH(QVariant, given);
        QFETCH(int, converted);
        const Command command({{QStringLiteral("value"), given}});
        if (hostHas(HostHabit::ConvertsValues)) {
            QCOMPARE(command.value().userType(), static_cast<int>(QMetaType::UShort));
            QCOMPARE(command.value().toInt(), converted);
        } else {
            QCOMPARE(command.value().userType(), given.userType());
            QCOMPARE(command.value(), given);
        }
    }
};

QTEST_GUILESS_MAIN(HabitsTest)
#include "test_habits.moc"
