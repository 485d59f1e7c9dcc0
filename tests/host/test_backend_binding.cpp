#include "recording_backend.h"
#include "workbench.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QVariantMap configuration(const QString& name, const QString& id)
{
    return {{"name"_s, name}, {"id"_s, id}};
}

} // namespace

class TestBackendBinding : public QObject
{
    Q_OBJECT

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
        makeTool("Bench"_s, "1"_s);
        setPage("Bench"_s, "1"_s);
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
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("bound");
        QTest::newRow("name") << "Bench"_s << QString() << true;
        QTest::newRow("identifier") << QString() << "1"_s << true;
        QTest::newRow("neither") << QString() << QString() << false;
        QTest::newRow("another name") << "Rack"_s
                                      << "1"_s << false;
        QTest::newRow("another identifier") << "Bench"_s
                                            << "2"_s << false;
    }

    void nameOrIdentifierAloneIsEnough()
    {
        QFETCH(QString, name);
        QFETCH(QString, id);
        QFETCH(bool, bound);
        makeTool("Bench"_s, "1"_s);
        setPage(name, id);
        deliver();
        QCOMPARE(m_backend->tool() != nullptr, bound);
        QCOMPARE(m_initialized->count(), 1);
    }

    void aBackendWithoutToolIsInitialisedUnbound()
    {
        setPage("Bench"_s, "1"_s);
        deliver();
        QCOMPARE(m_initialized->count(), 1);
        QVERIFY(m_backend->tool() == nullptr);
        deliver();
        QCOMPARE(m_initialized->count(), 1);
    }

    void aBackendBindsToAToolThatAppearsLater()
    {
        setPage("Bench"_s, "1"_s);
        deliver();
        const DTool stranger(configuration("Rack"_s, "1"_s), ScriptedPlugin({}), m_device.get());
        QVERIFY(m_backend->tool() == nullptr);
        makeTool("Bench"_s, "1"_s);
        QCOMPARE(m_backend->tool(), m_tool.get());
        QCOMPARE(m_initialized->count(), 2);
        QVERIFY(m_backend->isConnected());
    }

    void aBackendLetsGoOfAToolThatGoes()
    {
        bindToTool();
        m_tool.reset();
        QVERIFY(m_backend->tool() == nullptr);
        QVERIFY(!m_backend->isConnected());
        QCOMPARE(m_connected->count(), 2);
    }

    void aToolThatIsBackIsBoundWithoutAnotherInitialisation()
    {
        bindToTool();
        m_tool.reset();
        makeTool("Bench"_s, "1"_s);
        QCOMPARE(m_backend->tool(), m_tool.get());
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_initialized->count(), 1);
    }

    void aToolOfAnotherConfigurationDoesNotTakeThePlaceOfTheBoundOne()
    {
        bindToTool();
        m_tool.reset();
        const QVariantMap first = configuration("Bench"_s, "1"_s);
        QVariantMap other = first;
        other.insert("channels"_s, QVariantList{channelEntry("LAMP"_s, {})});
        m_tool = std::make_unique<DTool>(other, ScriptedPlugin({}), m_device.get());
        QVERIFY(m_backend->tool() == nullptr);
        QVERIFY(!m_backend->isConnected());
        m_tool = std::make_unique<DTool>(first, ScriptedPlugin({}), m_device.get());
        QCOMPARE(m_backend->tool(), m_tool.get());
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_initialized->count(), 1);
    }

    void anotherToolThatComesOrGoesChangesNothing()
    {
        bindToTool();
        auto other =
            std::make_unique<DTool>(configuration("Bench"_s, "1"_s), ScriptedPlugin({}), m_device.get());
        QCOMPARE(m_backend->tool(), m_tool.get());
        other.reset();
        QCOMPARE(m_backend->tool(), m_tool.get());
        QVERIFY(m_backend->isConnected());
    }

    void aBackendTurnsToAnotherToolOfItsNameWhenItsToolGoes()
    {
        bindToTool();
        const DTool other(configuration("Bench"_s, "1"_s), ScriptedPlugin({}), m_device.get());
        m_tool.reset();
        QCOMPARE(m_backend->tool(), &other);
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_initialized->count(), 1);
    }

    void theConnectionFollowsTheDevice()
    {
        bindToTool();
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_connected->count(), 1);
        m_device->lose("cable pulled"_s);
        QVERIFY(!m_backend->isConnected());
        QCOMPARE(m_connected->count(), 2);
        m_device->restore();
        QVERIFY(m_backend->isConnected());
        QCOMPARE(m_connected->count(), 3);
        m_device.reset();
        QVERIFY(!m_backend->isConnected());
        QCOMPARE(m_connected->count(), 4);
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

    void aDeviceIsHeardOfOnceAfterItsToolWasBack()
    {
        bindToTool();
        m_tool.reset();
        makeTool("Bench"_s, "1"_s);
        m_connected->clear();
        m_device->lose("cable pulled"_s);
        QCOMPARE(m_connected->count(), 1);
    }

    void theDeviceOfAToolThatIsGoneIsNotHeardOf()
    {
        bindToTool();
        m_tool.reset();
        m_connected->clear();
        m_device->lose("cable pulled"_s);
        m_device->restore();
        QCOMPARE(m_connected->count(), 0);
        QVERIFY(!m_backend->isConnected());
    }

    void aBackendMayGoBeforeItIsInitialised()
    {
        setPage("Bench"_s, "1"_s);
        m_backend.reset();
        deliver();
        makeTool("Bench"_s, "1"_s);
        QVERIFY(m_tool != nullptr);
    }

private:
    void makeTool(const QString& name, const QString& id)
    {
        m_tool = std::make_unique<DTool>(configuration(name, id), ScriptedPlugin({}), m_device.get());
    }

    void setPage(const QString& name, const QString& id)
    {
        m_backend->setName(name);
        m_backend->setObjectId(id);
    }

    void bindToTool()
    {
        makeTool("Bench"_s, "1"_s);
        setPage("Bench"_s, "1"_s);
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
