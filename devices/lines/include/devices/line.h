#pragma once

#include <QMetaType>
#include <QString>

/// A line of a device.
struct DLine
{
    enum class Kind
    {
        Digital,
        Analog,
        Count
    };
    enum class Direction
    {
        In,
        Out,
        Count
    };

    QString name;
    Kind kind = Kind::Digital;
    /// Seen from the device: Out is driven by requests, In is driven from outside.
    Direction direction = Direction::Out;
    /// True when a person can play the outside world and set the level of this input.
    bool settable = false;

    /// 1 of a digital line, 65535 of an analogue one; the lowest level is 0.
    int highestLevel() const { return kind == Kind::Analog ? 65535 : 1; }
};

/// What is known of a line's level.
struct LineLevel
{
    int level = 0;
    /// Since when, in microseconds on the steady clock.
    qint64 sinceUs = 0;
    /// False while nobody can tell the level: the device is not there, or the line cannot be read.
    bool known = false;

    bool operator==(const LineLevel& other) const
    {
        return known == other.known && (!known || level == other.level);
    }
};

Q_DECLARE_METATYPE(LineLevel)
