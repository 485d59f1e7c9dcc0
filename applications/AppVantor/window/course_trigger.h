#pragma once

#include "course_view.h"

#include <QHash>

#include <deque>

/// Waits for what lines are to do, counts how often they do it, and stops the courses there. Each line can
/// have one condition; an edge counts when the levels of all lines that are to have one fit. Without an edge
/// it counts when the levels begin to fit. An analogue line is high above the middle of its levels. What has
/// happened is told at the clock's ticks.
class CourseTrigger : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CourseTrigger)
    /// True while a line has a condition.
    Q_PROPERTY(bool active READ isActive NOTIFY conditionsChanged)
    /// The conditions, for people: "do0 ↑, di1 high".
    Q_PROPERTY(QString text READ text NOTIFY conditionsChanged)
    /// Where the courses stop: "at", "around" or "from" the first time; "none" counts only.
    Q_PROPERTY(QString mode READ mode WRITE setMode NOTIFY modeChanged)
    /// How often it has happened since the last condition was set.
    Q_PROPERTY(int count READ count NOTIFY counted)
    /// The latest times at which it has happened, by their shares of the view: one for each pixel.
    Q_PROPERTY(QVariantList marks READ marks NOTIFY marksMoved)

public:
    enum class Condition
    {
        None,
        Rising,
        Falling,
        Either,
        High,
        Low,
        Count
    };
    Q_ENUM(Condition)

    /// lines and view must outlive the trigger.
    CourseTrigger(LinesModel* lines, CourseView* view, QObject* parent = nullptr);

    bool isActive() const { return !m_conditions.isEmpty(); }
    QString text() const;
    QString mode() const { return m_mode; }
    void setMode(const QString& mode);
    int count() const { return m_count; }
    QVariantList marks() const;

    /// Gives a line a condition.
    void setCondition(int line, Condition condition);
    /// Gives a line the next condition, or none after the last.
    Q_INVOKABLE void next(int line);
    /// A sign for the condition of a line; empty for none.
    Q_INVOKABLE QString sign(int line) const;
    /// Takes all conditions away.
    Q_INVOKABLE void clear();

    /// More marks are not kept; that of what stops the courses is, until they stop.
    static constexpr std::size_t c_mostMarks = 100;

Q_SIGNALS:
    void conditionsChanged();
    void modeChanged();
    void counted();
    void marksMoved();

private:
    /// What is to stop the courses, and when.
    struct Stop
    {
        qint64 causeUs;
        qint64 dueUs;
    };

    bool isHigh(int line, const LineLevel& level) const;
    bool levelsFit(int except, const LineLevel& level) const;
    bool isEdge(int line, const LineLevel& before, const LineLevel& level) const;
    void look(int line, const LineLevel& before, const LineLevel& level);
    void tell();
    void stopWhenDue();
    void startAnew();

    LinesModel* const m_lines;
    CourseView* const m_view;
    QHash<int, Condition> m_conditions;
    QString m_mode = QStringLiteral("around");
    int m_count = 0;
    bool m_fit = false; ///< the levels fitted when a line changed last
    std::deque<qint64> m_times;
    bool m_happened = false; ///< and it is not told yet
    std::optional<Stop> m_stop;
};
