#include <devices/gpio_messages.h>

#include <QtTest>

#include <cerrno>

/// Every failure text of GPIO lines names the chip, the line and what can be done.
class TestGpioMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFailureNamesChipLineAndRemedy_data();
    void aFailureNamesChipLineAndRemedy();
};

void TestGpioMessages::aFailureNamesChipLineAndRemedy_data()
{
    using namespace GpioMessages;
    const QString line = lineText(QStringLiteral("button"), 3, QStringLiteral("gpiochip0"));
    const QString file = QStringLiteral("/dev/gpiochip0");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const QString& text, const char* expected) {
        QTest::newRow(name) << text << QString::fromUtf8(expected);
    };
    row("no chips", noChips(),
        "this machine has no GPIO chip: there is no /dev/gpiochip0 or other; plug one in or load its driver");
    row("no such chip", noSuchChip(QStringLiteral("x")),
        "there is no GPIO chip \"x\"; \"appvantor discover\" lists those of this machine");
    row("no such line",
        noSuchLine(QStringLiteral("button"), QStringLiteral("gpiochip0"), QStringLiteral("40")),
        "line \"button\": the chip gpiochip0 has no line \"40\"; \"appvantor discover\" lists its lines");
    row("no chip for a line", lineWithoutChip(QStringLiteral("button"), QStringLiteral("x")),
        "line \"button\": there is no GPIO chip \"x\"; \"appvantor discover\" lists those of this machine");
    row("no line of a name", noLineOfName(QStringLiteral("button"), QStringLiteral("GPIO4")),
        "line \"button\": no GPIO chip has a line \"GPIO4\"; \"appvantor discover\" lists those of this "
        "machine");
    row("line twice",
        lineTwice(QStringLiteral("button"), QStringLiteral("GPIO4"),
                  {placeText(3, QStringLiteral("gpiochip0")), placeText(1, QStringLiteral("gpiochip2"))}),
        "line \"button\": there is more than one \"GPIO4\": line 3 of gpiochip0, line 1 of gpiochip2; "
        "\"chip\" and "
        "\"line\" tell which is meant, by the name of the chip and the offset");
    row("same line",
        sameLine(QStringLiteral("button"), QStringLiteral("lamp"), placeText(3, QStringLiteral("gpiochip0"))),
        "line \"button\": line 3 of gpiochip0 is \"lamp\" already; expected another");
    row("permission of a group", permissionDenied(file, QStringLiteral("gpio")),
        "the chip /dev/gpiochip0: permission denied; join its group with \"sudo usermod -aG gpio $USER\", "
        "and "
        "log in again");
    row("permission of root", permissionDenied(file, QStringLiteral("root")),
        "the chip /dev/gpiochip0: permission denied; a file in /etc/udev/rules.d with the rule "
        "SUBSYSTEM==\"gpio\", GROUP=\"gpio\", MODE=\"0660\" gives it to the group \"gpio\", which you then "
        "join");
    row("chip failed", chipRefused(file, ENOTTY),
        "the chip /dev/gpiochip0 cannot be opened: inappropriate ioctl for device; \"appvantor discover\" "
        "lists those of this machine");
    row("busy", lineBusy(line, QStringLiteral("gpiomon")),
        "\"button\" (line 3 of gpiochip0) is busy: \"gpiomon\" holds it; end that, and the bench goes on");
    row("busy, by nobody known", lineBusy(line, QString()),
        "\"button\" (line 3 of gpiochip0) is busy: another program or driver holds it; end that, and the "
        "bench goes on");
    row("refused", lineRefused(line, true, EINVAL),
        "\"button\" (line 3 of gpiochip0) cannot be an output as configured: invalid argument; its driver "
        "may "
        "not offer this direction, bias, drive or debounce, or edges at all");
    row("failed", lineFailed(line, EIO),
        "\"button\" (line 3 of gpiochip0) does not answer: input/output error; the kernel's log (\"sudo "
        "dmesg\") may tell why");
    row("input", lineIsInput(line),
        "\"button\" (line 3 of gpiochip0) is an input and cannot be written; \"direction\": \"out\" in the "
        "configuration makes it an output");
    row("gone", chipGone(QStringLiteral("gpiochip0")),
        "the chip gpiochip0 is gone; plug it in or load its driver, and the bench goes on");
    row("lost edges", edgesLost(line, 7),
        "\"button\" (line 3 of gpiochip0): 7 edges came faster than they could be read, and are lost");
    row("lost edges of silent lines", edgesLostElsewhere(QStringLiteral("gpiochip0"), 7),
        "gpiochip0: 7 edges of lines that are still now came faster than they could be read, and are lost");
}

void TestGpioMessages::aFailureNamesChipLineAndRemedy()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(text, expected);
}

QTEST_GUILESS_MAIN(TestGpioMessages)
#include "test_gpio_messages.moc"
