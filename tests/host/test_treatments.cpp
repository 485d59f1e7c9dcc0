#include "common_scripts.h"
#include "recording_backend.h"
#include "rows.h"
#include "workbench.h"

using Deed = std::function<void(Workbench&)>;
Q_DECLARE_METATYPE(Deed)

namespace {

void fillTreated(CommandScript& script)
{
    fillReader(script);
    script.parameters = {{"channel"_s, "strg"_s, "Channel"_s, QVariant()}};
}

QVariantMap configurationWithChannels(int count)
{
    QVariantMap configuration = Workbench::configuration();
    QVariantList channels;
    for (int i = 0; i < count; ++i) {
        channels.append(channelEntry(QString::number(i), {}));
    }
    configuration.insert("channels"_s, channels);
    return configuration;
}

} // namespace

class TestTreatments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tries = 0;
        m_taken.clear();
        m_bench = std::make_unique<Workbench>(fillTreated);
        makeBackend();
    }

    void cleanup() { m_backend.reset(); }

    void aTreatmentIsRunRepliedAndReleased()
    {
        QVERIFY(!m_backend->hasPendingTreatments());
        QVERIFY(m_backend->queueTreatment(5, "work"_s, {{"channel"_s, "LAMP"_s}}));
        QVERIFY(m_backend->hasPendingTreatments());
        QVERIFY(m_bench->device->requests.isEmpty());
        deliver();
        QCOMPARE(m_bench->device->instructions(), QStringList{"getValue"_s});
        QVERIFY(m_backend->told.isEmpty());
        answer(3);
        QCOMPARE(m_backend->told, (QStringList{"reply 5 work {\"value\":3}"_s, "released 5 work true"_s}));
        QVERIFY(!m_backend->hasPendingTreatments());
        QCOMPARE(m_bench->workingCommands(), 0);
        QVERIFY(m_backend->findChildren<DOrder*>().isEmpty());
    }

    void theEndOfATreatmentIsToldWithWhatItWas()
    {
        const QVariantMap parameters = {{"channel"_s, "LAMP"_s}};
        QSignalSpy ends(m_backend.get(), &DAbstractPluginBackend::treatmentEnded);
        m_backend->queueTreatment(5, "work"_s, parameters);
        deliver();
        answer(3);
        QCOMPARE(ends.count(), 1);
        QCOMPARE(ends.constFirst().mid(0, 3),
                 (QVariantList{"work"_s, parameters, QVariantMap{{"value"_s, 3}}}));
        QVERIFY(!ends.takeFirst().at(3).value<DFailure>());
        m_bench->device->close();
        m_backend->queueTreatment(6, "work"_s, parameters);
        deliver();
        QCOMPARE(ends.count(), 1);
        QCOMPARE(ends.constFirst().mid(0, 2), (QVariantList{"work"_s, parameters}));
        QCOMPARE(ends.constFirst().at(3).value<DFailure>().text.english(), "the device is not connected"_s);
    }

    void theCommandReadsTheParametersOfItsTreatment()
    {
        QVariant channel;
        m_bench->script->execute = [&](ScriptedCommand& command) {
            channel = command.getParameterValue("channel"_s, QVariant());
            return false;
        };
        m_backend->queueTreatment(5, "work"_s, {{"channel"_s, "LAMP"_s}});
        deliver();
        QCOMPARE(channel, QVariant("LAMP"_s));
    }

    void treatmentsRunInTheirOrderOneAtATime()
    {
        for (const int id : {1, 2, 3}) {
            m_backend->queueTreatment(id, "work"_s, {});
        }
        for (int done = 1; done <= 3; ++done) {
            deliver();
            QCOMPARE(m_bench->device->requests.size(), done);
            answer(done);
        }
        QCOMPARE(m_backend->told, (QStringList{"reply 1 work {\"value\":1}"_s, "released 1 work true"_s,
                                               "reply 2 work {\"value\":2}"_s, "released 2 work true"_s,
                                               "reply 3 work {\"value\":3}"_s, "released 3 work true"_s}));
    }

    void actionsRunBeforeQuestionsThatWait()
    {
        addAction();
        answerAtOnce();
        m_backend->queueTreatment(1, "work"_s, {});
        m_backend->queueTreatment(2, "work"_s, {});
        m_backend->queueTreatment(3, "act"_s, {});
        m_backend->queueTreatment(4, "act"_s, {});
        m_backend->onRelease = [this](int id) {
            if (id == 1) {
                m_backend->queueTreatment(5, "act"_s, {});
            }
        };
        QTRY_VERIFY(!m_backend->hasPendingTreatments());
        QStringList released = m_backend->told.filter("released"_s);
        QCOMPARE(released,
                 (QStringList{"released 3 act true"_s, "released 4 act true"_s, "released 1 work true"_s,
                              "released 5 act true"_s, "released 2 work true"_s}));
    }

    void eachKindHasItsOwnRoom()
    {
        addAction();
        QCOMPARE(fillQueue("work"_s), 256);
        QCOMPARE(fillQueue("act"_s), 256);
        deliver(); // the first action runs, and still counts
        QVERIFY(!m_backend->queueTreatment(1000, "act"_s, {}));
        answer(1);
        QVERIFY(m_backend->queueTreatment(1000, "act"_s, {}));
        QVERIFY(!m_backend->queueTreatment(1000, "work"_s, {}));
    }

    void aTreatmentThatFailsIsReleasedWithoutReply_data()
    {
        const Rows<QString, QVariantMap> row("name", "parameters");
        row("unknown command", "play", {});
        row("unknown parameter", "work", {{"zone"_s, 1}});
        row("refused by the device", "work", {});
    }
    void aTreatmentThatFailsIsReleasedWithoutReply()
    {
        const auto [name, parameters] = Rows<QString, QVariantMap>::values();
        QVERIFY(m_backend->queueTreatment(1, name, parameters));
        m_backend->queueTreatment(2, "work"_s, {});
        deliver();
        if (m_backend->told.isEmpty()) {
            m_bench->device->refuse(m_bench->device->lastId(), "burnt"_s);
            deliver();
        }
        QCOMPARE(m_backend->told, QStringList{"released 1 %1 false"_s.arg(name)});
        answer(2);
        QCOMPARE(m_backend->told.constLast(), "released 2 work true"_s);
    }

    void treatmentsThatCannotRunAreReleasedWithoutSuccess_data()
    {
        const Rows<Deed, Deed> row("before", "meanwhile");
        const Deed lose = [](Workbench& bench) { bench.device->lose("cable pulled"_s); };
        const Deed destroy = [](Workbench& bench) { bench.device.reset(); };
        const Deed close = [](Workbench& bench) { bench.tool.reset(); };
        row("no connection", lose, Deed());
        row("no device", destroy, Deed());
        row("no tool", close, Deed());
        row("connection lost while one runs", Deed(), lose);
        row("tool closed while one runs", Deed(), close);
    }
    void treatmentsThatCannotRunAreReleasedWithoutSuccess()
    {
        const auto [before, meanwhile] = Rows<Deed, Deed>::values();
        if (before) {
            before(*m_bench);
        }
        QVERIFY(m_backend->queueTreatment(1, "work"_s, {}));
        QVERIFY(m_backend->queueTreatment(2, "work"_s, {}));
        QVERIFY(m_backend->told.isEmpty());
        if (meanwhile) {
            deliver();
            meanwhile(*m_bench);
        }
        QTRY_COMPARE(m_backend->told, (QStringList{"released 1 work false"_s, "released 2 work false"_s}));
        QCOMPARE(m_bench->workingCommands(), 0);
        QVERIFY(!m_backend->hasPendingTreatments());
    }

    void theQueueRefusesTheTreatmentBeyond256AndTakesItWhenRoomAppears()
    {
        QCOMPARE(fillQueue(), 256);
        QVERIFY(!m_backend->queueTreatment(256, "work"_s, {}));
        deliver();
        answer(1);
        QVERIFY(m_backend->queueTreatment(256, "work"_s, {}));
        QVERIFY(!m_backend->queueTreatment(257, "work"_s, {}));
    }

    void theQueueHoldsOneTreatmentForEachChannelOfALargeTool()
    {
        m_backend.reset();
        m_bench->tool = std::make_unique<DTool>(configurationWithChannels(1000),
                                                ScriptedPlugin({m_bench->script}), m_bench->device.get());
        makeBackend();
        QCOMPARE(fillQueue(), 1000);
    }

    void theQueueHolds256BeforeThereIsATool()
    {
        m_backend = std::make_unique<RecordingBackend>();
        QCOMPARE(fillQueue(), 256);
    }

    void aFullQueueIsWorkedOffReleasingEachOnce()
    {
        answerAtOnce();
        QCOMPARE(fillQueue(), 256);
        QTRY_VERIFY(!m_backend->hasPendingTreatments());
        QStringList expected;
        for (int id = 0; id < 256; ++id) {
            expected.append("reply %1 work {\"value\":1}"_s.arg(id));
            expected.append("released %1 work true"_s.arg(id));
        }
        QCOMPARE(m_backend->told, expected);
    }

    void aTreatmentIsPendingUntilItIsReleased()
    {
        bool pendingInReply = false;
        bool pendingInRelease = true;
        m_backend->onReply = [&] { pendingInReply = m_backend->hasPendingTreatments(); };
        m_backend->onRelease = [&](int) { pendingInRelease = m_backend->hasPendingTreatments(); };
        m_backend->queueTreatment(1, "work"_s, {});
        deliver();
        answer(1);
        QVERIFY(pendingInReply);
        QVERIFY(!pendingInRelease);
    }

    void aTreatmentMayBeQueuedWhereAnotherIsReleased()
    {
        m_backend->onRelease = [this](int id) {
            if (id == 1) {
                m_backend->queueTreatment(2, "work"_s, {});
            }
        };
        m_backend->queueTreatment(1, "work"_s, {});
        deliver();
        answer(1);
        QVERIFY(m_backend->hasPendingTreatments());
        deliver();
        answer(2);
        QCOMPARE(m_backend->told.constLast(), "released 2 work true"_s);
    }

    void treatmentsKeepTheirOrderThroughANestedEventLoop()
    {
        answerAtOnce();
        m_backend->onReply = [this] {
            m_backend->onReply = {};
            m_backend->queueTreatment(2, "work"_s, {});
            QTest::qWait(1);
        };
        m_backend->queueTreatment(1, "work"_s, {});
        QTRY_COMPARE(m_backend->told.size(), 4);
        QCOMPARE(m_backend->told, (QStringList{"reply 1 work {\"value\":1}"_s, "released 1 work true"_s,
                                               "reply 2 work {\"value\":1}"_s, "released 2 work true"_s}));
    }

    void theBackendMayGoWhereATreatmentIsReleased()
    {
        m_backend->onRelease = [this](int) { m_backend.reset(); };
        m_backend->queueTreatment(1, "work"_s, {});
        m_backend->queueTreatment(2, "work"_s, {});
        deliver();
        answer(1);
        QVERIFY(m_backend == nullptr);
        QCOMPARE(m_bench->device->requests.size(), 1);
    }

    void theBackendMayGoWhereTheEndOfATreatmentIsHeard_data()
    {
        const Rows<int> row("waiting");
        row("of one that ran", 0);
        row("of one that cannot wait", 40);
    }

    void theBackendMayGoWhereTheEndOfATreatmentIsHeard()
    {
        QFETCH(int, waiting);
        if (waiting > 0) {
            fillQueue();
        } else {
            answerAtOnce();
            m_backend->queueTreatment(1, "work"_s, {});
        }
        for (int id = 1000; id < 1000 + waiting; ++id) {
            tryAgain(id);
        }
        connect(m_backend.get(), &DAbstractPluginBackend::treatmentEnded, this,
                [this] { m_backend.reset(); });
        QTRY_VERIFY(m_backend == nullptr);
    }

    void theBackendMayGoWithATreatmentRunning()
    {
        m_backend->queueTreatment(1, "work"_s, {});
        deliver();
        m_backend.reset();
        QCOMPARE(m_bench->device->pendingRequests(), 0);
        QCOMPARE(m_bench->script->finishes, 1);
        QCOMPARE(m_bench->workingCommands(), 0);
    }

    void theToolMayBeClosedWhereATreatmentIsReleased()
    {
        m_backend->onRelease = [this](int) { m_bench->tool.reset(); };
        m_backend->queueTreatment(1, "work"_s, {});
        m_backend->queueTreatment(2, "work"_s, {});
        deliver();
        answer(1);
        QTRY_COMPARE(m_backend->told.size(), 3);
        QCOMPARE(m_backend->told.constLast(), "released 2 work false"_s);
    }

    void aRefusedCallIsHeldBackUntilThereIsRoom()
    {
        QCOMPARE(fillQueue(), 256);
        deliver();
        tryAgain(1000);
        QTimer::singleShot(1, this, [this] { m_bench->device->reply(m_bench->device->lastId(), value(1)); });
        bool takenAtOnce = false;
        m_backend->onRelease = [&](int) {
            m_backend->onRelease = {};
            QTimer::singleShot(20, this, [&] { takenAtOnce = m_taken == QVector<int>{1000}; });
        };
        QTRY_VERIFY(takenAtOnce);
        QCOMPARE(m_tries, 2);
    }

    void aCallIsNotHeldBackBeforeOneWasRefused()
    {
        QStringList calls;
        QMetaObject::invokeMethod(
            m_backend.get(), [&calls] { calls.append("backend"_s); }, Qt::QueuedConnection);
        QMetaObject::invokeMethod(
            this, [&calls] { calls.append("another"_s); }, Qt::QueuedConnection);
        QTRY_COMPARE(calls.size(), 2);
        QCOMPARE(calls, (QStringList{"backend"_s, "another"_s}));
    }

    void noMoreThanThirtyTwoCallsAreHeldBack()
    {
        QCOMPARE(fillQueue(), 256);
        for (int id = 1000; id < 1040; ++id) {
            tryAgain(id);
        }
        QTRY_COMPARE(m_taken.size(), 8);
        QTRY_COMPARE(m_backend->told.size(), 8); // which were let go, since they could not wait
        for (const int id : qAsConst(m_taken)) {
            QVERIFY(m_backend->told.contains("released %1 work false"_s.arg(id)));
        }
    }

    void theBackendMayGoWhileACallIsHeldBack()
    {
        fillQueue();
        tryAgain(1000);
        int loops = -1; // that run when the backend has gone
        QTimer::singleShot(1, this, [&] {
            m_backend.reset();
            QTimer::singleShot(10, this, [&loops] { loops = QThread::currentThread()->loopLevel(); });
        });
        QTRY_VERIFY(loops >= 0);
        QCOMPARE(loops, 0);
        QCOMPARE(m_tries, 1);
    }

    void theBaseUsesNoReply()
    {
        QVERIFY(!m_backend->DAbstractPluginBackend::applyTreatmentReply(1, "work"_s, {{"value"_s, 1}}));
    }

