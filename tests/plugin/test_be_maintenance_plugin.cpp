#include "backend_record.h"
#include "be_maintenance_plugin.h"
#include "exact_compare.h"
#include "host_record.h"
#include "report_check.h"
#include "text.h"
#include "virtual_slot.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString c_source = "be_maintenance_plugin"_q;

QVariantMap publicEntry(const QString& id, const QString& type = "digitalInput"_q)
{
    return {{"id"_q, id},
            {"name"_q, id.toLower()},
            {"visibility"_q, "public"_q},
            {"value"_q, QVariantList({QVariantMap({{"id"_q, "type"_q}, {"value"_q, type}})})}};
}

/// A backend and its tool, which the host has not brought together yet.
class BackendBench
{
public:
    explicit BackendBench(const QVariantMap& configuration = {})
        : tool{configuration}
        , record(recordOf(backend))
    {}
    /// A backend that has loaded public binary inputs.
    explicit BackendBench(const QStringList& ids)
        : BackendBench(configurationOf(ids))
    {
        load();
    }

    /// What the host's word loads; a host that gives it too early leaves the loading to others.
    void load()
    {
        initialise(backend, &tool);
        if (hostHas(HostHabit::InitialisesTooEarly)) {
            backend.initBackend();
        }
    }

    static QVariantMap configurationOf(const QStringList& ids)
    {
        QVariantList entries;
        for (const QString& id : ids) {
            entries.append(publicEntry(id));
        }
        return {{"channels"_q, entries}};
    }
    QStringList ids()
    {
        QStringList ids;
        for (const auto& channel : backend.channelsModel()->items()) {
            ids.append(channel->id());
        }
        return ids;
    }

    DBoundTool tool;
    BeMaintenanceToolGpio backend;
    BackendRecord& record;
};

QString treatmentProblem(const BackendRecord::Treatment& treatment, int id, const QString& name,
                         const QVariantMap& parameters)
{
    if (treatment.id != id || treatment.name != name) {
        return "%1 %2"_q.arg(treatment.id).arg(treatment.name);
    }
    return difference(treatment.parameters, parameters);
}

} // namespace

#define COMPARE_TREATMENT(treatment, id, name, ...)                                                          \
    do {                                                                                                     \
        const QString problem = treatmentProblem(treatment, id, name, __VA_ARGS__);                          \
        QVERIFY2(problem.isEmpty(), qPrintable(problem));                                                    \
    } while (false)

