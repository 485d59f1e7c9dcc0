#pragma once

#include <QString>

/// The texts of the failures of GPIO lines: each names chip and line, and what can be done.
namespace GpioMessages {

/// A line for people: "button" (line 3 of gpiochip0).
QString lineText(const QString& name, int offset, const QString& chip);

QString noChips();
QString noSuchChip(const QString& chip);
QString noSuchLine(const QString& line, const QString& chip, const QString& wanted);
/// group is the owner of the chip's file.
QString permissionDenied(const QString& file, const QString& group);
QString chipFailed(const QString& chip, int error);
/// consumer is who holds the line; empty when the kernel does not tell.
QString lineBusy(const QString& line, const QString& consumer);
QString lineRefused(const QString& line, bool output, int error);
QString lineFailed(const QString& line, int error);
QString lineIsInput(const QString& line);
QString chipGone(const QString& chip);
QString edgesLost(const QString& line, quint32 count);

} // namespace GpioMessages
