#include <devices/rig_changes.h>

#include <nlohmann/json.hpp>

#include <utility>

namespace {

using Json = nlohmann::ordered_json;

constexpr int c_highestLevel = 65535;

Json levelJson(int level)
{
    return level < 0 ? Json() : Json(level);
}

/// An object; what is none, or no JSON, gives an empty one. What is nested deeper than any message of ours is
/// left out: a value is copied and compared level by level.
Json objectOf(const QByteArray& text)
{
    constexpr int deepest = 8;
    const auto isTaken = [](int depth, Json::parse_event_t /*event*/, const Json& /*value*/) {
        return depth <= deepest;
    };
    Json json = Json::parse(text.cbegin(), text.cend(), isTaken, false);
    return json.is_object() ? std::move(json) : Json::object();
}

std::optional<qint64> numberAt(const Json& json, qint64 lowest, qint64 highest)
{
    if (!json.is_number_integer() || (json.is_number_unsigned() && json.get<quint64>() > quint64(highest)) ||
        json.get<qint64>() < lowest || json.get<qint64>() > highest) {
        return std::nullopt;
    }
    return json.get<qint64>();
}

std::optional<qint64> number(const Json& object, const char* key)
{
    constexpr qint64 highest = 1LL << 60;
    const auto found = object.find(key);
    return found != object.end() ? numberAt(*found, 0, highest) : std::nullopt;
}

std::optional<QString> text(const Json& object, const char* key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_string()
               ? std::optional<QString>(QString::fromStdString(found->get<std::string>()))
               : std::nullopt;
}

/// The level of a change; nothing for what is none.
std::optional<int> levelOf(const Json& json)
{
    if (json.is_null()) {
        return -1;
    }
    const std::optional<qint64> level = numberAt(json, 0, c_highestLevel);
    return level ? std::optional<int>(static_cast<int>(*level)) : std::nullopt;
}

std::optional<RigChange> changeOf(const Json& entry, qint64 startUs)
{
    constexpr qint64 longestUs = 1LL << 50;
    constexpr qint64 mostLines = 1 << 20;
    if (!entry.is_array() || entry.size() != 3) {
        return std::nullopt;
    }
    const std::optional<qint64> time = numberAt(entry.at(0), -longestUs, longestUs);
    const std::optional<qint64> line = numberAt(entry.at(1), 0, mostLines);
    const std::optional<int> level = levelOf(entry.at(2));
    if (!time || !line || !level) {
        return std::nullopt;
    }
    return RigChange{startUs + *time, static_cast<int>(*line), *level};
}

/// The changes of a list; nothing when one of them is none.
std::optional<QVector<RigChange>> changesOf(const Json& object, const char* key, qint64 startUs)
{
    QVector<RigChange> changes;
    const auto list = object.find(key);
    if (list == object.end()) {
        return changes;
    }
    if (!list->is_array()) {
        return std::nullopt;
    }
    for (const Json& entry : *list) {
        const std::optional<RigChange> change = changeOf(entry, startUs);
        if (!change) {
            return std::nullopt;
        }
        changes.append(*change);
    }
    return changes;
}

Json listOf(const QVector<RigChange>& changes, qint64 startUs)
{
    Json list = Json::array();
    for (const RigChange& change : changes) {
        list.push_back(Json::array({change.timeUs - startUs, change.line, levelJson(change.level)}));
    }
    return list;
}

QByteArray toText(const Json& json)
{
    return QByteArray::fromStdString(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace

QByteArray RigChanges::toJson() const
{
    const qint64 startUs = !changes.isEmpty() ? changes.first().timeUs
                           : levels.isEmpty() ? 0
                                              : levels.first().timeUs;
    Json json = {{"session", session.toStdString()},
                 {"first", first},
                 {"t0", startUs},
                 {"lost", lost},
                 {"e", listOf(changes, startUs)}};
    if (next) {
        json["next"] = *next;
    }
    if (!levels.isEmpty()) {
        json["levels"] = listOf(levels, startUs);
    }
    return toText(json);
}

std::optional<RigChanges> RigChanges::fromJson(const QByteArray& payload)
{
    const Json json = objectOf(payload);
    const std::optional<QString> session = text(json, "session");
    const std::optional<qint64> first = number(json, "first");
    const std::optional<qint64> start = number(json, "t0");
    const std::optional<qint64> lost = number(json, "lost");
    if (!session || !first || !start || !lost || *first < 1 || *lost >= *first || json.count("e") == 0) {
        return std::nullopt;
    }
    const auto changes = changesOf(json, "e", *start);
    const auto levels = changesOf(json, "levels", *start);
    if (!changes || !levels) {
        return std::nullopt;
    }
    RigChanges read{*session, static_cast<quint64>(*first), static_cast<quint64>(*lost), *changes, {},
                    *levels};
    if (const std::optional<qint64> next = number(json, "next")) {
        read.next = static_cast<quint64>(*next);
    }
    return read;
}

QByteArray RigState::toJson() const
{
    return toText({{"state", state.toStdString()}, {"session", session.toStdString()}, {"since", sinceUs}});
}

std::optional<RigState> RigState::fromJson(const QByteArray& payload)
{
    const Json json = objectOf(payload);
    const std::optional<QString> state = text(json, "state");
    const std::optional<QString> session = text(json, "session");
    const std::optional<qint64> since = number(json, "since");
    if (!state || !session || !since) {
        return std::nullopt;
    }
    return RigState{*state, *session, *since};
}

RigHolder RigHolder::fromJson(const QByteArray& payload)
{
    const Json json = objectOf(payload);
    return {text(json, "holder").value_or(QString()), number(json, "until").value_or(0)};
}
