#include "sharing_spy.h"

#include <QSharedPointer>

namespace {

QVector<const QObject*>& marked()
{
    static QVector<const QObject*> objects;
    return objects;
}

} // namespace

QVector<const QObject*> objectsMarkedAsShared()
{
    return marked();
}

void QtSharedPointer::ExternalRefCountData::setQObjectShared(const QObject* object, bool enable)
{
    if (enable) {
        marked().append(object);
    }
}
