#include "line_bench.h"
#include "literals.h"
#include "panel_fixture.h"
#include "sim_chip.h"

#include <window/scene.h>
#include <window/texts.h>

#include <QGuiApplication>
#include <QtTest>

/// The panel's click on its way to a kernel line.
class TestPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClickOnThePageTogglesTheKernelLine();
    void aChipThatGoesWhileThePageRefreshesIsShownAgain();
    void closingSaysThatAChipReleasesItsLines();
};

void TestPanel::aClickOnThePageTogglesTheKernelLine()
{
    const SimChip chip("panel"_s, 4);
    LineBench bench({output("lamp"_s, chip.name(), 2)});
    PanelFixture page(*bench.tool());
    QVERIFY(page.settle());
    page.setLive(false);
    QVERIFY(page.settle());
    QQuickItem* box = page.part("lamp"_s, ".idIndicator.idDigitalOutput"_s);
    QVERIFY(box != nullptr);
    for (const int level : {1, 0, 1}) {
        page.click(box);
        QTRY_COMPARE(chip.level(2), level);
        QTRY_COMPARE(box->property("checked").toBool(), level == 1);
        QVERIFY(page.settle());
    }
}

void TestPanel::aChipThatGoesWhileThePageRefreshesIsShownAgain()
{
    SimChip chip("panel"_s, 4);
    LineBench bench({output("lamp"_s, "panel"_s, 2), input("button"_s, "panel"_s, 1)});
    PanelFixture page(*bench.tool());
    QVERIFY(page.settle());
    page.setLive(true);
    QQuickItem* box = page.part("lamp"_s, ".idIndicator.idDigitalOutput"_s);
    QVERIFY(box != nullptr);
    page.click(box);
    QTRY_VERIFY(box->property("checked").toBool());
    for (int time = 0; time < 3; ++time) {
        chip.unplug();
        QTRY_VERIFY(!bench.device().isConnected());
        chip.plugIn();
        QTRY_VERIFY(bench.device().isConnected());
        QTRY_VERIFY(!box->property("checked").toBool());
        page.click(box);
        QTRY_COMPARE(chip.level(2), 1);
        QTRY_VERIFY(box->property("checked").toBool());
    }
}

void TestPanel::closingSaysThatAChipReleasesItsLines()
{
    const SimChip chip("panel"_s, 4);
    LineBench bench({output("lamp"_s, chip.name(), 2)});
    BenchScene scene(&bench.device(), {bench.tool()}, WindowOptions::Theme::Light);
    QCOMPARE(scene.reasonToStay(), QString());
    QVERIFY(bench.set("lamp"_s, "ON"_s).success);
    QTRY_COMPARE(
        scene.reasonToStay(),
        "These outputs are on, and would be left so: lamp. Whether a released line keeps its level is "
        "up to its driver."_s);
}

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    installTexts(QLocale(QLocale::English));
    TestPanel test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_panel.moc"
