#pragma once

#include <utilities/d_object.h>

/// Base of the plugins; it keeps nothing here.
class Q_DECL_EXPORT DDataStorage : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DDataStorage)

public:
    DDataStorage(const QString& name, QObject* parent);
    ~DDataStorage() override;
};
