#include <devices/gpio_messages.h>

#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace {

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error)).toLower();
}

} // namespace

namespace GpioMessages {

QString permissionDenied(const QString& file, const QString& group)
{
    const QString remedy =
        group.isEmpty() || group == QLatin1String("root")
            ? QStringLiteral("a file in /etc/udev/rules.d with the rule SUBSYSTEM==\"gpio\", GROUP=\"gpio\", "
                             "MODE=\"0660\" gives it to the group \"gpio\", which you then join")
            : QStringLiteral("join its group with \"sudo usermod -aG %1 $USER\", and log in again")
                  .arg(group);
    return QStringLiteral("the chip %1: permission denied; %2").arg(file, remedy);
}

QString lineText(const QString& name, int offset, const QString& chip)
{
    return QStringLiteral("\"%1\" (%2)").arg(name, placeText(offset, chip));
}

QString placeText(int offset, const QString& chip)
{
    return QStringLiteral("line %1 of %2").arg(QString::number(offset), chip);
}

QString noChips()
{
    return QStringLiteral(
        "this machine has no GPIO chip: there is no /dev/gpiochip0 or other; plug one in or load its "
        "driver");
}

QString noSuchChip(const QString& chip)
{
    return QStringLiteral("there is no GPIO chip \"%1\"; \"appvantor discover\" lists those of this machine")
        .arg(chip);
}

QString noSuchLine(const QString& line, const QString& chip, const QString& wanted)
{
    return QStringLiteral(
               "line \"%1\": the chip %2 has no line \"%3\"; \"appvantor discover\" lists its lines")
        .arg(line, chip, wanted);
}

QString lineWithoutChip(const QString& line, const QString& chip)
{
    return QStringLiteral("line \"%1\": %2").arg(line, noSuchChip(chip));
}

QString noLineOfName(const QString& line, const QString& wanted)
{
    return QStringLiteral("line \"%1\": no GPIO chip has a line \"%2\"; \"appvantor discover\" lists those "
                          "of this machine")
        .arg(line, wanted);
}

QString lineTwice(const QString& line, const QString& wanted, const QStringList& places)
{
    return QStringLiteral(
               "line \"%1\": there is more than one \"%2\": %3; \"chip\" and \"line\" tell which is "
               "meant, by the name of the chip and the offset")
        .arg(line, wanted, places.join(QStringLiteral(", ")));
}

QString sameLine(const QString& line, const QString& other, const QString& place)
{
    return QStringLiteral("line \"%1\": %2 is \"%3\" already; expected another").arg(line, place, other);
}

QString chipRefused(const QString& file, int error)
{
    if (error != EACCES && error != EPERM) {
        return QStringLiteral(
                   "the chip %1 cannot be opened: %2; \"appvantor discover\" lists those of this machine")
            .arg(file, errorText(error));
    }
    return permissionDenied(file, QFileInfo(file).group());
}

QString lineBusy(const QString& line, const QString& consumer)
{
    const QString holder = consumer.isEmpty() ? QStringLiteral("another program or driver")
                                              : QStringLiteral("\"%1\"").arg(consumer);
    return QStringLiteral("%1 is busy: %2 holds it; end that, and the bench goes on").arg(line, holder);
}

QString lineRefused(const QString& line, bool output, int error)
{
    return QStringLiteral(
               "%1 cannot be an %2 as configured: %3; its driver may not offer this direction, bias, "
               "drive or debounce, or edges at all")
        .arg(line, output ? QStringLiteral("output") : QStringLiteral("input"), errorText(error));
}

QString lineFailed(const QString& line, int error)
{
    return QStringLiteral("%1 does not answer: %2; the kernel's log (\"sudo dmesg\") may tell why")
        .arg(line, errorText(error));
}

QString lineIsInput(const QString& line)
{
    return QStringLiteral("%1 is an input and cannot be written; \"direction\": \"out\" in the configuration "
                          "makes it an "
                          "output")
        .arg(line);
}

QString chipGone(const QString& chip)
{
    return QStringLiteral("the chip %1 is gone; plug it in or load its driver, and the bench goes on")
        .arg(chip);
}

QString edgesLost(const QString& line, quint32 count)
{
    return QStringLiteral("%1: %2 edges came faster than they could be read, and are lost")
        .arg(line, QString::number(count));
}

QString edgesLostElsewhere(const QString& chip, quint32 count)
{
    return QStringLiteral(
               "%1: %2 edges of lines that are still now came faster than they could be read, and are lost")
        .arg(chip, QString::number(count));
}

} // namespace GpioMessages
