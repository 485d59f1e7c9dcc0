#pragma once

#include <plugin_management/d_wording.h>

#include <QString>
#include <QStringList>

/// The texts of the failures of GPIO lines: each names chip and line, and what can be done.
namespace GpioMessages {

/// A line for people: "button" (line 3 of gpiochip0).
DWording lineText(const QString& name, int offset, const QString& chip);

/// A line of a chip: line 3 of gpiochip0.
DWording placeText(int offset, const QString& chip);

DWording noChips();
DWording noSuchChip(const QString& chip);
DWording noSuchLine(const QString& line, const QString& chip, const QString& wanted);
DWording lineWithoutChip(const QString& line, const QString& chip);
DWording noLineOfName(const QString& line, const QString& wanted);
/// places are those of the lines that it may be.
DWording lineTwice(const QString& line, const QString& wanted, const QVector<DWording>& places);
/// other is the name of the line that this one is, too.
DWording sameLine(const QString& line, const QString& other, const DWording& place);
/// group is the owner of the chip's file.
DWording permissionDenied(const QString& file, const QString& group);
/// Why the chip of a file cannot be opened.
DWording chipRefused(const QString& file, int error);
/// consumer is who holds the line; empty when the kernel does not tell.
DWording lineBusy(const DWording& line, const QString& consumer);
DWording lineRefused(const DWording& line, bool output, int error);
DWording lineFailed(const DWording& line, int error);
DWording lineIsInput(const DWording& line);
DWording chipGone(const QString& chip);
DWording edgesLost(const DWording& line, quint32 count);
DWording edgesLostElsewhere(const QString& chip, quint32 count);

} // namespace GpioMessages