private:
    void makeBackend()
    {
        m_backend = std::make_unique<RecordingBackend>();
        m_backend->setName("Bench"_s);
        deliver();
    }

    /// Gives the tool a second command, "act", which does something.
    void addAction()
    {
        m_act = std::make_shared<CommandScript>();
        fillReader(*m_act);
        m_act->name = "act"_s;
        m_act->results.front().defaultValue = 0;
        m_bench->tool = std::make_unique<DTool>(
            Workbench::configuration(), ScriptedPlugin({m_bench->script, m_act}), m_bench->device.get());
    }

    /// Queues treatments until there is no room, and returns how many there was room for.
    int fillQueue(const QString& command = "work"_s)
    {
        int id = 0;
        while (m_backend->queueTreatment(id, command, {})) {
            ++id;
        }
        return id;
    }

    /// Queues a treatment, and tries again from the event loop where it is refused.
    void tryAgain(int id)
    {
        ++m_tries;
        if (m_backend->queueTreatment(id, "work"_s, {})) {
            m_taken.append(id);
        } else {
            QMetaObject::invokeMethod(
                m_backend.get(), [this, id] { tryAgain(id); }, Qt::QueuedConnection);
        }
    }

    static QVariantMap value(int level) { return {{"value"_s, level}}; }

    void answer(int level) { m_bench->answer(value(level)); }

    void answerAtOnce()
    {
        m_bench->device->onRequest = [this](const auto& request) {
            m_bench->device->reply(request.id, value(1));
        };
    }

    std::unique_ptr<Workbench> m_bench;
    std::shared_ptr<CommandScript> m_act;
    int m_tries = 0;
    QVector<int> m_taken; ///< the treatments of tryAgain that were accepted
    std::unique_ptr<RecordingBackend> m_backend;
};

QTEST_GUILESS_MAIN(TestTreatments)
#include "test_treatments.moc"
