#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

/// How a GPIO line is requested.
struct GpioLineSettings
{
    enum class Bias
    {
        AsIs,
        PullUp,
        PullDown,
        None
    };
    enum class Drive
    {
        PushPull,
        OpenDrain,
        OpenSource
    };

    bool output = false;
    bool activeLow = false;
    Bias bias = Bias::AsIs;
    Drive drive = Drive::PushPull; ///< of an output
    int level = 0;                 ///< of an output, at the start
    int debounceUs = 0;            ///< of an input
};

/// What the kernel tells of a line.
struct GpioLineInfo
{
    int offset = 0;
    QString name;     ///< empty for a line without one
    QString consumer; ///< who holds it; empty for a free line
    bool used = false;
    bool output = false;
    QStringList flags; ///< "active-low", "open-drain", "pull-up" and so on
};

/// An output line that is held as long as the object lives.
class GpioOutput
{
public:
    virtual ~GpioOutput() = default;
    /// Drives the line to level, 0 or 1. Returns 0, or what errno says.
    virtual int setLevel(int level) = 0;
};

/// An open GPIO chip.
class GpioChip
{
public:
    virtual ~GpioChip() = default;

    /// Files of the chips of this machine, in the order of their numbers.
    static QStringList files();
    /// Opens the chip of a file. Without success nothing is returned, and error is what errno says.
    static std::unique_ptr<GpioChip> open(const QString& file, int* error);

    virtual QString name() const = 0;
    virtual QString label() const = 0;
    virtual int lineCount() const = 0;
    /// What is known of a line, from 0 to lineCount() - 1; nothing when it cannot be asked.
    virtual std::optional<GpioLineInfo> line(int offset) const = 0;
    /// Requests a line as an output. Without success nothing is returned, and error is what errno says.
    virtual std::unique_ptr<GpioOutput> requestOutput(int offset, const GpioLineSettings& settings,
                                                      int* error) const = 0;
};
