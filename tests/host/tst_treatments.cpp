#include "common_scripts.h"
#include "recording_backend.h"
#include "workbench.h"

#include <QTest>

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
        channels.append(Workbench::channel(QString::number(i), {}));
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
        m_bench = std::make_unique<Workbench>(fillTreated);
        m_backend = std::make_unique<RecordingBackend>();
        m_backend->setName("Bench"_s);
        deliver();
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

    void aTreatmentThatFailsIsReleasedWithoutReply_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariantMap>("parameters");
        QTest::newRow("unknown command") << "play"_s << QVariantMap();
        QTest::newRow("unknown parameter") << "work"_s << QVariantMap{{"zone"_s, 1}};
    }

    void aTreatmentThatFailsIsReleasedWithoutReply()
    {
        QFETCH(QString, name);
        QFETCH(QVariantMap, parameters);
        QVERIFY(m_backend->queueTreatment(1, name, parameters));
        m_backend->queueTreatment(2, "work"_s, {});
        deliver();
        QCOMPARE(m_backend->told, QStringList{"released 1 %1 false"_s.arg(name)});
        answer(2);
        QCOMPARE(m_backend->told.constLast(), "released 2 work true"_s);
    }

    void aTreatmentThatTheDeviceFailsIsReleasedWithoutReply()
    {
        m_backend->queueTreatment(1, "work"_s, {});
        deliver();
        m_bench->device->fail(m_bench->device->lastId(), "burnt"_s);
        deliver();
        QCOMPARE(m_backend->told, QStringList{"released 1 work false"_s});
    }

    void withoutConnectionTreatmentsAreAcceptedAndReleasedWithoutSuccess()
    {
        m_bench->device->setDisconnected("cable pulled"_s);
        QVERIFY(m_backend->queueTreatment(1, "work"_s, {}));
        QVERIFY(m_backend->queueTreatment(2, "work"_s, {}));
        QVERIFY(m_backend->told.isEmpty());
        QTRY_COMPARE(m_backend->told, (QStringList{"released 1 work false"_s, "released 2 work false"_s}));
        QCOMPARE(m_bench->script->alive, 1);
        QVERIFY(!m_backend->hasPendingTreatments());
    }

    void withoutDeviceTreatmentsAreReleasedWithoutSuccess()
    {
        m_bench->device.reset();
        QVERIFY(m_backend->queueTreatment(1, "work"_s, {}));
        deliver();
        QCOMPARE(m_backend->told, QStringList{"released 1 work false"_s});
    }

    void withoutToolTreatmentsAreReleasedWithoutSuccess()
    {
        m_bench->tool.reset();
        QVERIFY(m_backend->queueTreatment(1, "work"_s, {}));
        deliver();
        QCOMPARE(m_backend->told, QStringList{"released 1 work false"_s});
    }

    void losingTheDeviceReleasesTheRunningTreatmentAndTheWaitingOnes()
    {
        m_backend->queueTreatment(1, "work"_s, {});
        m_backend->queueTreatment(2, "work"_s, {});
        deliver();
        m_bench->device->setDisconnected("cable pulled"_s);
        QTRY_COMPARE(m_backend->told, (QStringList{"released 1 work false"_s, "released 2 work false"_s}));
    }

    void closingTheToolReleasesTheRunningTreatmentAndTheWaitingOnes()
    {
        m_backend->queueTreatment(1, "work"_s, {});
        m_backend->queueTreatment(2, "work"_s, {});
        deliver();
        m_bench->tool.reset();
        QTRY_COMPARE(m_backend->told, (QStringList{"released 1 work false"_s, "released 2 work false"_s}));
    }

    void theQueueRefusesTheTreatmentBeyond256AndTakesItWhenRoomAppears()
    {
        fillQueue(256);
        QVERIFY(!m_backend->queueTreatment(256, "work"_s, {}));
        QVERIFY(!m_backend->queueTreatment(256, "work"_s, {}));
        deliver();
        answer(1);
        QVERIFY(m_backend->queueTreatment(256, "work"_s, {}));
        QVERIFY(!m_backend->queueTreatment(257, "work"_s, {}));
    }

    void theQueueHoldsOneTreatmentForEachChannelOfALargeTool()
    {
        m_bench->tool = std::make_unique<DTool>(configurationWithChannels(1000),
                                                ScriptedPlugin({m_bench->script}), m_bench->device.get());
        deliver();
        fillQueue(1000);
        QVERIFY(!m_backend->queueTreatment(1000, "work"_s, {}));
    }

    void theQueueHolds256BeforeThereIsATool()
    {
        m_backend = std::make_unique<RecordingBackend>();
        fillQueue(256);
        QVERIFY(!m_backend->queueTreatment(256, "work"_s, {}));
    }

    void aFullQueueIsWorkedOffReleasingEachOnce()
    {
        m_bench->device->onRequest = [this](const auto& request) {
            m_bench->device->reply(request.id, {{"value"_s, 1}});
        };
        fillQueue(256);
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
        m_bench->device->onRequest = [this](const auto& request) {
            m_bench->device->reply(request.id, {{"value"_s, 1}});
        };
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

    void theBaseUsesNoReply()
    {
        QVERIFY(!m_backend->DAbstractPluginBackend::applyTreatmentReply(1, "work"_s, {{"value"_s, 1}}));
    }

private:
    void fillQueue(int count)
    {
        for (int id = 0; id < count; ++id) {
            QVERIFY(m_backend->queueTreatment(id, "work"_s, {}));
        }
    }

    void answer(int value)
    {
        m_bench->device->reply(m_bench->device->lastId(), {{"value"_s, value}});
        deliver();
    }

    std::unique_ptr<Workbench> m_bench;
    std::unique_ptr<RecordingBackend> m_backend;
};

QTEST_GUILESS_MAIN(TestTreatments)

#include "tst_treatments.moc"
