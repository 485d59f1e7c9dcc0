#include "literals.h"

#include <devices/gpio_messages.h>

#include <QTest>

#include <cerrno>

/// Every failure text of GPIO lines names the chip, the line and what can be done.
class TestGpioMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFailureNamesChipLineAndRemedy_data()
    {
        using namespace GpioMessages;
        const QString line = lineText("button"_s, 3, "gpiochip0"_s);
        const QString file = "/dev/gpiochip0"_s;
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QString& text, const char* expected) {
            QTest::newRow(name) << text << QString::fromUtf8(expected);
        };
        row("no chips", noChips(),
            "this machine has no GPIO chip: there is no /dev/gpiochip0 or other; plug one in or load its "
            "driver");
        row("no such chip", noSuchChip("x"_s),
            "there is no GPIO chip \"x\"; \"appvantor discover\" lists those of this machine");
        row("no such line", noSuchLine("button"_s, "gpiochip0"_s, "40"_s),
            "line \"button\": the chip gpiochip0 has no line \"40\"; \"appvantor discover\" lists its lines");
        row("permission of a group", permissionDenied(file, "gpio"_s),
            "the chip /dev/gpiochip0: permission denied; join its group with \"sudo usermod -aG gpio "
            "$USER\", "
            "and "
            "log in again");
        row("permission of root", permissionDenied(file, "root"_s),
            "the chip /dev/gpiochip0: permission denied; a file in /etc/udev/rules.d with the rule "
            "SUBSYSTEM==\"gpio\", GROUP=\"gpio\", MODE=\"0660\" gives it to the group \"gpio\", which you "
            "then "
            "join");
        row("chip failed", chipFailed(file, ENOTTY),
            "the chip /dev/gpiochip0 cannot be opened: inappropriate ioctl for device; \"appvantor "
            "discover\" "
            "lists those of this machine");
        row("busy", lineBusy(line, "gpiomon"_s),
            "\"button\" (line 3 of gpiochip0) is busy: \"gpiomon\" holds it; end that, then start the bench "
            "again");
        row("busy, by nobody known", lineBusy(line, QString()),
            "\"button\" (line 3 of gpiochip0) is busy: another program or driver holds it; end that, then "
            "start "
            "the bench again");
        row("refused", lineRefused(line, true, EINVAL),
            "\"button\" (line 3 of gpiochip0) cannot be an output as configured: invalid argument; its "
            "driver "
            "may "
            "not offer this direction, bias, drive or debounce, or edges at all");
        row("failed", lineFailed(line, EIO),
            "\"button\" (line 3 of gpiochip0) does not answer: input/output error; the kernel's log (\"sudo "
            "dmesg\") may tell why");
        row("input", lineIsInput(line),
            "\"button\" (line 3 of gpiochip0) is an input and cannot be written; \"direction\": \"out\" in "
            "the "
            "configuration makes it an output");
        row("gone", chipGone("gpiochip0"_s),
            "the chip gpiochip0 is gone; plug it in or load its driver, and the bench goes on");
        row("lost edges", edgesLost(line, 7),
            "\"button\" (line 3 of gpiochip0): 7 edges came faster than they could be read, and are lost");
    }

    void aFailureNamesChipLineAndRemedy()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }
};

QTEST_GUILESS_MAIN(TestGpioMessages)

#include "test_gpio_messages.moc"
