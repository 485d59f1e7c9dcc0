#include "d_cmd_initGpio.h"
#include "recorded_command.h"
#include "rows.h"

namespace {

/// What was read of the two values below, in order.
QStringList readings;

/// An entry of the section, and the direction in it, which note that they are read.
struct NotingEntry
{
    QString id;
};
struct NotingDirection
{
    QString id;
};

} // namespace

Q_DECLARE_METATYPE(NotingEntry)
Q_DECLARE_METATYPE(NotingDirection)

namespace {

/// Opens what the command's own flow does not call, and its count.
class OpenedInitGpio : public DCmdInitGpio
{
public:
    using DCmdInitGpio::DCmdInitGpio;
    using DCmdInitGpio::m_pendingReplies;
    using DCmdInitGpio::onSetValuesReply;
    using DCmdInitGpio::sendChannelValues;
};

using Recorded = RecordedCommand<OpenedInitGpio>;

QVariant channelsWithDirections()
{
    return QVariantList({QVariantMap({{"id"_s, "A"_s}, {"direction"_s, "out"_s}}),
                         QVariantMap({{"id"_s, "B"_s}, {"direction"_s, "in"_s}}),
                         QVariantMap({{"id"_s, "C"_s}})});
}

} // namespace

class TestInitGpio : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void newCommandAwaitsNoReply() { QCOMPARE(Recorded().command.m_pendingReplies, 0); }

    void executeReportsDoneThenCountsTheChannels_data()
    {
        const Rows<QVariant, bool, int> row("section", "baseAnswer", "count");
        const QVariant three = channelsWithDirections();
        row("three channels", three, true, 3);
        row("a refusal of the base stops nothing", three, false, 3);
        row("no section", QVariant(), true, 0);
        row("no section and a refusal", QVariant(), false, 0);
        row("an empty list", QVariantList(), true, 0);
        row("entries that are no maps", QVariantList({1, "out"_s}), true, 2);
        row("a list of texts", QStringList({"A"_s, "B"_s}), true, 2);
        row("a map", QVariantMap({{"id"_s, "A"_s}}), true, 0);
        row("a number", 3, true, 0);
    }
    void executeReportsDoneThenCountsTheChannels()
    {
        const auto [section, baseAnswer, count] = Rows<QVariant, bool, int>::values();
        Recorded bench;
        bench.record.sections.insert("channels"_s, section);
        bench.record.executeAnswer = baseAnswer;
        QCOMPARE(bench.command.commandExecute(), baseAnswer);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_s, "commandUpdateResult doneOk"_s,
                                                  "getParametersSection channels"_s}));
        COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
        QCOMPARE(bench.command.m_pendingReplies, count);
    }

    void executeReadsTheDirectionsInTheOrderOfTheList()
    {
        QMetaType::registerConverter<NotingEntry, QVariantMap>([](const NotingEntry& entry) {
            readings.append("map of "_s + entry.id);
            return QVariantMap({{"direction"_s, QVariant::fromValue(NotingDirection{entry.id})}});
        });
        QMetaType::registerConverter<NotingDirection, QString>([](const NotingDirection& direction) {
            readings.append("direction of "_s + direction.id);
            return direction.id == "B"_s ? "out"_s : "in"_s;
        });
        Recorded bench;
        bench.record.sections.insert("channels"_s, QVariantList({
                                                       QVariant::fromValue(NotingEntry{"A"_s}),
                                                       QVariant::fromValue(NotingEntry{"B"_s}),
                                                       QVariantMap({{"id"_s, "without a direction"_s}}),
                                                       QVariant::fromValue(NotingEntry{"C"_s}),
                                                   }));
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(readings, QStringList({"map of A"_s, "direction of A"_s, "map of B"_s, "direction of B"_s,
                                        "map of C"_s, "direction of C"_s}));
        QCOMPARE(bench.command.m_pendingReplies, 4);
        QVERIFY(bench.record.instructions.isEmpty());
    }

    void executeDoesNotLookAtTheAnswerOfTheUpdate()
    {
        Recorded bench;
        bench.record.updateAnswer = false;
        QVERIFY(bench.command.commandExecute());
    }

    void requestFunctionSendsTheValue_data()
    {
        const Rows<int, QString, bool> row("value", "deviceChannel", "expectReply");
        row("with its reply", 1, "line0", true);
        row("without its reply", 65535, "line0", false);
        row("no channel", 0, "", true);
    }
    void requestFunctionSendsTheValue()
    {
        const auto [value, deviceChannel, expectReply] = Rows<int, QString, bool>::values();
        Recorded bench;
        bench.command.m_pendingReplies = 1;
        bench.command.sendChannelValues(static_cast<quint16>(value), deviceChannel, expectReply);
        COMPARE_REQUESTS(bench.record,
                         {{"setValues"_s, {{"channel"_s, deviceChannel}, {"values"_s, value}}}});
        QCOMPARE(bench.record.instructions.first().onReply.empty(), !expectReply);
        QCOMPARE(expectReply && bench.reply(0, {}), expectReply);
        QCOMPARE(bench.command.m_pendingReplies, expectReply ? 0 : 1);
    }

    void lastCountedReplyReportsDone_data()
    {
        const Rows<bool> row("updateAnswer");
        row("accepted", true);
        row("not accepted", false);
    }
    void lastCountedReplyReportsDone()
    {
        QFETCH(bool, updateAnswer);
        Recorded bench;
        bench.record.updateAnswer = updateAnswer;
        bench.command.m_pendingReplies = 2;
        QVERIFY(bench.command.onSetValuesReply(1, {{"anything"_s, 1}}));
        QCOMPARE(bench.command.m_pendingReplies, 1);
        COMPARE_RESULTS(bench.record, {});
        QCOMPARE(bench.command.onSetValuesReply(2, {}), updateAnswer);
        QCOMPARE(bench.command.m_pendingReplies, 0);
        COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
    }

    void replyIsCountedByItsIdentifier_data()
    {
        const Rows<int, quint64, bool, int> row("awaited", "id", "answer", "left");
        row("no identifier, while some are awaited", 2, quint64(0), false, 2);
        row("no identifier, while none is awaited", 0, quint64(0), true, 0);
        row("an identifier, while none is awaited", 0, quint64(1), true, -1);
    }
    void replyIsCountedByItsIdentifier()
    {
        const auto [awaited, id, answer, left] = Rows<int, quint64, bool, int>::values();
        Recorded bench;
        bench.command.m_pendingReplies = awaited;
        QCOMPARE(bench.command.onSetValuesReply(id, {}), answer);
        QCOMPARE(bench.command.m_pendingReplies, left);
        COMPARE_RESULTS(bench.record, left == 0 ? QVector<Result>{{"doneOk"_s, true}} : QVector<Result>());
    }
};

QTEST_GUILESS_MAIN(TestInitGpio)
#include "test_d_cmd_initGpio.moc"
