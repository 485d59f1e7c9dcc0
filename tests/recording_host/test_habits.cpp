#include "literals.h"
#include "records.h"

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_abstract_plugin_backend.h>

#include <QtTest>

namespace {

class Command : public DAbstractCommand
{
public:
    explicit Command(const QVariantMap& arguments, QObject* parent = nullptr)
        : DAbstractCommand("any"_s, arguments, parent)
    {
        declareAParameter("value"_s, "ui16"_s, QString(), QVariant());
    }

    QSharedPointer<ICommand> createCommand(const QVariantMap& arguments) override
    {
        return QSharedPointer<Command>::create(arguments, parent());
    }
    QVariant value() const { return getParameterValue("value"_s, QVariant()); }
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
class TestHabits : public QObject
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
            backend.queueTreatment(id, "any"_s, {});
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

    void valuesAreConvertedOrLeftAsTheyAre()
    {
        const QVector<QPair<QVariant, quint16>> values = {
            {true, 1}, {70000, 4464}, {-1, 65535}, {"12"_s, 12}};
        for (const auto& [given, converted] : values) {
            const QVariant value = Command({{"value"_s, given}}).value();
            const QVariant expected =
                hostHas(HostHabit::ConvertsValues) ? QVariant::fromValue(converted) : given;
            QCOMPARE(value.userType(), expected.userType());
            QCOMPARE(value, expected);
        }
    }
};

QTEST_GUILESS_MAIN(TestHabits)
#include "test_habits.moc"
