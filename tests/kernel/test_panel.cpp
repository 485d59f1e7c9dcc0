#include "line_bench.h"
#include "literals.h"
#include "panel_fixture.h"
#include "sim_chip.h"

#include <QGuiApplication>
#include <QtTest>

/// The panel's click on its way to a kernel line.
class TestPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClickOnThePageTogglesTheKernelLine();
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

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    TestPanel test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_panel.moc"
