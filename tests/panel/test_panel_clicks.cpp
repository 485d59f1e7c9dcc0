#include "panel_fixture.h"
#include "warning_guard.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

const QString c_channel = QStringLiteral("START");
const QString c_checkBox = QStringLiteral(".idIndicator.idDigitalOutput");
constexpr int c_line = 0;

} // namespace

/// What a click does, in whatever host: the line is toggled, and the box follows the line.
class PanelClicksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_guard = std::make_unique<WarningGuard>();
        // The private channel makes the row of the page another than the place in the configuration.
        m_fixture = std::make_unique<PanelFixture>(toolEntry({
            channelEntry(QStringLiteral("SECRET"), QStringLiteral("digitalInput"), QStringLiteral("out"),
                         QStringLiteral("dout"), QStringLiteral("private")),
            channelEntry(QStringLiteral("LAMP"), QStringLiteral("digitalOutput"), QStringLiteral("in"),
                         QStringLiteral("din")),
            channelEntry(c_channel, QStringLiteral("digitalInput"), QStringLiteral("out"),
                         QStringLiteral("dout")),
            channelEntry(QStringLiteral("READONLY"), QStringLiteral("digitalInput"), QStringLiteral("in"),
                         QStringLiteral("din")),
        }));
        QVERIFY(m_fixture->settle());
        m_fixture->setLive(false);
        QVERIFY(m_fixture->settle());
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->window()));
        m_box = m_fixture->part(c_channel, c_checkBox);
        QVERIFY(m_box != nullptr);
    }

    void cleanup()
    {
        m_fixture.reset();
        const QString messages = WarningGuard::takeMessages();
        m_guard.reset();
        QVERIFY2(messages.isEmpty(), qPrintable(messages));
    }

    void aClickLeavesTheBoxAloneUntilTheValueArrives()
    {
        QSignalSpy changes(m_box, SIGNAL(checkedChanged()));
        m_fixture->click(m_box);
        QVERIFY(!isChecked());
        QCOMPARE(changes.count(), 0);
        QTRY_VERIFY(isChecked());
        QCOMPARE(changes.count(), 1);
        QCOMPARE(m_fixture->board().level(c_line), 1);
    }

    void eachClickTogglesTheLine()
    {
        for (const int level : {1, 0, 1, 0}) {
            m_fixture->click(m_box);
            QTRY_COMPARE(m_fixture->board().level(c_line), level);
            QTRY_COMPARE(isChecked(), level == 1);
            QVERIFY(m_fixture->settle());
        }
    }

    void aLineThatChangedBehindTheBoxIsFollowed()
    {
        m_fixture->click(m_box);
        QTRY_VERIFY(isChecked());
        QVERIFY(m_fixture->settle());
        // A treatment of the same channel from elsewhere: the box shows what the device holds, no memory of
        // clicks.
        QVERIFY(m_fixture->backend()->queueTreatment(
            1, QStringLiteral("setValue"),
            {{QStringLiteral("channel"), c_channel}, {QStringLiteral("state"), QStringLiteral("OFF")}}));
        QTRY_VERIFY(!isChecked());
        QCOMPARE(m_fixture->board().level(c_line), 0);
    }

    void aClickThatTheHostRefusesLandsLater()
    {
        int queued = 0;
        const QVariantMap channel = {{QStringLiteral("channel"), QStringLiteral("LAMP")}};
        while (m_fixture->backend()->queueTreatment(0, QStringLiteral("getValue"), channel)) {
            ++queued;
        }
        QVERIFY(queued >= 256);
        QSignalSpy refusals(m_fixture->backend(), SIGNAL(delayingClickedOnChannel(int)));
        m_fixture->click(m_box);
        QVERIFY(refusals.count() >= 1);
        QCOMPARE(refusals.constFirst().constFirst().toInt(), 1);
        QTRY_COMPARE(m_fixture->board().level(c_line), 1);
        QTRY_VERIFY(isChecked());
    }

    void aChannelThatMayNotBeWrittenStaysAsItIs()
    {
        QQuickItem* box = m_fixture->part(QStringLiteral("READONLY"), c_checkBox);
        m_fixture->click(box);
        QVERIFY(m_fixture->settle());
        QVERIFY(!box->property("checked").toBool());
        QVERIFY(WarningGuard::takeMessages().contains(QLatin1String("ERROR: ")));
    }

    void theHostNamesTheBox()
    {
        QAccessibleInterface* box = QAccessible::queryAccessibleInterface(m_box);
        QVERIFY(box != nullptr);
        QCOMPARE(box->text(QAccessible::Name), isBareHost() ? QStringLiteral("a box of the bare host")
                                                            : QStringLiteral("START Name of START"));
    }

private:
    bool isChecked() const { return m_box->property("checked").toBool(); }

    std::unique_ptr<WarningGuard> m_guard;
    std::unique_ptr<PanelFixture> m_fixture;
    QQuickItem* m_box = nullptr;
};

QTEST_MAIN(PanelClicksTest)

#include "test_panel_clicks.moc"