class TestMaintenanceBackend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newBackendIsEmptyAndOfThePluginsLibrary()
    {
        QObject owner;
        const MessageLog log;
        auto* backend = new BeMaintenanceToolGpio(&owner);
        QCOMPARE(recordOf(*backend).pluginLib, "PlgLibToolGpio"_q);
        QCOMPARE(recordOf(*backend).parent, &owner);
        QCOMPARE(backend->connectionPath(), QString());
        QCOMPARE(backend->version(), QString());
        QCOMPARE(backend->channelsModel()->rowCount(), 0);
        QCOMPARE(backend->channelsModel()->parent(), nullptr);
        QCOMPARE(recordOf(BeMaintenanceToolGpio()).parent, nullptr);
        delete backend;
        QCOMPARE(log.texts(), QStringList());
    }

    void propertiesStandInOrderReadableFinalAndNotified()
    {
        const QMetaObject& meta = BeMaintenanceToolGpio::staticMetaObject;
        QCOMPARE(QByteArray(meta.className()), QByteArray("BeMaintenanceToolGpio"));
        QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("DAbstractPluginBackend"));
        const QVector<QByteArray> names = {"connectionPath", "version", "channelsModel"};
        const QVector<QByteArray> types = {"QString", "QString", "OLM_DGpioChannel*"};
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            const QMetaProperty property = meta.property(meta.propertyOffset() + i);
            QCOMPARE(QByteArray(property.name()), names.at(i));
            QCOMPARE(QByteArray(property.typeName()), types.at(i));
            QCOMPARE(property.notifySignal().methodSignature(), names.at(i) + "Changed()");
            QVERIFY(property.isReadable());
            QVERIFY(!property.isWritable());
            QVERIFY(property.isFinal());
        }
    }

    void signalsThenSlotsStandInOrder()
    {
        struct Expected
        {
            QByteArray signature;
            QMetaMethod::MethodType type;
        };
        const QVector<Expected> methods = {{"connectionPathChanged()", QMetaMethod::Signal},
                                           {"versionChanged()", QMetaMethod::Signal},
                                           {"channelsModelChanged()", QMetaMethod::Signal},
                                           {"delayingClickedOnChannel(int)", QMetaMethod::Signal},
                                           {"updateChannelsValue()", QMetaMethod::Slot},
                                           {"clickedOnChannel(int)", QMetaMethod::Slot}};
        const QMetaObject& meta = BeMaintenanceToolGpio::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), methods.size());
        for (int i = 0; i < methods.size(); ++i) {
            const QMetaMethod method = meta.method(meta.methodOffset() + i);
            QCOMPARE(method.methodSignature(), methods.at(i).signature);
            QCOMPARE(method.methodType(), methods.at(i).type);
            QCOMPARE(method.access(), QMetaMethod::Public);
            const QList<QByteArray> parameters = method.parameterNames();
            QCOMPARE(parameters, method.parameterCount() == 1 ? QList<QByteArray>({"channelIndex"})
                                                              : QList<QByteArray>());
        }
    }

    void overridesKeepTheSlotsOfTheBase()
    {
        QCOMPARE(virtualSlotOf(&BeMaintenanceToolGpio::applyTreatmentReply), 12);
        QCOMPARE(virtualSlotOf(&BeMaintenanceToolGpio::treatmentReleased), 13);
        QCOMPARE(virtualSlotOf(&BeMaintenanceToolGpio::initBackend), -1);
    }

    void modelPropertyIsThePointerToTheModelHeldByValue()
    {
        BeMaintenanceToolGpio backend;
        const QVariant model = backend.property("channelsModel");
        QCOMPARE(QByteArray(model.typeName()), QByteArray("OLM_DGpioChannel*"));
        QCOMPARE(model.value<OLM_DGpioChannel*>(), backend.channelsModel());
        const auto* begin = reinterpret_cast<const char*>(&backend);
        const auto* held = reinterpret_cast<const char*>(backend.channelsModel());
        QVERIFY(held > begin && held < begin + sizeof(BeMaintenanceToolGpio));
    }

    void propertySystemCannotWrite()
    {
        BeMaintenanceToolGpio backend;
        QVERIFY(!backend.setProperty("connectionPath", "path"_q));
        QVERIFY(!backend.setProperty("version", "2"_q));
        QCOMPARE(backend.property("connectionPath"), QVariant(""_q));
        QCOMPARE(backend.property("version"), QVariant(""_q));
    }

    void changeOfAConnectionPathIsNotifiedOnce()
    {
        BeMaintenanceToolGpio backend;
        QSignalSpy changed(&backend, &BeMaintenanceToolGpio::connectionPathChanged);
        QSignalSpy otherChanged(&backend, &BeMaintenanceToolGpio::versionChanged);
        backend.setConnectionPath(""_q);
        QCOMPARE(changed.count(), 0);
        backend.setConnectionPath("path"_q);
        backend.setConnectionPath("path"_q);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(backend.property("connectionPath"), QVariant("path"_q));
        QCOMPARE(otherChanged.count(), 0);
    }

    void changeOfAVersionIsNotifiedOnce()
    {
        BeMaintenanceToolGpio backend;
        QSignalSpy changed(&backend, &BeMaintenanceToolGpio::versionChanged);
        QSignalSpy otherChanged(&backend, &BeMaintenanceToolGpio::connectionPathChanged);
        backend.setVersion(""_q);
        QCOMPARE(changed.count(), 0);
        backend.setVersion("1.0"_q);
        backend.setVersion("1.0"_q);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(backend.property("version"), QVariant("1.0"_q));
        QCOMPARE(otherChanged.count(), 0);
    }

    void initialisationLoadsThePublicChannels()
    {
        BackendBench bench(
            {{"channels"_q, QVariantList({QVariantMap({{"id"_q, "OTHER"_q}, {"visibility"_q, "private"_q}}),
                                          publicEntry("A"_q, "analogOutput"_q),
                                          QVariantMap({{"id"_q, "NONE"_q}}), publicEntry("B"_q)})}});
        QSignalSpy modelReplaced(&bench.backend, &BeMaintenanceToolGpio::channelsModelChanged);
        QSignalSpy inserted(bench.backend.channelsModel(), &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(bench.backend.channelsModel(), &OLM_DGpioChannel::changed);
        const MessageLog log;
        bench.load();
        QCOMPARE(bench.ids(), QStringList({"A"_q, "B"_q}));
        QCOMPARE(bench.backend.getChannelAt(0)->name(), "a"_q);
        QCOMPARE(bench.backend.getChannelAt(0)->type(), DGpioChannel::CeCtAnaOut);
        QVERIFY(!bench.backend.getChannelAt(0)->value().isValid());
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(modelReplaced.count(), 0);
        QVERIFY(bench.record.asked.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void visibilityMustBeExactlyPublic_data()
    {
        QTest::addColumn<QVariant>("visibility");
        QTest::addColumn<int>("rows");
        QTest::newRow("public") << QVariant("public"_q) << 1;
        QTest::newRow("bytes") << QVariant(QByteArray("public")) << 1;
        QTest::newRow("Public") << QVariant("Public"_q) << 0;
        QTest::newRow("a trailing blank") << QVariant("public "_q) << 0;
        QTest::newRow("a leading blank") << QVariant(" public"_q) << 0;
        QTest::newRow("private") << QVariant("private"_q) << 0;
        QTest::newRow("empty") << QVariant(""_q) << 0;
        QTest::newRow("a bool") << QVariant(true) << 0;
        QTest::newRow("an invalid value") << QVariant() << 0;
    }
    void visibilityMustBeExactlyPublic()
    {
        QFETCH(QVariant, visibility);
        QFETCH(int, rows);
        QVariantMap entry = publicEntry("A"_q);
        entry.insert("visibility"_q, visibility);
        BackendBench bench({{"channels"_q, QVariantList({entry})}});
        bench.load();
        QCOMPARE(bench.backend.channelsModel()->rowCount(), rows);
    }

    void elementsThatAreNoMapsAreSkipped()
    {
        const QVariantHash hash = {{"id"_q, "HASH"_q}, {"visibility"_q, "public"_q}};
        BackendBench bench({{"channels"_q, QVariantList({"public"_q, 5, QVariant(), hash, QVariantList(),
                                                         QVariantMap(), publicEntry("A"_q)})}});
        const MessageLog log;
        bench.load();
        QCOMPARE(bench.ids(), QStringList({"A"_q}));
        QCOMPARE(log.texts(), QStringList());
    }

    void configurationWithoutAListOfChannelsLoadsNothing_data()
    {
        QTest::addColumn<QVariantMap>("configuration");
        QTest::newRow("empty") << QVariantMap();
        QTest::newRow("another key") << QVariantMap({{"Channels"_q, QVariantList({publicEntry("A"_q)})}});
        QTest::newRow("a map") << QVariantMap({{"channels"_q, publicEntry("A"_q)}});
        QTest::newRow("texts") << QVariantMap({{"channels"_q, QStringList({"A"_q})}});
        QTest::newRow("a list of another kind")
            << QVariantMap({{"channels"_q, QJsonArray({QJsonObject::fromVariantMap(publicEntry("A"_q))})}});
        QTest::newRow("an invalid value") << QVariantMap({{"channels"_q, QVariant()}});
        QTest::newRow("an empty list") << QVariantMap({{"channels"_q, QVariantList()}});
    }
    void configurationWithoutAListOfChannelsLoadsNothing()
    {
        QFETCH(QVariantMap, configuration);
        BackendBench bench(configuration);
        const MessageLog log;
        bench.load();
        QCOMPARE(bench.backend.channelsModel()->rowCount(), 0);
        QCOMPARE(log.texts(), QStringList());
    }

    void initialisationWithoutAToolLoadsNothing()
    {
        BackendBench bench(BackendBench::configurationOf({"A"_q}));
        const MessageLog log;
        initialise(bench.backend, nullptr);
        QCOMPARE(bench.backend.channelsModel()->rowCount(), 0);
        QCOMPARE(log.texts(), QStringList());
        bench.load();
        QCOMPARE(bench.ids(), QStringList({"A"_q}));
    }

    void eachInitialisationWithAToolLoadsItsChannels()
    {
        BackendBench bench(BackendBench::configurationOf({"A"_q, "B"_q}));
        const QStringList loaded =
            hostHas(HostHabit::InitialisesTooEarly) ? QStringList() : QStringList({"A"_q, "B"_q});
        initialise(bench.backend, &bench.tool);
        QCOMPARE(bench.ids(), loaded);
        initialise(bench.backend, &bench.tool);
        QCOMPARE(bench.ids(), loaded + loaded);
        QVERIFY(loaded.isEmpty() || bench.backend.getChannelAt(0) != bench.backend.getChannelAt(2));
    }

    void channelOfARowIsShared()
    {
        BackendBench bench({"A"_q, "B"_q});
        QCOMPARE(bench.backend.getChannelAt(1), bench.backend.channelsModel()->items().at(1));
        for (const int row : {-1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
            QVERIFY(bench.backend.getChannelAt(row).isNull());
        }
    }

    void refreshQueuesAReadForEachRow()
    {
        BackendBench bench(
            {{"channels"_q, QVariantList({QVariantMap({{"id"_q, "HIDDEN"_q}}), publicEntry("A"_q),
                                          publicEntry("B"_q, "analogOutput"_q)})}});
        bench.load();
        const MessageLog log;
        bench.backend.updateChannelsValue();
        QCOMPARE(bench.record.asked.size(), 2);
        COMPARE_TREATMENT(bench.record.asked.at(0), 0, "getValue"_q, QVariantMap({{"channel"_q, "A"_q}}));
        COMPARE_TREATMENT(bench.record.asked.at(1), 1, "getValue"_q, QVariantMap({{"channel"_q, "B"_q}}));
        QCOMPARE(log.texts(), QStringList());
    }

    void refreshQueuesNothingWhileAnythingIsPending()
    {
        BackendBench bench({"A"_q, "B"_q});
        bench.record.pending = true;
        bench.backend.updateChannelsValue();
        QVERIFY(bench.record.asked.isEmpty());
        bench.record.pending = false;
        bench.backend.updateChannelsValue();
        QCOMPARE(bench.record.asked.size(), 2);
    }

    void refreshOnceBegunGoesThroughAllRows()
    {
        BackendBench bench({"A"_q, "B"_q});
        bench.record.onTreatment = [&bench](const BackendRecord::Treatment& treatment) {
            bench.record.pending = true;
            if (treatment.id == 0) {
                bench.backend.channelsModel()->append(DGpioChannel::create({{"id"_q, "LATE"_q}}));
            }
        };
        bench.backend.updateChannelsValue();
        QCOMPARE(bench.record.asked.size(), 3);
        COMPARE_TREATMENT(bench.record.asked.at(2), 2, "getValue"_q, QVariantMap({{"channel"_q, "LATE"_q}}));
    }

    void refreshOfAnEmptyModelIsSilent()
    {
        BackendBench bench;
        const MessageLog log;
        bench.backend.updateChannelsValue();
        QVERIFY(bench.record.asked.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void refusedRefreshIsLost()
    {
        BackendBench bench({"A"_q, "B"_q, "C"_q});
        bench.record.refusals = 1;
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        const MessageLog log;
        bench.backend.updateChannelsValue();
        QCoreApplication::processEvents();
        QCOMPARE(bench.record.asked.size(), 3);
        QVERIFY(bench.record.accepted.isEmpty() || bench.record.accepted.first().id > 0);
        QCOMPARE(delayed.count(), 0);
        QCOMPARE(log.texts(), QStringList());
    }

    void refreshReportsARowWithoutAChannelAndGoesOn()
    {
        BackendBench bench({"A"_q});
        bench.backend.channelsModel()->append(QSharedPointer<DGpioChannel>());
        bench.backend.channelsModel()->append(DGpioChannel::create({{"id"_q, "C"_q}}));
        const MessageLog log;
        bench.backend.updateChannelsValue();
        COMPARE_ONE_REPORT(log, bench.backend, c_source,
                           "BeMaintenanceToolGpio::updateChannelsValue: channel is null at index 1"_q);
        QCOMPARE(bench.record.asked.size(), 2);
        COMPARE_TREATMENT(bench.record.asked.at(1), 2, "getValue"_q, QVariantMap({{"channel"_q, "C"_q}}));
    }

    void clickQueuesTheInverseOfTheValue_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("inverse");
        QTest::addColumn<QString>("state");
        QTest::newRow("the number 1") << QVariant(1) << false << "OFF"_q;
        QTest::newRow("the number 5") << QVariant(5) << false << "OFF"_q;
        QTest::newRow("the bool true") << QVariant(true) << false << "OFF"_q;
        QTest::newRow("a text") << QVariant("on"_q) << false << "OFF"_q;
        QTest::newRow("the number 0") << QVariant(0) << true << "ON"_q;
        QTest::newRow("the bool false") << QVariant(false) << true << "ON"_q;
        QTest::newRow("the text 0") << QVariant("0"_q) << true << "ON"_q;
        QTest::newRow("an invalid value") << QVariant() << true << "ON"_q;
    }
    void clickQueuesTheInverseOfTheValue()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, inverse);
        QFETCH(QString, state);
        BackendBench bench({"A"_q, "B"_q});
        bench.backend.getChannelAt(1)->setValue(value);
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        const MessageLog log;
        bench.backend.clickedOnChannel(1);
        QCOMPARE(bench.record.asked.size(), 1);
        QTRY_COMPARE(bench.record.accepted.size(), 1);
        COMPARE_TREATMENT(bench.record.accepted.first(), 1, "setValue"_q,
                          QVariantMap({{"channel"_q, "B"_q}, {"value"_q, inverse}, {"state"_q, state}}));
        COMPARE_EXACTLY(bench.backend.getChannelAt(1)->value(), value);
        QCOMPARE(delayed.count(), bench.record.asked.size() - 1);
        QCOMPARE(log.texts(), QStringList());
    }

    void clickDoesNotLookAtTheTypeOfTheChannel()
    {
        BackendBench bench({{"channels"_q, QVariantList({publicEntry("A"_q, "analogOutput"_q)})}});
        bench.load();
        bench.backend.clickedOnChannel(0);
        QCOMPARE(bench.record.asked.size(), 1);
    }

    void clickWhileAnythingIsPendingIsQueuedAllTheSame()
    {
        BackendBench bench({"A"_q});
        bench.record.pending = true;
        bench.backend.clickedOnChannel(0);
        QCOMPARE(bench.record.asked.size(), 1);
    }

    void clickOutsideTheRowsIsReported_data() { addRowsOutside(); }
    void clickOutsideTheRowsIsReported()
    {
        QFETCH(int, row);
        BackendBench bench({"A"_q});
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        const MessageLog log;
        bench.backend.clickedOnChannel(row);
        COMPARE_ONE_REPORT(log, bench.backend, c_source,
                           "BeMaintenanceToolGpio::clickedOnChannel: channel is null at index %1"_q.arg(row));
        QVERIFY(bench.record.asked.isEmpty());
        QCOMPARE(delayed.count(), 0);
    }

    void refusedClickIsTriedAgainFromTheEventLoopUntilAccepted()
    {
        BackendBench bench({"A"_q, "B"_q});
        bench.record.refusals = 3;
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        bench.backend.clickedOnChannel(1);
        QCOMPARE(bench.record.asked.size(), 1);
        QCOMPARE(delayed, QList<QList<QVariant>>({{1}}));
        QTRY_COMPARE(bench.record.accepted.size(), 1);
        QVERIFY(bench.record.asked.size() > 3);
        QCOMPARE(delayed.count(), bench.record.asked.size() - 1);
        COMPARE_TREATMENT(bench.record.accepted.first(), 1, "setValue"_q,
                          QVariantMap({{"channel"_q, "B"_q}, {"value"_q, true}, {"state"_q, "ON"_q}}));
        QCoreApplication::processEvents();
        QCOMPARE(bench.record.accepted.size(), 1);
    }

    void retriedClickReadsTheValueOfThatMoment()
    {
        BackendBench bench({"A"_q});
        bench.record.refusals = 1;
        bench.backend.clickedOnChannel(0);
        COMPARE_TREATMENT(bench.record.asked.first(), 0, "setValue"_q,
                          QVariantMap({{"channel"_q, "A"_q}, {"value"_q, true}, {"state"_q, "ON"_q}}));
        bench.backend.getChannelAt(0)->setValue(1);
        QTRY_COMPARE(bench.record.accepted.size(), 1);
        COMPARE_TREATMENT(bench.record.accepted.first(), 0, "setValue"_q,
                          QVariantMap({{"channel"_q, "A"_q}, {"value"_q, false}, {"state"_q, "OFF"_q}}));
    }

    void retryDiesWithTheBackend()
    {
        const MessageLog log;
        {
            BackendBench bench({"A"_q});
            bench.record.refusals = 1;
            bench.backend.clickedOnChannel(0);
        }
        QCoreApplication::processEvents();
        QCOMPARE(log.texts(), QStringList());
    }

    void successfulWriteIsFollowedByARead()
    {
        BackendBench bench({"A"_q, "B"_q});
        bench.backend.treatmentReleased(1, "setValue"_q, true);
        QCOMPARE(bench.record.asked.size(), 1);
        COMPARE_TREATMENT(bench.record.asked.first(), 1, "getValue"_q, QVariantMap({{"channel"_q, "B"_q}}));
        QVERIFY(bench.record.baseReleases.isEmpty());
    }

    void refusedReadAfterAWriteIsLost()
    {
        BackendBench bench({"A"_q});
        bench.record.refusals = 1;
        bench.backend.treatmentReleased(0, "setValue"_q, true);
        QCoreApplication::processEvents();
        QCOMPARE(bench.record.asked.size(), 1);
        QVERIFY(bench.record.accepted.isEmpty());
    }

    void otherReleasesAreIgnored_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("success");
        QTest::newRow("a failed write") << 0 << "setValue"_q << false;
        QTest::newRow("a read") << 0 << "getValue"_q << true;
        QTest::newRow("another case") << 0 << "SetValue"_q << true;
        QTest::newRow("a write to no row") << 1 << "setValue"_q << true;
        QTest::newRow("a write to a negative row") << -1 << "setValue"_q << true;
    }
    void otherReleasesAreIgnored()
    {
        QFETCH(int, row);
        QFETCH(QString, name);
        QFETCH(bool, success);
        BackendBench bench({"A"_q});
        const MessageLog log;
        bench.backend.treatmentReleased(row, name, success);
        QVERIFY(bench.record.asked.isEmpty());
        QVERIFY(bench.record.baseReleases.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void readReplyIsStoredInItsRow_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QVariantMap>("reply");
        QTest::addColumn<bool>("suits");
        QTest::newRow("binary, a number") << "digitalInput"_q << QVariantMap({{"value"_q, 1}}) << true;
        QTest::newRow("analogue, a number") << "analogOutput"_q << QVariantMap({{"value"_q, 512}}) << true;
        QTest::newRow("a bool") << "digitalInput"_q << QVariantMap({{"value"_q, true}}) << true;
        QTest::newRow("70000") << "digitalInput"_q << QVariantMap({{"value"_q, 70000}}) << true;
        QTest::newRow("minus one") << "analogOutput"_q << QVariantMap({{"value"_q, -1}}) << true;
        QTest::newRow("a text") << "analogOutput"_q << QVariantMap({{"value"_q, "high"_q}}) << true;
        QTest::newRow("a list") << "digitalInput"_q << QVariantMap({{"value"_q, QVariantList()}}) << false;
        QTest::newRow("unknown type") << "relay"_q << QVariantMap({{"value"_q, 1}}) << false;
        QTest::newRow("no value") << "digitalInput"_q << QVariantMap({{"Value"_q, 1}}) << false;
    }
    void readReplyIsStoredInItsRow()
    {
        QFETCH(QString, type);
        QFETCH(QVariantMap, reply);
        QFETCH(bool, suits);
        BackendBench bench({{"channels"_q, QVariantList({publicEntry("A"_q), publicEntry("B"_q, type)})}});
        bench.load();
        const QSharedPointer<DGpioChannel> channel = bench.backend.getChannelAt(1);
        channel->setValue(-5);
        QSignalSpy changed(channel.data(), &DGpioChannel::valueChanged);
        const MessageLog log;
        QCOMPARE(bench.backend.applyTreatmentReply(1, "getValue"_q, reply), suits);
        COMPARE_EXACTLY(channel->value(), reply.value("value"_q));
        QCOMPARE(changed.count(), 1);
        QVERIFY(!bench.backend.getChannelAt(0)->value().isValid());
        bench.backend.applyTreatmentReply(1, "getValue"_q, reply);
        QCOMPARE(changed.count(), 1);
        QVERIFY(bench.record.baseReplies.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void replyOfAnotherNameGoesToTheBase_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("answer");
        QTest::newRow("setValue, used") << "setValue"_q << true;
        QTest::newRow("setValue, not used") << "setValue"_q << false;
        QTest::newRow("another case") << "GetValue"_q << true;
    }
    void replyOfAnotherNameGoesToTheBase()
    {
        QFETCH(QString, name);
        QFETCH(bool, answer);
        BackendBench bench({"A"_q});
        bench.record.baseReplyAnswer = answer;
        QCOMPARE(bench.backend.applyTreatmentReply(0, name, {{"value"_q, 1}}), answer);
        QCOMPARE(bench.record.baseReplies.size(), 1);
        COMPARE_TREATMENT(bench.record.baseReplies.first(), 0, name, QVariantMap({{"value"_q, 1}}));
        QVERIFY(!bench.backend.getChannelAt(0)->value().isValid());
    }

    void replyOutsideTheRowsIsReportedWhateverItsName_data() { addRowsOutside(); }
    void replyOutsideTheRowsIsReportedWhateverItsName()
    {
        QFETCH(int, row);
        BackendBench bench({"A"_q});
        bench.record.baseReplyAnswer = true;
        for (const QString& name : {"getValue"_q, "setValue"_q}) {
            const MessageLog log;
            QVERIFY(!bench.backend.applyTreatmentReply(row, name, {{"value"_q, 1}}));
            COMPARE_ONE_REPORT(
                log, bench.backend, c_source,
                "BeMaintenanceToolGpio::applyTreatmentReply: channel is null at index %1"_q.arg(row));
        }
        QVERIFY(bench.record.baseReplies.isEmpty());
    }

    void destructionReleasesTheChannelsBeforeTheBase()
    {
        bool releasedBefore = false;
        QWeakPointer<DGpioChannel> channel;
        QPointer<OLM_DGpioChannel> model;
        {
            BackendBench bench({"A"_q});
            channel = bench.backend.getChannelAt(0);
            model = bench.backend.channelsModel();
            bench.record.onDestroyed = [&] { releasedBefore = channel.isNull() && model.isNull(); };
        }
        QVERIFY(releasedBefore);
    }

private:
    static void addRowsOutside()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("before the first") << -1;
        QTest::newRow("past the last") << 1;
        QTest::newRow("the lowest") << std::numeric_limits<int>::min();
        QTest::newRow("the highest") << std::numeric_limits<int>::max();
    }
};

QTEST_GUILESS_MAIN(TestMaintenanceBackend)
#include "test_be_maintenance_plugin.moc"
