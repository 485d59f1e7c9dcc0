#include "literals.h"
#include "rows.h"

#include <manual_scheduler.h>
#include <rig_device.h>

#include <QTest>

/// A device whose lines are those of a rig, by the messages that it gets.
class TestDevice : public QObject
{
    Q_OBJECT

    /// Writes down what a device tells.
    class Listener final : public LineListener
    {
    public:
        QStringList heard;

        void requestAnswered(quint64 id, const QVariantMap& reply, qint64) override
        {
            heard.append("%1: %2"_s.arg(id).arg(reply.value("value"_s).toInt()));
        }
        void requestRefused(quint64 id, const DFailure& failure) override
        {
            heard.append("%1: %2: %3"_s.arg(id).arg(failure.kindName(), failure.text.english()));
        }
        void eventTold(quint64 id, const QVariantMap&, qint64 timeUs) override
        {
            heard.append("%1: event at %2"_s.arg(id).arg(timeUs));
        }
        void eventsLeftOut(quint64, quint64) override {}
        void lineTold(int line, const LineLevel& level) override
        {
            heard.append(level.known
                             ? "line %1 is %2 since %3"_s.arg(line).arg(level.level).arg(level.sinceUs)
                             : "line %1 is unknown"_s.arg(line));
        }
        void blinkingTold(int, bool) override {}
        void changesLeftOut(quint64 count, qint64, const QMap<int, LineLevel>& levels) override
        {
            heard.append("%1 lost"_s.arg(count));
            for (auto line = levels.cbegin(); line != levels.cend(); ++line) {
                if (!line->known) {
                    heard.append("line %1 is unknown"_s.arg(line.key()));
                }
            }
        }
        void stateTold(DDevice::State state, const DWording& problem, qint64) override
        {
            heard.append(state == DDevice::State::Connected ? "connected"_s : problem.english());
        }
        void failureTold(const DWording&) override {}
    };

    static RigDeviceSetup setup()
    {
        RigDeviceSetup setup;
        setup.broker = {"127.0.0.1"_s, 1883, false, "r"_s};
        setup.lines = {{{"lamp"_s}, "a"_s}, {{"dial"_s}, "b"_s}};
        setup.lines[1].line.kind = DLine::Kind::Analog;
        return setup;
    }

    static QByteArray changes(const QByteArray& text)
    {
        const QByteArray t0 = QByteArray::number(ManualScheduler::c_wallClockOffsetUs);
        return R"({"session":"s","t0":)" + t0 + "," + text + "}";
    }

    void hear(const QByteArray& topic, const QByteArray& payload, const QByteArray& correlation = {})
    {
        m_device->take({"appvantor/1/r/" + topic, payload, false, {}, correlation});
    }
    void hearEvents(const QByteArray& text) { hear("events", changes(text)); }
    void hearHistory(const QByteArray& text) { hear("answer/me", changes(text), "history"); }
    void hearLevels(const QByteArray& text) { hear("answer/me", changes(text), "levels"); }
    void hearState(const QByteArray& state, const QByteArray& session = "s")
    {
        hear("state", R"({"state":")" + state + R"(","session":")" + session + R"(","since":1})");
    }
    void hearAll()
    {
        hear("description", R"({"lines":[{"name":"x"},{"name":"b"},{"name":"a"}]})");
        hearState("online");
        hearHistory(R"("first":7,"lost":0,"e":[],"next":7,"levels":[[0,0,0],[0,1,500],[0,2,1]])");
    }
    QStringList heard() { return std::exchange(m_listener.heard, {}); }

    ManualScheduler m_scheduler;
    Listener m_listener;
    std::unique_ptr<RigDevice> m_device;

private Q_SLOTS:
    void init()
    {
        m_device = std::make_unique<RigDevice>(setup(), &m_scheduler, &m_listener);
        m_device->open();
    }
    void cleanup()
    {
        m_device.reset();
        heard();
        m_scheduler.restart();
    }

    void beginsWithTheLevelsOfItsRig()
    {
        hearAll();
        QCOMPARE(heard(), (QStringList{"line 0 is 1 since 0"_s, "line 1 is 500 since 0"_s, "connected"_s}));
    }

