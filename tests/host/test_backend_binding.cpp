#include "recording_backend.h"
#include "rows.h"
#include "workbench.h"

class TestBackendBinding : public QObject
{
    Q_OBJECT

    static QVariantMap configuration(const QVariantList& channels = {})
    {
        return {{"name"_s, "Bench"_s}, {"id"_s, "1"_s}, {"channels"_s, channels}};
    }

private Q_SLOTS:
    void init()
    {
        m_device = std::make_unique<RecordingDevice>(&m_scheduler);
        m_device->open();
        m_backend = std::make_unique<RecordingBackend>();
        m_initialized = std::make_unique<QSignalSpy>(m_backend.get(),
                                                     &DAbstractPluginBackend::abstractBackendInitialized);
        m_connected =
            std::make_unique<QSignalSpy>(m_backend.get(), &DAbstractPluginBackend::isConnectedChanged);
    }

    void cleanup()
    {
        m_backend.reset();
        m_tool.reset();
    }

    void aNewBackendIsNamedAfterItsLibraryAndBoundToNothing()
    {
        QCOMPARE(m_backend->objectName(), "TestLibrary"_s);
        QVERIFY(m_backend->tool() == nullptr);
        QVERIFY(!m_backend->isConnected());
        QCOMPARE(m_initialized->count(), 0);
    }

    void theNameAndIdentifierAreTheOnesThatThePageSets()
    {
        QSignalSpy named(m_backend.get(), &DAbstractPluginBackend::nameChanged);
        QSignalSpy identified(m_backend.get(), &DAbstractPluginBackend::objectIdChanged);
        QVERIFY(m_backend->setProperty("name", "Bench"_s));
        QVERIFY(m_backend->setProperty("objectId", "1"_s));
        m_backend->setName("Bench"_s);
        m_backend->setObjectId("1"_s);
        QCOMPARE(m_backend->property("name"), QVariant("Bench"_s));
        QCOMPARE(m_backend->property("objectId"), QVariant("1"_s));
        QCOMPARE(named.count(), 1);
        QCOMPARE(identified.count(), 1);
        QVERIFY(!m_backend->setProperty("isConnected", true));
    }

    void aBackendBindsToItsToolFromTheEventLoop()
    {
        makeTool();
        setPage();
        QVERIFY(m_backend->tool() == nullptr);
        DTool* boundWhenTold = nullptr;
        connect(m_backend.get(), &DAbstractPluginBackend::abstractBackendInitialized, this,
                [&] { boundWhenTold = m_backend->tool(); });
        deliver();
        QCOMPARE(m_backend->tool(), m_tool.get());
        QCOMPARE(boundWhenTold, m_tool.get());
        QCOMPARE(m_initialized->count(), 1);
    }

    void nameOrIdentifierAloneIsEnough_data()
    {
        const Rows<QString, QString, bool> row("name", "id", "bound");
        row("name", "Bench", QString(), true);
        row("identifier", QString(), "1", true);
        row("neither", QString(), QString(), false);
        row("another name", "Rack", "1", false);
        row("another identifier", "Bench", "2", false);
    }
    void nameOrIdentifierAloneIsEnough()
    {
        const auto [name, id, bound] = Rows<QString, QString, bool>::values();
        makeTool();
        setPage(name, id);
        deliver();
        QCOMPARE(m_backend->tool() != nullptr, bound);
        QCOMPARE(m_initialized->count(), 1);
    }

    void aBackendWithoutToolIsInitialisedUnboundAndBoundToAToolThatAppearsLater()
    {
        setPage();
        deliver();
        deliver();
        QCOMPARE(m_initialized->count(), 1);
        const DTool stranger({{"name"_s, "Rack"_s}, {"id"_s, "1"_s}}, ScriptedPlugin(), m_device.get());
        QVERIFY(m_backend->tool() == nullptr);
        makeTool();
        QCOMPARE(m_backend->tool(), m_tool.get());
        QCOMPARE(m_initialized->count(), 2);
        QVERIFY(m_backend->isConnected());
    }

