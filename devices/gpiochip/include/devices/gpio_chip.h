#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

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
    enum class Clock
    {
        Monotonic,
        Realtime,
        HardwareEngine
    };

    bool output = false;
    bool activeLow = false;
    Bias bias = Bias::AsIs;
    Drive drive = Drive::PushPull; ///< of an output
    /// Of an output, at the start; nothing for the level that the line has already.
    std::optional<int> level = 0;
    int debounceUs = 0;             ///< of an input
    Clock clock = Clock::Monotonic; ///< of an input: which one its edges are timed with
};

/// A line of a chip that is wanted.
struct GpioWish
{
    int offset = 0;
    GpioLineSettings settings;
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

/// A watched line was taken, released or configured anew.
struct GpioLineChange
{
    GpioLineInfo line;
    enum class Kind
    {
        Taken,
        Released,
        Configured
    } kind = Kind::Taken;
    qint64 timeNs = 0; ///< on the monotonic clock
};

/// A change of an input line.
struct GpioEdge
{
    int line = 0;           ///< position in the request
    int level = 0;          ///< since the edge
    quint32 number = 0;     ///< among the edges of the request, from 1
    quint32 lineNumber = 0; ///< among the edges of the line, from 1; none of these is left out
    qint64 timeNs = 0;      ///< on the clock of the line
};

/// Lines of a chip that are held together, as long as the object lives. Levels are bits, that of the first
/// line the lowest.
class GpioRequest
{
public:
    /// How many edges the kernel keeps for a request, at most, until they are read.
    static constexpr int c_keptEdges = 1024;
    /// The bit of the line at a position.
    static constexpr quint64 bitOf(int position) { return quint64{1} << static_cast<unsigned>(position); }

    ~GpioRequest();
    Q_DISABLE_COPY(GpioRequest)

    int lineCount() const { return m_lineCount; }
    /// Can be read when there are edges.
    int descriptor() const { return m_descriptor; }
    /// Reads the lines of mask at once. Returns 0, or what errno says.
    int readLevels(quint64 mask, quint64* levels) const;
    /// Drives the lines of mask at once; all of them are outputs. Returns 0, or what errno says.
    int writeLevels(quint64 mask, quint64 levels);
    /// Appends the edges since the last call, those of each line in their order. Returns 0, or what errno
    /// says.
    int readEdges(std::vector<GpioEdge>* edges);

private:
    friend class GpioChip;
    GpioRequest(int descriptor, const QVector<GpioWish>& lines);

    int m_descriptor;
    int m_lineCount;
    QVector<int> m_positions; ///< by the offsets; -1 for a line of others
};

/// An open GPIO chip.
class GpioChip
{
public:
    /// Files of the chips of this machine, in the order of their numbers.
    static QStringList files();
    /// Opens the chip of a file. Without success nothing is returned, and error is what errno says.
    static std::unique_ptr<GpioChip> open(const QString& file, int* error);
    ~GpioChip();
    Q_DISABLE_COPY(GpioChip)

    QString file() const { return m_file; }
    QString name() const { return m_name; }
    QString label() const { return m_label; }
    int lineCount() const { return m_lineCount; }
    /// False once the chip has gone, even when another has its name.
    bool isThere() const;
    /// What is known of a line, from 0 to lineCount() - 1; nothing when it cannot be asked.
    std::optional<GpioLineInfo> line(int offset) const;
    /// Requests as many of the lines, from the first on, as the kernel gives together: at least one, up to
    /// 64. Without success nothing is returned, and error is what errno says.
    std::unique_ptr<GpioRequest> request(const QVector<GpioWish>& lines, int* error) const;

    /// The same as line(), and the kernel tells of its changes from now on.
    std::optional<GpioLineInfo> watchLine(int offset);
    /// Can be read when watched lines have changed, or the chip has gone.
    int descriptor() const { return m_descriptor; }
    /// The changes of watched lines since the last call.
    std::vector<GpioLineChange> readChanges();

private:
    GpioChip(QString file, int descriptor);

    QString m_file;
    int m_descriptor;
    QString m_name;
    QString m_label;
    int m_lineCount = 0;
};