    void followsWhatItsRigTells_data()
    {
        const Rows<QByteArray, QStringList> row("events", "heard");
        row("a change", R"("first":7,"lost":0,"e":[[30,2,0]])", {"line 0 is 0 since 30"_s});
        row("of a line of no interest", R"("first":7,"lost":0,"e":[[30,0,1]])", {});
        row("of no line", R"("first":7,"lost":0,"e":[[30,3,1]])", {});
        row("what is known", R"("first":5,"lost":0,"e":[[30,2,0],[40,2,1]])", {});
        row("what is known, and more", R"("first":6,"lost":0,"e":[[30,2,0],[40,1,9]])",
            {"line 1 is 9 since 40"_s});
        row("what is lost", R"("first":9,"lost":2,"e":[[30,2,0]])", {"2 lost"_s, "line 0 is 0 since 30"_s});
        row("a gap", R"("first":9,"lost":0,"e":[[30,2,0]])", {});
        row("a level that is not known", R"("first":7,"lost":0,"e":[[30,2,null]])", {"line 0 is unknown"_s});
        row("a level that no such line has", R"("first":7,"lost":0,"e":[[30,2,2]])", {"line 0 is unknown"_s});
        row("no changes", R"("first":"7")", {});
    }
    void followsWhatItsRigTells()
    {
        hearAll();
        heard();
        const auto [events, told] = Rows<QByteArray, QStringList>::values();
        hearEvents(events);
        QCOMPARE(heard(), told);
    }

    void fillsAGapFromTheHistory()
    {
        hearAll();
        hearEvents(R"("first":9,"lost":0,"e":[[30,2,0]])");
        heard();
        hearHistory(R"("first":7,"lost":0,"e":[[10,2,0],[20,2,1],[30,2,0]],"next":10)");
        QCOMPARE(heard(),
                 (QStringList{"line 0 is 0 since 10"_s, "line 0 is 1 since 20"_s, "line 0 is 0 since 30"_s}));
        hearEvents(R"("first":9,"lost":0,"e":[[30,2,0]])");
        hearHistory(R"("first":10,"lost":0,"e":[],"next":10)");
        hearEvents(R"("first":10,"lost":0,"e":[[50,2,1]])");
        QCOMPARE(heard(), QStringList("line 0 is 1 since 50"_s));
    }

    void isUpToDateOnceAMessageContinuesTheHistory()
    {
        hearAll();
        hearEvents(R"("first":9,"lost":0,"e":[[30,2,0]])");
        hearHistory(R"("first":7,"lost":0,"e":[[10,2,0],[20,2,1],[30,2,0]],"next":10)");
        heard();
        hearEvents(R"("first":11,"lost":0,"e":[[60,2,0]])");
        QCOMPARE(heard(), QStringList());
        hearEvents(R"("first":10,"lost":0,"e":[[50,2,1],[60,2,0]])");
        hearEvents(R"("first":12,"lost":0,"e":[[70,2,1]])");
        QCOMPARE(heard(),
                 (QStringList{"line 0 is 1 since 50"_s, "line 0 is 0 since 60"_s, "line 0 is 1 since 70"_s}));
    }

    void isPatientWhileTheHistoryGoesOn()
    {
        constexpr qint64 nearlyTooLongUs = 4000000;
        hearAll();
        hearEvents(R"("first":9,"lost":0,"e":[[30,2,0]])");
        heard();
        m_scheduler.advance(nearlyTooLongUs);
        hearHistory(R"("first":7,"lost":0,"e":[[10,2,0]],"next":8)");
        m_scheduler.advance(nearlyTooLongUs);
        QCOMPARE(heard(), QStringList("line 0 is 0 since 10"_s));
    }

    void tellsWhatTheHistoryNoLongerHas()
    {
        hearAll();
        hearEvents(R"("first":90,"lost":0,"e":[[30,2,0]])");
        heard();
        hearHistory(R"("first":80,"lost":73,"e":[[20,2,0]],"next":81)");
        QCOMPARE(heard(), (QStringList{"73 lost"_s, "line 0 is 0 since 20"_s}));
    }

    void asksForTheLevelsAfterALoss_data()
    {
        const Rows<QByteArray, QByteArray, QStringList> row("events", "levels", "heard");
        row("of all lines", R"("first":9,"lost":2,"e":[])",
            R"("first":9,"lost":0,"e":[],"next":9,"levels":[[3,0,0],[4,1,500],[5,2,0]])",
            {"line 0 is 0 since 5"_s});
        row("but for those that changed since", R"("first":9,"lost":2,"e":[[30,2,0]])",
            R"("first":9,"lost":0,"e":[],"next":9,"levels":[[3,0,0],[4,1,9],[5,2,1]])",
            {"line 1 is 9 since 4"_s});
        row("once what came before is known", R"("first":9,"lost":2,"e":[])",
            R"("first":10,"lost":0,"e":[],"next":10,"levels":[[3,0,0],[4,1,500],[5,2,0]])", {});
        row("but for those of before", R"("first":9,"lost":2,"e":[])",
            R"("first":8,"lost":0,"e":[],"next":8,"levels":[[3,0,0],[4,1,500],[5,2,0]])", {});
    }
    void asksForTheLevelsAfterALoss()
    {
        hearAll();
        const auto [events, levels, told] = Rows<QByteArray, QByteArray, QStringList>::values();
        hearEvents(events);
        heard();
        hearLevels(levels);
        QCOMPARE(heard(), told);
    }

