#include "be_maintenance_plugin.h"
#include "channel_entry.h"
#include "literals.h"
#include "meta_object_text.h"
#include "quiet_test.h"
#include "records.h"
#include "report_check.h"
#include "rows.h"
#include "virtual_slot.h"

#include <limits>

namespace {

const QString c_source = "be_maintenance_plugin"_s;

QVariantMap publicEntry(const QString& id, const QString& type = "digitalInput"_s)
{
    return channelEntry(id, {{"type"_s, type}});
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
        return {{"channels"_s, entries}};
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

using Treatment = BackendRecord::Treatment;

QString treatmentProblem(const QVector<Treatment>& treatments, const QVector<Treatment>& expected)
{
    return differenceOfLists(treatments, expected, [](const Treatment& is, const Treatment& should) {
        return is.id == should.id && is.name == should.name ? difference(is.parameters, should.parameters)
                                                            : "%1 %2"_s.arg(is.id).arg(is.name);
    });
}

Treatment reading(int id, const QString& channel)
{
    return {id, "getValue"_s, {{"channel"_s, channel}}};
}

Treatment writing(int id, const QString& channel, bool value, const QString& state)
{
    return {id, "setValue"_s, {{"channel"_s, channel}, {"value"_s, value}, {"state"_s, state}}};
}

} // namespace

/// Fails the test unless these are the treatments of a list, in their order.
#define COMPARE_TREATMENTS(treatments, ...) REQUIRE_NO_PROBLEM(treatmentProblem(treatments, __VA_ARGS__))

class TestMaintenanceBackend : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void newBackendIsEmptyAndOfThePluginsLibrary()
    {
        QObject owner;
        auto* backend = new BeMaintenanceToolGpio(&owner);
        QCOMPARE(recordOf(*backend).pluginLib, "PlgLibToolGpio"_s);
        QCOMPARE(recordOf(*backend).parent, &owner);
        QCOMPARE(backend->connectionPath(), QString());
        QCOMPARE(backend->version(), QString());
        QCOMPARE(backend->channelsModel()->rowCount(), 0);
        QCOMPARE(backend->channelsModel()->parent(), nullptr);
        QCOMPARE(recordOf(BeMaintenanceToolGpio()).parent, nullptr);
        delete backend;
    }

