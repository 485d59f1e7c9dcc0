#include "panel_fixture.h"

/// What a click does, in whatever host: the line is toggled, and the box follows the line.
class TestPanelClicks : public QuietTest
{
    Q_OBJECT

    static inline const QString c_channel = "START"_s;
    static inline const QString c_checkBox = ".idIndicator.idDigitalOutput"_s;
    static constexpr int c_line = 0;

protected:
    void setUp() override
    {
        // The private channel makes the row of the page another than the place in the configuration.
        showChannels({
            channelEntry("SECRET"_s, "digitalInput"_s, "out"_s, "dout"_s, "private"_s),
            channelEntry("LAMP"_s, "digitalOutput"_s, "in"_s, "din"_s),
            channelEntry(c_channel, "digitalInput"_s, "out"_s, "dout"_s),
            channelEntry("READONLY"_s, "digitalInput"_s, "in"_s, "din"_s),
        });
        m_box = m_fixture->part(c_channel, c_checkBox);
        QVERIFY(m_box != nullptr);
    }

private Q_SLOTS:
    void aClickLeavesTheBoxAloneUntilTheValueArrives()
    {
        QSignalSpy changes(m_box, SIGNAL(checkedChanged()));
        m_fixture->click(m_box);
        QVERIFY(!isChecked());
        QCOMPARE(changes.count(), 0);
        QTRY_VERIFY(isChecked());
        QCOMPARE(changes.count(), 1);
        QCOMPARE(m_fixture->board().level(c_line).level, 1);
    }

    void eachClickTogglesTheLine()
    {
        for (const int level : {1, 0, 1, 0}) {
            m_fixture->click(m_box);
            QTRY_COMPARE(m_fixture->board().level(c_line).level, level);
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
        QVERIFY(m_fixture->backend()->queueTreatment(1, "setValue"_s,
                                                     {{"channel"_s, c_channel}, {"state"_s, "OFF"_s}}));
        QTRY_VERIFY(!isChecked());
        QCOMPARE(m_fixture->board().level(c_line).level, 0);
    }

    void aClickThatTheHostRefusesLandsLater()
    {
        const QVariantMap off = {{"channel"_s, c_channel}, {"state"_s, "OFF"_s}};
        while (m_fixture->backend()->queueTreatment(1, "setValue"_s, off)) {
        }
        QSignalSpy refusals(m_fixture->backend(), SIGNAL(delayingClickedOnChannel(int)));
        m_fixture->click(m_box);
        QVERIFY(refusals.count() >= 1);
        QCOMPARE(refusals.constFirst().constFirst().toInt(), 1);
        QTRY_COMPARE(m_fixture->board().level(c_line).level, 1);
        QTRY_VERIFY(isChecked());
    }

    void aChannelThatMayNotBeWrittenStaysAsItIs()
    {
        QQuickItem* box = m_fixture->part("READONLY"_s, c_checkBox);
        m_fixture->click(box);
        QVERIFY(m_fixture->settle());
        QVERIFY(!box->property("checked").toBool());
        QVERIFY(m_log->takeProblems().contains(QLatin1String("ERROR: ")));
    }

    void theHostNamesTheBox()
    {
        QAccessibleInterface* box = QAccessible::queryAccessibleInterface(m_box);
        QVERIFY(box != nullptr);
        QCOMPARE(box->text(QAccessible::Name),
                 isBareHost() ? "a box of the bare host"_s : "START Name of START"_s);
    }

private:
    bool isChecked() const { return m_box->property("checked").toBool(); }

    QQuickItem* m_box = nullptr;
};

QTEST_MAIN(TestPanelClicks)
#include "test_panel_clicks.moc"