    void aLineThatIsNotKnownIsNotKnownByALoss()
    {
        hearAll();
        hearEvents(R"("first":7,"lost":0,"e":[[30,2,null]])");
        heard();
        hearEvents(R"("first":9,"lost":1,"e":[])");
        QCOMPARE(heard(), (QStringList{"1 lost"_s, "line 0 is unknown"_s}));
    }

    void isLostForAMomentByARigThatHasBegunAnew()
    {
        hearAll();
        heard();
        hearState("online", "t");
        hearEvents(R"("first":7,"lost":0,"e":[[30,2,0]])");
        QCOMPARE(heard(), QStringList("the rig \"r\" has begun anew"_s));
        hear("answer/me",
             changes(R"("first":1,"lost":0,"e":[],"next":1,"levels":[[5,2,0]])").replace("\"s\"", "\"t\""),
             "history");
        QCOMPARE(heard(), (QStringList{"line 0 is 0 since 0"_s, "line 1 is 500 since 0"_s, "connected"_s}));
    }

    void passesOverTheAnswerToAnEarlierQuestion()
    {
        hearAll();
        hearEvents(R"("first":8,"lost":0,"e":[[30,2,0]])");
        heard();
        hearHistory(R"("first":5,"lost":0,"e":[],"next":5,"levels":[[0,0,0],[0,1,9],[0,2,0]])");
        QCOMPARE(heard(), QStringList());
    }

    void aLineThatItsRigHasNotIsUnknown()
    {
        hear("description", R"({"lines":[{"name":"b"},{"name":"b"}]})");
        QCOMPARE(heard(), QStringList("line 0 is unknown"_s));
    }

    void isUnreachableWithoutItsRig_data()
    {
        const Rows<QByteArray, QString> row("state", "problem");
        row("lost", "lost", "the rig \"r\" is lost");
        row("that has ended", "offline", "the rig \"r\" is offline");
        row("that does not answer", "online", "the rig \"r\" does not answer");
    }
    void isUnreachableWithoutItsRig()
    {
        constexpr qint64 patienceUs = 5000000;
        hearAll();
        heard();
        const auto [state, problem] = Rows<QByteArray, QString>::values();
        hearState(state);
        m_scheduler.advance(patienceUs);
        QCOMPARE(heard(), QStringList(problem));
        m_device->request(1, "getValue"_s, {{"channel"_s, "lamp"_s}});
        QCOMPARE(heard(), QStringList("1: deviceUnreachable: "_s + problem));
        hearState("online");
        hearHistory(R"("first":7,"lost":0,"e":[],"next":7)");
        QVERIFY(heard().contains("connected"_s));
    }

    void aRequestIsOverWithItsAnswer_data()
    {
        const Rows<QByteArray, QStringList> row("answer", "heard");
        row("a result", R"({"type":"result","results":{"value":1}})", {"1: 1"_s});
        row("a failure", R"({"type":"failure","kind":"timedOut","reason":"why"})", {"1: timedOut: why"_s});
        row("a failure of the rig", R"({"type":"failure","kind":"busy","reason":"why"})",
            {"1: refusedByDevice: why"_s});
        row("a failure without a reason", R"({"type":"failure"})",
            {"1: refusedByDevice: the rig \"r\" does not say why"_s});
        row("a line that is none", R"({"type":"warning"})", {});
        row("no JSON", "{", {});
    }
    void aRequestIsOverWithItsAnswer()
    {
        hearAll();
        m_device->request(1, "getValue"_s, {{"channel"_s, "lamp"_s}});
        heard();
        const auto [answer, told] = Rows<QByteArray, QStringList>::values();
        hear("answer/me", answer, "2");
        QCOMPARE(heard(), QStringList());
        hear("answer/me", answer, "1");
        QCOMPARE(heard(), told);
        m_device->cancel(1);
        hear("answer/me", answer, "1");
        QCOMPARE(heard(), QStringList());
    }

    void listensItself()
    {
        hearAll();
        m_device->request(1, "listenEvents"_s, {{"channel"_s, "lamp"_s}});
        heard();
        hearEvents(R"("first":7,"lost":0,"e":[[30,2,0]])");
        QCOMPARE(heard(), (QStringList{"line 0 is 0 since 30"_s, "1: event at 30"_s}));
    }

    void anOrderThatFindsNoRoomIsRefused()
    {
        constexpr int many = 100000;
        hearAll();
        heard();
        for (int id = 1; id < many && m_listener.heard.isEmpty(); ++id) {
            m_device->request(static_cast<quint64>(id), "getValue"_s, {{"channel"_s, "lamp"_s}});
        }
        QVERIFY(heard().value(0).endsWith(": refusedByDevice: too much waits for the broker already"_s));
    }
};

QTEST_GUILESS_MAIN(TestDevice)
#include "test_device.moc"
