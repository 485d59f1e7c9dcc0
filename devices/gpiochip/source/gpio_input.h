#pragma once

#include <devices/gpio_chip.h>

#include <QVector>

#include <memory>

/// A change of an input line.
struct GpioEdge
{
    qint64 timeNs = 0; ///< on the kernel's monotonic clock
    int level = 0;
};

/// An input line with its edges, held as long as the object lives. It speaks to the kernel itself:
/// libgpiod 1.6 uses the kernel's older interface, which knows no debouncing, keeps 16 edges only, and drops
/// others silently.
class GpioInput
{
public:
    /// Requests the line offset of the chip in file. Without success nothing is returned, and error is what
    /// errno says.
    static std::unique_ptr<GpioInput> request(const QString& file, int offset,
                                              const GpioLineSettings& settings, int* error);
    ~GpioInput();
    Q_DISABLE_COPY(GpioInput)

    /// Becomes readable when there are edges.
    int descriptor() const { return m_descriptor; }
    /// The present level, 0 or 1; -1 after a failure, which errno tells.
    int level() const;
    /// Appends the edges since the last call to edges; adds to lost the number of those that the kernel had
    /// no room for. Returns 0, or what errno says.
    int readEdges(QVector<GpioEdge>* edges, quint32* lost);

private:
    explicit GpioInput(int descriptor)
        : m_descriptor(descriptor)
    {}

    int m_descriptor;
    quint32 m_lastNumber = 0;
};