    void metaObjectHasThesePropertiesSignalsAndSlots()
    {
        QCOMPARE(metaObjectText(BeMaintenanceToolGpio::staticMetaObject),
                 QStringList(
                     {"BeMaintenanceToolGpio: DAbstractPluginBackend"_s,
                      "property QString connectionPath: readable final, connectionPathChanged()"_s,
                      "property QString version: readable final, versionChanged()"_s,
                      "property OLM_DGpioChannel* channelsModel: readable final, channelsModelChanged()"_s,
                      "public signal void connectionPathChanged()"_s, "public signal void versionChanged()"_s,
                      "public signal void channelsModelChanged()"_s,
                      "public signal void delayingClickedOnChannel(int channelIndex)"_s,
                      "public slot void updateChannelsValue()"_s,
                      "public slot void clickedOnChannel(int channelIndex)"_s}));
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

    void changeOfATextIsNotifiedOnce_data()
    {
        const Rows<QVector<int>> row("notified");
        row("connectionPath", {1, 0});
        row("version", {0, 1});
    }
    void changeOfATextIsNotifiedOnce()
    {
        QFETCH(QVector<int>, notified);
        const char* property = QTest::currentDataTag();
        const auto set = notified.first() == 1 ? &BeMaintenanceToolGpio::setConnectionPath
                                               : &BeMaintenanceToolGpio::setVersion;
        BeMaintenanceToolGpio backend;
        const QSignalSpy pathChanged(&backend, &BeMaintenanceToolGpio::connectionPathChanged);
        const QSignalSpy versionChanged(&backend, &BeMaintenanceToolGpio::versionChanged);
        const auto counts = [&] { return QVector<int>({pathChanged.count(), versionChanged.count()}); };
        (backend.*set)(""_s);
        QCOMPARE(counts(), QVector<int>({0, 0}));
        (backend.*set)("1.0"_s);
        (backend.*set)("1.0"_s);
        QCOMPARE(counts(), notified);
        QVERIFY(!backend.setProperty(property, "2"_s));
        QCOMPARE(backend.property(property), QVariant("1.0"_s));
    }

    void initialisationLoadsThePublicChannels()
    {
        BackendBench bench(
            {{"channels"_s, QVariantList({QVariantMap({{"id"_s, "OTHER"_s}, {"visibility"_s, "private"_s}}),
                                          publicEntry("A"_s, "analogOutput"_s),
                                          QVariantMap({{"id"_s, "NONE"_s}}), publicEntry("B"_s)})}});
        QSignalSpy modelReplaced(&bench.backend, &BeMaintenanceToolGpio::channelsModelChanged);
        QSignalSpy inserted(bench.backend.channelsModel(), &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(bench.backend.channelsModel(), &OLM_DGpioChannel::changed);
        bench.load();
        QCOMPARE(bench.ids(), QStringList({"A"_s, "B"_s}));
        QCOMPARE(bench.backend.getChannelAt(0)->name(), "Name of A"_s);
        QCOMPARE(bench.backend.getChannelAt(0)->type(), DGpioChannel::CeCtAnaOut);
        QVERIFY(!bench.backend.getChannelAt(0)->value().isValid());
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(modelReplaced.count(), 0);
        QVERIFY(bench.record.asked.isEmpty());
    }

    void visibilityMustBeExactlyPublic_data()
    {
        const Rows<QVariant, int> row("visibility", "rows");
        row("public", "public"_s, 1);
        row("bytes", QByteArray("public"), 1);
        row("Public", "Public"_s, 0);
        row("a trailing blank", "public "_s, 0);
        row("a leading blank", " public"_s, 0);
        row("private", "private"_s, 0);
        row("empty", ""_s, 0);
        row("a bool", true, 0);
        row("an invalid value", QVariant(), 0);
    }
    void visibilityMustBeExactlyPublic()
    {
        const auto [visibility, rows] = Rows<QVariant, int>::values();
        QVariantMap entry = publicEntry("A"_s);
        entry.insert("visibility"_s, visibility);
        BackendBench bench({{"channels"_s, QVariantList({entry})}});
        bench.load();
        QCOMPARE(bench.backend.channelsModel()->rowCount(), rows);
    }

    void elementsThatAreNoMapsAreSkipped()
    {
        const QVariantHash hash = {{"id"_s, "HASH"_s}, {"visibility"_s, "public"_s}};
        BackendBench bench({{"channels"_s, QVariantList({"public"_s, 5, QVariant(), hash, QVariantList(),
                                                         QVariantMap(), publicEntry("A"_s)})}});
        bench.load();
        QCOMPARE(bench.ids(), QStringList({"A"_s}));
    }

    void configurationWithoutAListOfChannelsLoadsNothing_data()
    {
        const Rows<QVariantMap> row("configuration");
        row("empty", {});
        row("another key", {{"Channels"_s, QVariantList({publicEntry("A"_s)})}});
        row("a map", {{"channels"_s, publicEntry("A"_s)}});
        row("texts", {{"channels"_s, QStringList({"A"_s})}});
        row("a list of another kind",
            {{"channels"_s, QJsonArray({QJsonObject::fromVariantMap(publicEntry("A"_s))})}});
        row("an invalid value", {{"channels"_s, QVariant()}});
        row("an empty list", {{"channels"_s, QVariantList()}});
    }
    void configurationWithoutAListOfChannelsLoadsNothing()
    {
        QFETCH(QVariantMap, configuration);
        BackendBench bench(configuration);
        bench.load();
        QCOMPARE(bench.backend.channelsModel()->rowCount(), 0);
    }

    void initialisationWithoutAToolLoadsNothing()
    {
        BackendBench bench(BackendBench::configurationOf({"A"_s}));
        initialise(bench.backend, nullptr);
        QCOMPARE(bench.backend.channelsModel()->rowCount(), 0);
        bench.load();
        QCOMPARE(bench.ids(), QStringList({"A"_s}));
    }

    void eachInitialisationWithAToolLoadsItsChannels()
    {
        BackendBench bench(BackendBench::configurationOf({"A"_s, "B"_s}));
        const QStringList loaded =
            hostHas(HostHabit::InitialisesTooEarly) ? QStringList() : QStringList({"A"_s, "B"_s});
        initialise(bench.backend, &bench.tool);
        QCOMPARE(bench.ids(), loaded);
        initialise(bench.backend, &bench.tool);
        QCOMPARE(bench.ids(), loaded + loaded);
        QVERIFY(loaded.isEmpty() || bench.backend.getChannelAt(0) != bench.backend.getChannelAt(2));
    }

    void channelOfARowIsShared()
    {
        BackendBench bench({"A"_s, "B"_s});
        QCOMPARE(bench.backend.getChannelAt(1), bench.backend.channelsModel()->items().at(1));
        for (const int row : {-1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
            QVERIFY(bench.backend.getChannelAt(row).isNull());
        }
    }

    void refreshQueuesAReadForEachRow()
    {
        BackendBench bench(
            {{"channels"_s, QVariantList({QVariantMap({{"id"_s, "HIDDEN"_s}}), publicEntry("A"_s),
                                          publicEntry("B"_s, "analogOutput"_s)})}});
        bench.load();
        bench.backend.updateChannelsValue();
        COMPARE_TREATMENTS(bench.record.asked, {reading(0, "A"_s), reading(1, "B"_s)});
    }

    void refreshQueuesNothingWhileAnythingIsPending()
    {
        BackendBench bench({"A"_s, "B"_s});
        bench.record.pending = true;
        bench.backend.updateChannelsValue();
        QVERIFY(bench.record.asked.isEmpty());
        bench.record.pending = false;
        bench.backend.updateChannelsValue();
        QCOMPARE(bench.record.asked.size(), 2);
    }

    void refreshOnceBegunGoesThroughAllRows()
    {
        BackendBench bench({"A"_s, "B"_s});
        bench.record.onTreatment = [&bench](const BackendRecord::Treatment& treatment) {
            bench.record.pending = true;
            if (treatment.id == 0) {
                bench.backend.channelsModel()->append(DGpioChannel::create({{"id"_s, "LATE"_s}}));
            }
        };
        bench.backend.updateChannelsValue();
        COMPARE_TREATMENTS(bench.record.asked, {reading(0, "A"_s), reading(1, "B"_s), reading(2, "LATE"_s)});
    }

    void refreshOfAnEmptyModelIsSilent()
    {
        BackendBench bench;
        bench.backend.updateChannelsValue();
        QVERIFY(bench.record.asked.isEmpty());
    }

    void refusedRefreshIsLost()
    {
        BackendBench bench({"A"_s, "B"_s, "C"_s});
        bench.record.refusals = 1;
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        bench.backend.updateChannelsValue();
        QCoreApplication::processEvents();
        QCOMPARE(bench.record.asked.size(), 3);
        QVERIFY(bench.record.accepted.isEmpty() || bench.record.accepted.first().id > 0);
        QCOMPARE(delayed.count(), 0);
    }

    void refreshReportsARowWithoutAChannelAndGoesOn()
    {
        BackendBench bench({"A"_s});
        bench.backend.channelsModel()->append(QSharedPointer<DGpioChannel>());
        bench.backend.channelsModel()->append(DGpioChannel::create({{"id"_s, "C"_s}}));
        bench.backend.updateChannelsValue();
        COMPARE_ONE_REPORT(bench.backend, c_source,
                           "BeMaintenanceToolGpio::updateChannelsValue: channel is null at index 1"_s);
        COMPARE_TREATMENTS(bench.record.asked, {reading(0, "A"_s), reading(2, "C"_s)});
    }

    void clickQueuesTheInverseOfTheValue_data()
    {
        const Rows<QVariant, bool, QString> row("value", "inverse", "state");
        row("the number 1", 1, false, "OFF");
        row("the number 5", 5, false, "OFF");
        row("the bool true", true, false, "OFF");
        row("a text", "on"_s, false, "OFF");
        row("the number 0", 0, true, "ON");
        row("the bool false", false, true, "ON");
        row("the text 0", "0"_s, true, "ON");
        row("an invalid value", QVariant(), true, "ON");
    }
    void clickQueuesTheInverseOfTheValue()
    {
        const auto [value, inverse, state] = Rows<QVariant, bool, QString>::values();
        BackendBench bench({"A"_s, "B"_s});
        bench.backend.getChannelAt(1)->setValue(value);
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        bench.backend.clickedOnChannel(1);
        QCOMPARE(bench.record.asked.size(), 1);
        QTRY_COMPARE(bench.record.accepted.size(), 1);
        COMPARE_TREATMENTS(bench.record.accepted, {writing(1, "B"_s, inverse, state)});
        COMPARE_EXACTLY(bench.backend.getChannelAt(1)->value(), value);
        QCOMPARE(delayed.count(), bench.record.asked.size() - 1);
    }

    void clickIsQueuedWhateverTheTypeAndWhileAnythingIsPending()
    {
        BackendBench bench({{"channels"_s, QVariantList({publicEntry("A"_s, "analogOutput"_s)})}});
        bench.load();
        bench.record.pending = true;
        bench.backend.clickedOnChannel(0);
        QCOMPARE(bench.record.asked.size(), 1);
    }

    void clickOutsideTheRowsIsReported_data() { addRowsOutside(); }
    void clickOutsideTheRowsIsReported()
    {
        QFETCH(int, row);
        BackendBench bench({"A"_s});
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        bench.backend.clickedOnChannel(row);
        COMPARE_ONE_REPORT(bench.backend, c_source,
                           "BeMaintenanceToolGpio::clickedOnChannel: channel is null at index %1"_s.arg(row));
        QVERIFY(bench.record.asked.isEmpty());
        QCOMPARE(delayed.count(), 0);
    }

    void refusedClickIsTriedAgainFromTheEventLoopUntilAccepted()
    {
        BackendBench bench({"A"_s, "B"_s});
        bench.record.refusals = 3;
        QSignalSpy delayed(&bench.backend, &BeMaintenanceToolGpio::delayingClickedOnChannel);
        bench.backend.clickedOnChannel(1);
        QCOMPARE(bench.record.asked.size(), 1);
        QCOMPARE(delayed, QList<QList<QVariant>>({{1}}));
        QTRY_COMPARE(bench.record.accepted.size(), 1);
        QVERIFY(bench.record.asked.size() > 3);
        QCOMPARE(delayed.count(), bench.record.asked.size() - 1);
        QCoreApplication::processEvents();
        COMPARE_TREATMENTS(bench.record.accepted, {writing(1, "B"_s, true, "ON"_s)});
    }

    void retriedClickReadsTheValueOfThatMoment()
    {
        BackendBench bench({"A"_s});
        bench.record.refusals = 1;
        bench.backend.clickedOnChannel(0);
        COMPARE_TREATMENTS(bench.record.asked, {writing(0, "A"_s, true, "ON"_s)});
        bench.backend.getChannelAt(0)->setValue(1);
        QTRY_COMPARE(bench.record.accepted.size(), 1);
        COMPARE_TREATMENTS(bench.record.accepted, {writing(0, "A"_s, false, "OFF"_s)});
    }

    void retryDiesWithTheBackend()
    {
        {
            BackendBench bench({"A"_s});
            bench.record.refusals = 1;
            bench.backend.clickedOnChannel(0);
        }
        QCoreApplication::processEvents();
    }

    void successfulWriteIsFollowedByARead()
    {
        BackendBench bench({"A"_s, "B"_s});
        bench.backend.treatmentReleased(1, "setValue"_s, true);
        COMPARE_TREATMENTS(bench.record.asked, {reading(1, "B"_s)});
        QVERIFY(bench.record.baseReleases.isEmpty());
    }

    void refusedReadAfterAWriteIsLost()
    {
        BackendBench bench({"A"_s});
        bench.record.refusals = 1;
        bench.backend.treatmentReleased(0, "setValue"_s, true);
        QCoreApplication::processEvents();
        QCOMPARE(bench.record.asked.size(), 1);
        QVERIFY(bench.record.accepted.isEmpty());
    }

    void otherReleasesAreIgnored_data()
    {
        const Rows<int, QString, bool> row("row", "name", "success");
        row("a failed write", 0, "setValue", false);
        row("a read", 0, "getValue", true);
        row("another case", 0, "SetValue", true);
        row("a write to no row", 1, "setValue", true);
        row("a write to a negative row", -1, "setValue", true);
    }
    void otherReleasesAreIgnored()
    {
        const auto [row, name, success] = Rows<int, QString, bool>::values();
        BackendBench bench({"A"_s});
        bench.backend.treatmentReleased(row, name, success);
        QVERIFY(bench.record.asked.isEmpty());
        QVERIFY(bench.record.baseReleases.isEmpty());
    }

    void readReplyIsStoredInItsRow_data()
    {
        const Rows<QString, QVariantMap, bool> row("type", "reply", "suits");
        row("binary, a number", "digitalInput", {{"value"_s, 1}}, true);
        row("analogue, a number", "analogOutput", {{"value"_s, 512}}, true);
        row("a bool", "digitalInput", {{"value"_s, true}}, true);
        row("70000", "digitalInput", {{"value"_s, 70000}}, true);
        row("minus one", "analogOutput", {{"value"_s, -1}}, true);
        row("a text", "analogOutput", {{"value"_s, "high"_s}}, true);
        row("a list", "digitalInput", {{"value"_s, QVariantList()}}, false);
        row("unknown type", "relay", {{"value"_s, 1}}, false);
        row("no value", "digitalInput", {{"Value"_s, 1}}, false);
    }
    void readReplyIsStoredInItsRow()
    {
        const auto [type, reply, suits] = Rows<QString, QVariantMap, bool>::values();
        BackendBench bench({{"channels"_s, QVariantList({publicEntry("A"_s), publicEntry("B"_s, type)})}});
        bench.load();
        const QSharedPointer<DGpioChannel> channel = bench.backend.getChannelAt(1);
        channel->setValue(-5);
        QSignalSpy changed(channel.data(), &DGpioChannel::valueChanged);
        QCOMPARE(bench.backend.applyTreatmentReply(1, "getValue"_s, reply), suits);
        COMPARE_EXACTLY(channel->value(), reply.value("value"_s));
        QCOMPARE(changed.count(), 1);
        QVERIFY(!bench.backend.getChannelAt(0)->value().isValid());
        bench.backend.applyTreatmentReply(1, "getValue"_s, reply);
        QCOMPARE(changed.count(), 1);
        QVERIFY(bench.record.baseReplies.isEmpty());
    }

    void replyOfAnotherNameGoesToTheBase_data()
    {
        const Rows<QString, bool> row("name", "answer");
        row("setValue, used", "setValue", true);
        row("setValue, not used", "setValue", false);
        row("another case", "GetValue", true);
    }
    void replyOfAnotherNameGoesToTheBase()
    {
        const auto [name, answer] = Rows<QString, bool>::values();
        BackendBench bench({"A"_s});
        bench.record.baseReplyAnswer = answer;
        QCOMPARE(bench.backend.applyTreatmentReply(0, name, {{"value"_s, 1}}), answer);
        COMPARE_TREATMENTS(bench.record.baseReplies, {{0, name, {{"value"_s, 1}}}});
        QVERIFY(!bench.backend.getChannelAt(0)->value().isValid());
    }

    void replyOutsideTheRowsIsReportedWhateverItsName_data() { addRowsOutside(); }
    void replyOutsideTheRowsIsReportedWhateverItsName()
    {
        QFETCH(int, row);
        BackendBench bench({"A"_s});
        bench.record.baseReplyAnswer = true;
        for (const QString& name : {"getValue"_s, "setValue"_s}) {
            QVERIFY(!bench.backend.applyTreatmentReply(row, name, {{"value"_s, 1}}));
            COMPARE_ONE_REPORT(
                bench.backend, c_source,
                "BeMaintenanceToolGpio::applyTreatmentReply: channel is null at index %1"_s.arg(row));
        }
        QVERIFY(bench.record.baseReplies.isEmpty());
    }

    void destructionReleasesTheChannelsBeforeTheBase()
    {
        bool releasedBefore = false;
        QWeakPointer<DGpioChannel> channel;
        QPointer<OLM_DGpioChannel> model;
        {
            BackendBench bench({"A"_s});
            channel = bench.backend.getChannelAt(0);
            model = bench.backend.channelsModel();
            bench.record.onDestroyed = [&] { releasedBefore = channel.isNull() && model.isNull(); };
        }
        QVERIFY(releasedBefore);
    }

private:
    static void addRowsOutside()
    {
        const Rows<int> row("row");
        row("before the first", -1);
        row("past the last", 1);
        row("the lowest", std::numeric_limits<int>::min());
        row("the highest", std::numeric_limits<int>::max());
    }
};

QTEST_GUILESS_MAIN(TestMaintenanceBackend)
#include "test_be_maintenance_plugin.moc"
