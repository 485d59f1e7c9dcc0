#include "course_trigger.h"

#include <algorithm>
#include <cmath>

CourseTrigger::CourseTrigger(LinesModel* lines, CourseView* view, QObject* parent)
    : QObject(parent)
    , m_lines(lines)
    , m_view(view)
{
    connect(lines, &LinesModel::lineRecorded, this, &CourseTrigger::look);
    connect(&lines->clock(), &DeviceClock::ticked, this, &CourseTrigger::tell);
    connect(&lines->clock(), &DeviceClock::ticked, this, &CourseTrigger::stopWhenDue);
    connect(&lines->clock(), &DeviceClock::runningChanged, this, [this] { m_stop.reset(); });
    connect(view, &CourseView::moved, this, [this] {
        if (!m_times.empty()) {
            Q_EMIT marksMoved();
        }
    });
}

QString CourseTrigger::text() const
{
    QList<int> lines = m_conditions.keys();
    std::sort(lines.begin(), lines.end());
    QStringList conditions;
    for (const int line : qAsConst(lines)) {
        conditions.append(m_lines->index(line).data(LinesModel::NameRole).toString() + QLatin1Char(' ') +
                          sign(line));
    }
    return conditions.join(QStringLiteral(", "));
}

void CourseTrigger::setMode(const QString& mode)
{
    if (mode != m_mode) {
        m_mode = mode;
        m_stop.reset();
        Q_EMIT modeChanged();
    }
}

QVariantList CourseTrigger::marks() const
{
    QVariantList shares;
    std::optional<double> lastPixel;
    for (const qint64 timeUs : m_times) {
        const double share = m_view->placeOf(timeUs);
        const double pixel = std::round(share * m_view->width());
        if (share >= 0 && share <= 1 && pixel != lastPixel) {
            shares.append(share);
            lastPixel = pixel;
        }
    }
    return shares;
}

void CourseTrigger::setCondition(int line, Condition condition)
{
    if (m_lines->history(line) == nullptr || condition == m_conditions.value(line, Condition::None)) {
        return;
    }
    if (condition == Condition::None) {
        m_conditions.remove(line);
    } else {
        m_conditions.insert(line, condition);
    }
    startAnew();
}

void CourseTrigger::next(int line)
{
    const int next = static_cast<int>(m_conditions.value(line, Condition::None)) + 1;
    setCondition(line, static_cast<Condition>(next % static_cast<int>(Condition::Count)));
}

QString CourseTrigger::sign(int line) const
{
    switch (m_conditions.value(line, Condition::None)) {
    case Condition::Rising:
        return QStringLiteral("\u2191");
    case Condition::Falling:
        return QStringLiteral("\u2193");
    case Condition::Either:
        return QStringLiteral("\u2195");
    case Condition::High:
        return QStringLiteral("1");
    case Condition::Low:
        return QStringLiteral("0");
    default:
        return QString();
    }
}

void CourseTrigger::clear()
{
    m_conditions.clear();
    startAnew();
}

/// What lines do before it is of no interest.
void CourseTrigger::startAnew()
{
    m_count = 0;
    m_times.clear();
    m_stop.reset();
    m_fit = levelsFit(-1, {});
    Q_EMIT conditionsChanged();
    Q_EMIT counted();
    Q_EMIT marksMoved();
}

bool CourseTrigger::isHigh(int line, const LineLevel& level) const
{
    return level.level * 2 > m_lines->highestLevel(line);
}

/// The line except has this level; the history of the others ends with theirs.
bool CourseTrigger::levelsFit(int except, const LineLevel& level) const
{
    for (auto entry = m_conditions.cbegin(); entry != m_conditions.cend(); ++entry) {
        if (*entry != Condition::High && *entry != Condition::Low) {
            continue;
        }
        const LineLevel present = entry.key() == except ? level : m_lines->present(entry.key());
        if (!present.known || isHigh(entry.key(), present) != (*entry == Condition::High)) {
            return false;
        }
    }
    return true;
}

bool CourseTrigger::isEdge(int line, const LineLevel& before, const LineLevel& level) const
{
    if (!before.known || !level.known || isHigh(line, before) == isHigh(line, level)) {
        return false;
    }
    const Condition condition = m_conditions.value(line, Condition::None);
    return condition == Condition::Either ||
           condition == (isHigh(line, level) ? Condition::Rising : Condition::Falling);
}

void CourseTrigger::look(int line, const LineLevel& before, const LineLevel& level)
{
    if (!m_conditions.contains(line)) {
        return;
    }
    const bool waitsForEdge =
        std::any_of(m_conditions.cbegin(), m_conditions.cend(), [](Condition condition) {
            return condition != Condition::High && condition != Condition::Low;
        });
    const bool fitted = std::exchange(m_fit, levelsFit(line, level));
    const bool held = !m_lines->clock().isRunning();
    if (held || !m_fit || (waitsForEdge ? !isEdge(line, before, level) : fitted)) {
        return;
    }
    ++m_count;
    m_times.push_back(level.sinceUs);
    if (m_times.size() > c_mostMarks) {
        const bool stays = m_stop && m_stop->causeUs == m_times.front();
        m_times.erase(m_times.begin() + (stays ? 1 : 0));
    }
    if (!m_stop && m_mode != QLatin1String("none")) {
        const auto spanUs = static_cast<qint64>(m_view->spanUs());
        const qint64 laterUs =
            m_mode == QLatin1String("from") ? spanUs : (m_mode == QLatin1String("around") ? spanUs / 2 : 0);
        m_stop = {level.sinceUs, level.sinceUs + laterUs};
    }
    m_happened = true;
    m_lines->clock().want();
}

void CourseTrigger::tell()
{
    if (std::exchange(m_happened, false)) {
        Q_EMIT counted();
        Q_EMIT marksMoved();
    }
}

void CourseTrigger::stopWhenDue()
{
    DeviceClock& clock = m_lines->clock();
    if (!m_stop || !clock.isRunning()) {
        return;
    }
    if (clock.scheduler().now() < m_stop->dueUs) {
        clock.want();
        return;
    }
    const qint64 rightUs = std::exchange(m_stop, std::nullopt)->dueUs;
    clock.setRunning(false);
    m_view->showAt(rightUs, 1);
}
