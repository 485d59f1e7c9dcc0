#pragma once

#include <utilities/utilities_global.h>

#include <QObject>
#include <QString>

/// Common base of the host's objects: a QObject that is named from the start.
class UTILITIES_EXPORT DObject : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DObject)

public:
    /// Makes an object called name, child of parent (or of none).
    explicit DObject(const QString& name, QObject* parent = nullptr);
    ~DObject() override;
};
