#include <plugin_management/d_data_storage.h>

struct DDataStorage::Private
{
    QVariantMap values;
};

DDataStorage::DDataStorage(const QString& name, QObject* parent)
    : DObject(name, parent)
    , d(std::make_unique<Private>())
{}

DDataStorage::~DDataStorage() = default;

QVariant DDataStorage::data(const QString& name, const QVariant& fallback) const
{
    return d->values.value(name, fallback);
}

void DDataStorage::setData(const QString& name, const QVariant& value)
{
    d->values.insert(name, value);
}
