#pragma once

#include <QObject>
#include <QString>

/// A QObject that is named from the start.
class Q_DECL_EXPORT DObject : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DObject)

public:
    DObject(const QString& name, QObject* parent);
    ~DObject() override;
};
