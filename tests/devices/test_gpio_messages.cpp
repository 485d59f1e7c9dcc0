#include "literals.h"
#include "rows.h"

#include <devices/gpio_messages.h>

#include <cerrno>

/// Every failure text of GPIO lines names the chip, the line and what can be done, and stands in the user
/// guide.
class TestGpioMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFailureNamesChipLineAndRemedyAsTheGuideDoes_data()
    {
        using namespace GpioMessages;
        const DWording lamp = lineText("lamp"_s, 3, "gpiochip0"_s);
        const DWording button = lineText("button"_s, 4, "gpiochip0"_s);
        const QString file = "/dev/gpiochip0"_s;
        const Rows<DWording, QString> row("text", "expected");
        row("no chips", noChips(),
            "this machine has no GPIO chip: there is no /dev/gpiochip0 or other; plug one in or load its "
            "driver");
        row("no such chip", lineWithoutChip("lamp"_s, "x"_s),
            "line \"lamp\": there is no GPIO chip \"x\"; \"appvantor discover\" lists those of this machine");
        row("no such line", noSuchLine("lamp"_s, "gpiochip0"_s, "40"_s),
            "line \"lamp\": the chip gpiochip0 has no line \"40\"; \"appvantor discover\" lists its lines");
        row("no line of a name", noLineOfName("lamp"_s, "GPIO4"_s),
            "line \"lamp\": no GPIO chip has a line \"GPIO4\"; \"appvantor discover\" lists those of this "
            "machine");
        row("line twice",
            lineTwice("lamp"_s, "GPIO4"_s, {placeText(3, "gpiochip0"_s), placeText(1, "gpiochip2"_s)}),
            "line \"lamp\": there is more than one \"GPIO4\": line 3 of gpiochip0, line 1 of gpiochip2; "
            "\"chip\" "
            "and \"line\" tell which is meant, by the name of the chip and the offset");
        row("same line", sameLine("lamp"_s, "motor"_s, placeText(3, "gpiochip0"_s)),
            "line \"lamp\": line 3 of gpiochip0 is \"motor\" already; expected another");
        row("permission of a group", permissionDenied(file, "gpio"_s),
            "the chip /dev/gpiochip0: permission denied; join its group with \"sudo usermod -aG gpio "
            "$USER\", "
            "and log in again");
        row("permission of root", permissionDenied(file, "root"_s),
            "the chip /dev/gpiochip0: permission denied; a file in /etc/udev/rules.d with the rule "
            "SUBSYSTEM==\"gpio\", GROUP=\"gpio\", MODE=\"0660\" gives it to the group \"gpio\", which you "
            "then "
            "join");
        row("no chip", chipRefused("/dev/null"_s, ENOTTY),
            "the chip /dev/null cannot be opened: inappropriate ioctl for device; \"appvantor discover\" "
            "lists "
            "those of this machine");
        row("busy", lineBusy(lamp, "gpioset"_s),
            "\"lamp\" (line 3 of gpiochip0) is busy: \"gpioset\" holds it; end that, and the bench goes on");
        row("refused", lineRefused(lamp, true, EINVAL),
            "\"lamp\" (line 3 of gpiochip0) cannot be an output as configured: invalid argument; its driver "
            "may "
            "not offer this direction, bias, drive or debounce, or edges at all");
        row("failed", lineFailed(lamp, EIO),
            "\"lamp\" (line 3 of gpiochip0) does not answer: input/output error; the kernel's log (\"sudo "
            "dmesg\") may tell why");
        row("input", lineIsInput(button),
            "\"button\" (line 4 of gpiochip0) is an input and cannot be written; \"direction\": \"out\" in "
            "the "
            "configuration makes it an output");
        row("gone", chipGone("gpiochip0"_s),
            "the chip gpiochip0 is gone; plug it in or load its driver, and the bench goes on");
        row("lost edges", edgesLost(button, 7),
            "\"button\" (line 4 of gpiochip0): 7 edges came faster than they could be read, and are lost");
        row("lost edges of silent lines", edgesLostElsewhere("gpiochip0"_s, 7),
            "gpiochip0: 7 edges of lines that are still now came faster than they could be read, and are "
            "lost");
    }

    void aFailureNamesChipLineAndRemedyAsTheGuideDoes()
    {
        const auto [text, expected] = Rows<DWording, QString>::values();
        QCOMPARE(text.english(), expected);
        QFile guide(QStringLiteral(USER_GUIDE));
        QVERIFY(guide.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(guide.readAll()).contains("| `"_s + expected + "` |"_s));
    }

    void aLineThatIsHeldByNobodyKnownIsBusy()
    {
        QCOMPARE(GpioMessages::lineBusy(DWording::name("x"_s), QString()).english(),
                 "x is busy: another program or driver holds it; end that, and the bench goes on"_s);
    }
};

QTEST_GUILESS_MAIN(TestGpioMessages)
#include "test_gpio_messages.moc"
