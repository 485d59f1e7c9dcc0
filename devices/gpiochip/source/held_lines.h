#pragma once

#include <devices/gpio_chip.h>
#include <devices/line.h>

#include <plugin_management/d_scheduler.h>

#include <QMap>

/// Lines of a chip that a device holds by one request, and the course of their levels. The device calls each
/// line by a number of its own.
class HeldLines
{
public:
    struct Line
    {
        int number = 0;
        GpioWish wish;
    };
    struct Change
    {
        int number = 0;
        int level = 0;
        qint64 timeUs = 0; ///< on the steady clock
        quint32 lost = 0;  ///< edges of the line right before it
        /// What brings the changes of several requests into one order: a time that never falls in those of
        /// one.
        qint64 orderUs = 0;
    };
    struct Course
    {
        qint64 fromUs = 0;           ///< on the steady clock: what was before it, has been told before
        std::vector<Change> changes; ///< as the kernel has numbered them
        QMap<int, quint32> lost;     ///< of lines that had later edges, by their numbers
        quint32 lostOfStill = 0;     ///< of lines that had none
        QMap<int, LineLevel> still; ///< the levels of these after it, by their numbers, where some lost edges
        int error = 0;              ///< what errno says when the edges cannot be read; else 0
    };

    HeldLines(std::shared_ptr<GpioChip> chip, std::unique_ptr<GpioRequest> request, QVector<Line> lines,
              DScheduler* scheduler);
    Q_DISABLE_COPY(HeldLines)

    const GpioChip& chip() const { return *m_chip; }
    int descriptor() const { return m_request->descriptor(); }
    const QVector<Line>& lines() const { return m_lines; }

    /// Drives an output. Returns 0, or what errno says.
    int drive(int position, int level);
    /// Reads a line. Returns 0, or what errno says.
    int read(int position, int* level) const;
    /// Reads the lines anew, all at once: appends their levels. What happened before is in these, and is told
    /// by no course. Returns 0, or what errno says.
    int begin(std::vector<Change>* levels);
    /// What has happened since the last call. Where edges were lost, the levels that were read after it come
    /// last, or in still.
    Course readCourse();

private:
    int readLevels(quint64 mask, std::vector<Change>* changes) const;
    std::vector<quint32> count(const std::vector<GpioEdge>& edges, Course* course);
    void readAfterLoss(Course* course) const;
    qint64 steadyTime(const GpioEdge& edge);
    bool isBeforeBeginning(const GpioEdge& edge) const;

    const std::shared_ptr<GpioChip> m_chip;
    const std::unique_ptr<GpioRequest> m_request;
    const QVector<Line> m_lines;
    DScheduler* const m_scheduler;
    quint64 m_inputs = 0;
    quint64 m_keptOutputs = 0;      ///< whose level was found, not given
    QVector<quint32> m_lastNumbers; ///< of the edges of each line
    quint32 m_lastNumber = 0;       ///< of the edges of the request
    qint64 m_lastOrderUs = 0;
    qint64 m_readUs = 0;                           ///< when the edges were read last
    std::optional<qint64> m_hardwareEngineStartUs; ///< on the steady clock, as far as it can be told
    /// When the levels were read that a course begins with, on the clocks of the kernel; until that course.
    qint64 m_beginningNs = 0;
    qint64 m_beginningRealtimeNs = 0;
};
