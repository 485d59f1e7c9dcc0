#pragma once

#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <QVariant>

#include <memory>

/// Keeps named values for the object that derives from it.
class PLUGIN_MANAGEMENT_EXPORT DDataStorage : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DDataStorage)

public:
    /// Makes an empty storage called name, child of parent (or of none).
    explicit DDataStorage(const QString& name, QObject* parent = nullptr);
    ~DDataStorage() override;

    /// The value stored under name; fallback when there is none.
    QVariant data(const QString& name, const QVariant& fallback = QVariant()) const;
    /// Stores value under name, replacing an earlier one.
    void setData(const QString& name, const QVariant& value);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
