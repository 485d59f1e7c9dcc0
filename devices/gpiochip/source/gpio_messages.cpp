#include <devices/gpio_messages.h>

#include <cstring>

namespace {

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error)).toLower();
}

} // namespace

namespace GpioMessages {

QString lineText(const QString& name, int offset, const QString& chip)
{
    return QStringLiteral("\"%1\" (line %2 of %3)").arg(name, QString::number(offset), chip);
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

QString chipFailed(const QString& chip, int error)
{
    return QStringLiteral(
               "the chip %1 cannot be opened: %2; \"appvantor discover\" lists those of this machine")
        .arg(chip, errorText(error));
}

QString lineBusy(const QString& line, const QString& consumer)
{
    const QString holder = consumer.isEmpty() ? QStringLiteral("another program or driver")
                                              : QStringLiteral("\"%1\"").arg(consumer);
    return QStringLiteral("%1 is busy: %2 holds it; end that, then start the bench again").arg(line, holder);
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

} // namespace GpioMessages
