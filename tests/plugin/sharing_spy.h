#pragma once

#include <QVector>

class QObject;

/// The objects that a QSharedPointer was marked as sharing, in this process. The marking leaves no trace in
/// the object, so it is watched where it arrives, in Qt's own function, whose place this takes in a test
/// program.
QVector<const QObject*> objectsMarkedAsShared();
