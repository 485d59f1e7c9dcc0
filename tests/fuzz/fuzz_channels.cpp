#include "support/fuzzer_process.h"
#include "support/require.h"
#include "support/variants.h"

#include <be_maintenance_plugin.h>
#include <channel_entry.h>
#include <literals.h>
#include <recording_device.h>

#include <plugin_management/d_tool.h>

// Values of all kinds as the channels of a tool's configuration, as what its device answers, and as results
// of treatments: the channels, their list, and the object behind the maintenance page.

namespace {

QStringList words()
{
    return {"id"_s,           "name"_s,   "value"_s, "visibility"_s,   "public"_s,        "type"_s,
            "direction"_s,    "link"_s,   "out"_s,   "digitalInput"_s, "digitalOutput"_s, "analogInput"_s,
            "analogOutput"_s, "values"_s, "line0"_s, QString()};
}

/// An entry that is a channel more often than not.
QVariant anyChannelEntry(FuzzedDataProvider* data, Variants* variants)
{
    if (data->ConsumeBool()) {
        return variants->value();
    }
    const QVariantMap items = {
        {"type"_s, variants->text()}, {"direction"_s, "out"_s}, {"link"_s, variants->text()}};
    const QVariant another = variants->value(1);
    QVariantMap entry = channelEntry(variants->text(), items);
    entry["name"_s] = variants->value(1);
    entry["value"_s] = entry.value("value"_s).toList() << another;
    return entry;
}

void checkChannel(const QVariantMap& entry, Variants* variants)
{
    constexpr int longestName = 64;
    const QSharedPointer<DGpioChannel> channel = DGpioChannel::create(entry);
    require(channel.isNull() == entry.isEmpty(), "an entry with keys makes a channel, no other does");
    if (channel.isNull()) {
        return;
    }
    require(channel->id() == entry.value("id"_s).toString(), "a channel has its entry's id");
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
                entry.type() == QVariant::Map && entry.toMap().value("visibility"_s).toString() == "public"_s;
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
        const QVariantMap reply = {{"value"_s, variants->value()}};
        backend->applyTreatmentReply(id, "getValue"_s, reply);
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
            entries.append(anyChannelEntry(&data, &variants));
        }
        channels = entries;
    }
    RecordingDevice device(&fuzzerTime());
    device.open();
    device.onRequest = [&](const RecordingDevice::Request& request) {
        if (data.ConsumeBool()) {
            device.reply(request.id, {{"value"_s, variants.value()}});
        } else if (data.ConsumeBool()) {
            device.refuse(request.id, variants.text());
        }
    };
    const DTool tool({{"name"_s, "T"_s}, {"channels"_s, channels}}, watchedPlugin(), &device);
    BeMaintenanceToolGpio backend;
    backend.setName("T"_s);
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
