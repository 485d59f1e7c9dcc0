#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QVector>

#include <optional>

/// A line of a rig has another level.
struct RigChange
{
    qint64 timeUs = 0; ///< since 1970
    int line = 0;      ///< its index among the rig's lines
    int level = 0;     ///< -1 for one that is not known
};

/// Changes that follow one another, as they stand in a message: {"session":…,"first":n,"t0":…,"lost":k,
/// "e":[[dt,line,level],…]}, with the level null where it is not known.
struct RigChanges
{
    QString session;
    quint64 first = 1; ///< number of the first change; in a session they are numbered from 1
    quint64 lost = 0;  ///< so many changes right before it are in no message
    QVector<RigChange> changes;
    /// Of an answer from the history: the number of the next change after it.
    std::optional<quint64> next;
    /// Of an answer to who asks from the beginning: the levels of all lines, in their order.
    QVector<RigChange> levels;

    /// Number of the change after the last one.
    quint64 end() const { return first + static_cast<quint64>(changes.size()); }
    QByteArray toJson() const;
    /// Returns nothing for a text that is no such message.
    static std::optional<RigChanges> fromJson(const QByteArray& payload);
};

/// What a rig tells of itself, or what the broker tells of it: {"state":"online","session":…,"since":t}.
struct RigState
{
    QString state; ///< "online", "offline" or "lost"
    QString session;
    qint64 sinceUs = 0; ///< since 1970: begin of the session

    bool isOnline() const { return state == QLatin1String("online"); }
    QByteArray toJson() const;
    /// Returns nothing for a text that is no such message.
    static std::optional<RigState> fromJson(const QByteArray& payload);
};

/// Who holds a rig: {"holder":…,"until":t}, with the holder null for nobody.
struct RigHolder
{
    /// For how many minutes a rig can be taken at most.
    static constexpr int c_longestMinutes = 7 * 24 * 60;

    QString name;       ///< empty for nobody
    qint64 untilUs = 0; ///< since 1970

    /// Nobody, for a text that is no such message.
    static RigHolder fromJson(const QByteArray& payload);
};

Q_DECLARE_METATYPE(RigChanges)