    void onlyAToolOfTheSameConfigurationTakesThePlaceOfOneThatIsGone()
    {
        bindToTool();
        m_tool.reset();
        makeTool(configuration({channelEntry("LAMP"_s, {})}));
        QVERIFY(m_backend->tool() == nullptr);
        QVERIFY(!m_backend->isConnected());
        makeTool();
        QCOMPARE(m_backend->tool(), m_tool.get());
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_initialized->count(), 1);
        m_connected->clear();
        m_device->lose("cable pulled"_s);
        QCOMPARE(m_connected->count(), 1); // the device is heard of once
    }

    void anotherToolThatComesOrGoesChangesNothing()
    {
        bindToTool();
        auto other = std::make_unique<DTool>(configuration(), ScriptedPlugin(), m_device.get());
        QCOMPARE(m_backend->tool(), m_tool.get());
        other.reset();
        QCOMPARE(m_backend->tool(), m_tool.get());
        QVERIFY(m_backend->isConnected());
    }

    void aBackendTurnsToAnotherToolOfItsNameWhenItsToolGoes()
    {
        bindToTool();
        const DTool other(configuration(), ScriptedPlugin(), m_device.get());
        m_tool.reset();
        QCOMPARE(m_backend->tool(), &other);
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_initialized->count(), 1);
    }

    void theConnectionFollowsTheDevice()
    {
        bindToTool();
        QVector<bool> told{m_backend->isConnected()};
        connect(m_backend.get(), &DAbstractPluginBackend::isConnectedChanged, this,
                [&] { told.append(m_backend->isConnected()); });
        m_device->lose("cable pulled"_s);
        m_device->restore();
        m_device.reset();
        QCOMPARE(told, (QVector<bool>{true, false, true, false}));
    }

    void aBackendOfADeviceThatIsLostAtFirstConnectsLater()
    {
        m_device->lose("cable pulled"_s);
        bindToTool();
        QVERIFY(!m_backend->isConnected());
        QCOMPARE(m_connected->count(), 0);
        m_device->restore();
        QVERIFY(m_backend->isConnected());
    }

    void aToolWithoutDeviceIsNeverConnected()
    {
        m_device.reset();
        bindToTool();
        QVERIFY(m_backend->tool() != nullptr);
        QVERIFY(!m_backend->isConnected());
    }

    void aBackendLetsGoOfAToolThatGoesAndOfItsDevice()
    {
        bindToTool();
        m_tool.reset();
        QVERIFY(m_backend->tool() == nullptr);
        QVERIFY(!m_backend->isConnected());
        QCOMPARE(m_connected->count(), 2);
        m_device->lose("cable pulled"_s);
        m_device->restore();
        QCOMPARE(m_connected->count(), 2);
        QVERIFY(!m_backend->isConnected());
    }

    void aBackendMayGoBeforeItIsInitialised()
    {
        setPage();
        m_backend.reset();
        deliver();
        makeTool();
        QVERIFY(m_tool != nullptr);
    }

private:
    void makeTool(const QVariantMap& configured = configuration())
    {
        m_tool = std::make_unique<DTool>(configured, ScriptedPlugin(), m_device.get());
    }

    void setPage(const QString& name = "Bench"_s, const QString& id = "1"_s)
    {
        m_backend->setName(name);
        m_backend->setObjectId(id);
    }

    void bindToTool()
    {
        makeTool();
        setPage();
        deliver();
    }

    ManualScheduler m_scheduler;
    std::unique_ptr<RecordingDevice> m_device;
    std::unique_ptr<DTool> m_tool;
    std::unique_ptr<RecordingBackend> m_backend;
    std::unique_ptr<QSignalSpy> m_initialized;
    std::unique_ptr<QSignalSpy> m_connected;
};

QTEST_GUILESS_MAIN(TestBackendBinding)
#include "test_backend_binding.moc"
