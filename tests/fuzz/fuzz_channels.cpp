#include "support/fuzzer_process.h"
#include "support/require.h"
#include "support/variants.h"

#include <be_maintenance_plugin.h>
#include <recording_device.h>

#include <plugin_management/d_tool.h>

// Values of all kinds as the channels of a tool's configuration, as what its device answers, and as results
// of treatments: the channels, their list, and the object behind the maintenance page.

namespace {

QStringList words()
{
    return {QStringLiteral("id"),
            QStringLiteral("name"),
            QStringLiteral("value"),
            QStringLiteral("visibility"),
            QStringLiteral("public"),
            QStringLiteral("type"),
            QStringLiteral("direction"),
            QStringLiteral("link"),
            QStringLiteral("out"),
            QStringLiteral("digitalInput"),
            QStringLiteral("digitalOutput"),
            QStringLiteral("analogInput"),
            QStringLiteral("analogOutput"),
            QStringLiteral("values"),
            QStringLiteral("line0"),
            QString()};
}

/// An entry that is a channel more often than not.
QVariant channelEntry(FuzzedDataProvider* data, Variants* variants)
{
    if (data->ConsumeBool()) {
        return variants->value();
    }
    const auto item = [](const QString& id, const QVariant& value) {
        return QVariantMap{{QStringLiteral("id"), id}, {QStringLiteral("value"), value}};
    };
    QVariantList items = {item(QStringLiteral("type"), variants->text()),
                          item(QStringLiteral("direction"), QStringLiteral("out")),
                          item(QStringLiteral("link"), variants->text())};
    items.append(variants->value(1));
    return QVariantMap{{QStringLiteral("id"), variants->text()},
                       {QStringLiteral("name"), variants->value(1)},
                       {QStringLiteral("visibility"), QStringLiteral("public")},
                       {QStringLiteral("value"), items}};
}

void checkChannel(const QVariantMap& entry, Variants* variants)
{
    constexpr int longestName = 64;
    const QSharedPointer<DGpioChannel> channel = DGpioChannel::create(entry);
    require(channel.isNull() == entry.isEmpty(), "an entry with keys makes a channel, no other does");
    if (channel.isNull()) {
        return;
    }
    require(channel->id() == entry.value(QStringLiteral("id")).toString(), "a channel has its entry's id");
    require(channel->name().size() <= longestName, "a name is cut");
    require(channel->type() >= DGpioChannel::CeCtUnknown && channel->type() < DGpioChannel::_CeCtNbr,
            "a channel has a known type");
    require(channel->isSwitchable() == (channel->type() == DGpioChannel::CeCtBinIn),
            "binary inputs are what the user switches");
    const QVariant value = variants->value();
    const bool suits = channel->setValue(value);
    require(channel->value().userType() == value.userType(), "a value is stored whether it suits or not");
    require(!suits || channel->type() != DGpioChannel::CeCtUnknown, "nothing suits an unknown type");
}

int publicChannels(const QVariant& channels)
{
    int count = 0;
    if (channels.type() == QVariant::List) {
        const QVariantList entries = channels.toList();
        for (const QVariant& entry : entries) {
            const bool isPublic =
                entry.type() == QVariant::Map &&
                entry.toMap().value(QStringLiteral("visibility")).toString() == QLatin1String("public");
            count += isPublic ? 1 : 0;
        }
    }
    return count;
}

void checkModel(OLM_DGpioChannel* model)
{
    require(model->rowCount() == model->length(), "a model has a row for each channel");
    require((model->isEmpty() == 1) == (model->length() == 0), "a model without rows is empty");
    for (int row = -1; row <= model->length(); ++row) {
        const QVariant shown = model->data(model->index(row, 0), Qt::UserRole);
        const bool exists = row >= 0 && row < model->length();
        require((shown.value<QObject*>() != nullptr) == exists, "each row shows its channel, no other does");
        require(!model->data(model->index(row, 0), Qt::DisplayRole).isValid(), "there is one role");
        QVariant item;
        QMetaObject::invokeMethod(model, "item", Q_RETURN_ARG(QVariant, item), Q_ARG(int, row));
        require(item.value<DGpioChannel*>() == shown.value<QObject*>(), "an item is what its row shows");
    }
}

/// What a user, the page and the host do with the page's object.
void useBackend(BeMaintenanceToolGpio* backend, FuzzedDataProvider* data, Variants* variants)
{
    const int rows = backend->channelsModel()->length();
    const auto row = [&] {
        return data->ConsumeBool() ? data->ConsumeIntegralInRange(-1, rows) : data->ConsumeIntegral<int>();
    };
    switch (data->ConsumeIntegralInRange(0, 4)) {
    case 0:
        backend->updateChannelsValue();
        require(rows == 0 || backend->hasPendingTreatments(), "a refresh asks for the values");
        break;
    case 1:
        backend->clickedOnChannel(row());
        break;
    case 2: {
        const int id = row();
        const QVariantMap reply = variants->map(2);
        const bool used = backend->applyTreatmentReply(id, variants->text(), reply);
        require(!used || !backend->getChannelAt(id).isNull(), "a reply is used by a channel");
        break;
    }
    case 3: {
        const int id = row();
        const QVariantMap reply = {{QStringLiteral("value"), variants->value()}};
        backend->applyTreatmentReply(id, QStringLiteral("getValue"), reply);
        break;
    }
    default:
        backend->treatmentReleased(row(), variants->text(), data->ConsumeBool());
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    beginInput();
    constexpr int mostChannels = 5;
    constexpr int mostActions = 12;
    constexpr int longerThanAnyReply = 5000;
    FuzzedDataProvider data(bytes, size);
    Variants variants(&data, words());
    checkChannel(variants.map(3), &variants);

    QVariant channels = variants.value(1);
    if (data.ConsumeBool()) {
        QVariantList entries;
        const int count = data.ConsumeIntegralInRange(0, mostChannels);
        for (int entry = 0; entry < count; ++entry) {
            entries.append(channelEntry(&data, &variants));
        }
        channels = entries;
    }
    RecordingDevice device(&fuzzerTime());
    device.open();
    device.onRequest = [&](const RecordingDevice::Request& request) {
        if (data.ConsumeBool()) {
            device.reply(request.id, {{QStringLiteral("value"), variants.value()}});
        } else if (data.ConsumeBool()) {
            device.refuse(request.id, variants.text());
        }
    };
    const DTool tool({{QStringLiteral("name"), QStringLiteral("T")}, {QStringLiteral("channels"), channels}},
                     watchedPlugin(), &device);
    BeMaintenanceToolGpio backend;
    backend.setName(QStringLiteral("T"));
    settle();
    require(backend.channelsModel()->length() == publicChannels(channels),
            "the page lists the public channels");
    const int actions = data.ConsumeIntegralInRange(0, mostActions);
    for (int action = 0; action < actions; ++action) {
        useBackend(&backend, &data, &variants);
        if (data.ConsumeBool()) {
            settle();
        }
    }
    checkModel(backend.channelsModel());
    // One treatment after another may wait for a reply that does not come, and each may lead to a reading.
    const int most = 2 * (actions + 1) * (backend.channelsModel()->length() + 1);
    for (int wait = 0; wait < most && backend.hasPendingTreatments(); ++wait) {
        settle();
        passTime(longerThanAnyReply);
    }
    require(!backend.hasPendingTreatments(), "every treatment is released");
    return 0;
}
