#include <devices/gpio_messages.h>

#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace {

DWording errorText(int error)
{
    return DWording::told(QString::fromLocal8Bit(std::strerror(error)).toLower());
}

} // namespace

namespace GpioMessages {

DWording permissionDenied(const QString& file, const QString& group)
{
    const DWording remedy =
        group.isEmpty() || group == QLatin1String("root")
            ? wording(R"(a file in /etc/udev/rules.d with the rule SUBSYSTEM=="gpio", GROUP="gpio", )"
                      R"(MODE="0660" gives it to the group "gpio", which you then join)")
            : wording(R"(join its group with "sudo usermod -aG %1 $USER", and log in again)").arg(group);
    return wording("the chip %1: permission denied; %2").arg(file, remedy);
}

DWording lineText(const QString& name, int offset, const QString& chip)
{
    return wording(R"("%1" (%2))").arg(name, placeText(offset, chip));
}

DWording placeText(int offset, const QString& chip)
{
    return wording("line %1 of %2").arg(offset, chip);
}

DWording noChips()
{
    return wording(
        "this machine has no GPIO chip: there is no /dev/gpiochip0 or other; plug one in or load its "
        "driver");
}

DWording noSuchChip(const QString& chip)
{
    return wording(R"(there is no GPIO chip "%1"; "appvantor discover" lists those of this machine)")
        .arg(chip);
}

DWording noSuchLine(const QString& line, const QString& chip, const QString& wanted)
{
    return wording(R"(line "%1": the chip %2 has no line "%3"; "appvantor discover" lists its lines)")
        .arg(line, chip, wanted);
}

DWording lineWithoutChip(const QString& line, const QString& chip)
{
    return wording(R"(line "%1": %2)").arg(line, noSuchChip(chip));
}

DWording noLineOfName(const QString& line, const QString& wanted)
{
    return wording(R"(line "%1": no GPIO chip has a line "%2"; "appvantor discover" lists those )"
                   "of this machine")
        .arg(line, wanted);
}

DWording lineTwice(const QString& line, const QString& wanted, const QVector<DWording>& places)
{
    DWording all = places.constFirst();
    for (int place = 1; place < places.size(); ++place) {
        all = wording("%1, %2").arg(all, places.at(place));
    }
    return wording(R"(line "%1": there is more than one "%2": %3; "chip" and "line" tell which is )"
                   "meant, by the name of the chip and the offset")
        .arg(line, wanted, all);
}

DWording sameLine(const QString& line, const QString& other, const DWording& place)
{
    return wording(R"(line "%1": %2 is "%3" already; expected another)").arg(line, place, other);
}

DWording chipRefused(const QString& file, int error)
{
    if (error != EACCES && error != EPERM) {
        return wording(
                   R"(the chip %1 cannot be opened: %2; "appvantor discover" lists those of this machine)")
            .arg(file, errorText(error));
    }
    return permissionDenied(file, QFileInfo(file).group());
}

DWording lineBusy(const DWording& line, const QString& consumer)
{
    const DWording holder =
        consumer.isEmpty() ? wording("another program or driver") : wording(R"("%1")").arg(consumer);
    return wording("%1 is busy: %2 holds it; end that, and the bench goes on").arg(line, holder);
}

DWording lineRefused(const DWording& line, bool output, int error)
{
    return wording("%1 cannot be %2 as configured: %3; its driver may not offer this direction, bias, "
                   "drive or debounce, or edges at all")
        .arg(line, output ? wording("an output") : wording("an input"), errorText(error));
}

DWording lineFailed(const DWording& line, int error)
{
    return wording(R"(%1 does not answer: %2; the kernel's log ("sudo dmesg") may tell why)")
        .arg(line, errorText(error));
}

DWording lineIsInput(const DWording& line)
{
    return wording(R"(%1 is an input and cannot be written; "direction": "out" in the configuration )"
                   "makes it an output")
        .arg(line);
}

DWording chipGone(const QString& chip)
{
    return wording("the chip %1 is gone; plug it in or load its driver, and the bench goes on").arg(chip);
}

DWording edgesLost(const DWording& line, quint32 count)
{
    return wording("%1: %2 edges came faster than they could be read, and are lost").arg(line, count);
}

DWording edgesLostElsewhere(const QString& chip, quint32 count)
{
    return wording(
               "%1: %2 edges of lines that are still now came faster than they could be read, and are lost")
        .arg(chip, count);
}

} // namespace GpioMessages
