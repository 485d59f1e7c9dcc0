#pragma once

#include "d_gpio_channel.h"
#include "qobject_list_model_base.h"

/// The list of channels that the maintenance panel shows.
class OLM_DGpioChannel : public __qobjectsqmllist::QObjectListModelBase<DGpioChannel>
{
    Q_OBJECT
    Q_DISABLE_COPY(OLM_DGpioChannel)
    Q_PROPERTY(int length READ length NOTIFY changed)
    Q_PROPERTY(int isEmpty READ isEmpty NOTIFY changed)

public:
    explicit OLM_DGpioChannel(QObject* parent = nullptr);

    /// Number of rows.
    int length() const;
    /// 1 when there are no rows, else 0.
    int isEmpty() const;

    /// The horizontal header of section, which this model leaves invalid.
    Q_INVOKABLE QVariant header(int section);

Q_SIGNALS:
    /// The list has changed.
    void changed();

protected:
    /// The channel of row i, which stays C++'s own whatever QML does with it; invalid when there is no such
    /// row.
    Q_INVOKABLE QVariant item(int i);

    void emitChanged() override;
};
