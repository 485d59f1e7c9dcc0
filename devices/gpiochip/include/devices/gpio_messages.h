#pragma once

#include <QString>
#include <QStringList>

/// The texts of the failures of GPIO lines: each names chip and line, and what can be done.
namespace GpioMessages {

/// A line for people: "button" (line 3 of gpiochip0).
QString lineText(const QString& name, int offset, const QString& chip);

/// A line of a chip: line 3 of gpiochip0.
QString placeText(int offset, const QString& chip);

QString noChips();
QString noSuchChip(const QString& chip);
QString noSuchLine(const QString& line, const QString& chip, const QString& wanted);
QString lineWithoutChip(const QString& line, const QString& chip);
QString noLineOfName(const QString& line, const QString& wanted);
/// places are those of the lines that it may be.
QString lineTwice(const QString& line, const QString& wanted, const QStringList& places);
/// other is the name of the line that this one is, too.
QString sameLine(const QString& line, const QString& other, const QString& place);
/// group is the owner of the chip's file.
QString permissionDenied(const QString& file, const QString& group);
/// Why the chip of a file cannot be opened.
QString chipRefused(const QString& file, int error);
/// consumer is who holds the line; empty when the kernel does not tell.
QString lineBusy(const QString& line, const QString& consumer);
QString lineRefused(const QString& line, bool output, int error);
QString lineFailed(const QString& line, int error);
QString lineIsInput(const QString& line);
QString chipGone(const QString& chip);
QString edgesLost(const QString& line, quint32 count);
QString edgesLostElsewhere(const QString& chip, quint32 count);

} // namespace GpioMessages
