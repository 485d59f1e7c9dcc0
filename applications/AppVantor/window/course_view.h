#pragma once

#include "course.h"
#include "lines_model.h"
#include "time_axis.h"

#include <QVariant>

#include <array>
#include <optional>

/// The part of time that the courses of all lines show, and what is measured in it. It follows the present,
/// which is at its right edge then, until it is moved; it never reaches beyond the present. Places in it are
/// shares of its width, 0 on the left and 1 on the right.
class CourseView : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CourseView)
    /// Time at the left edge, in microseconds on the steady clock.
    Q_PROPERTY(double fromUs READ fromUs NOTIFY moved)
    /// Time from the left to the right edge, in microseconds.
    Q_PROPERTY(double spanUs READ spanUs NOTIFY changed)
    /// True while it follows the present.
    Q_PROPERTY(bool live READ isLive NOTIFY changed)
    /// Width of a course, in device-independent pixels.
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY changed)
    /// Columns in which a course is drawn, to each of these.
    Q_PROPERTY(double pixelRatio READ pixelRatio WRITE setPixelRatio NOTIFY changed)
    /// Where the pointer is, a share of the width; negative while it is elsewhere.
    Q_PROPERTY(double pointer READ pointer WRITE setPointer NOTIFY pointed)
    /// What is drawn there: the time in microseconds; undefined while the pointer is elsewhere.
    Q_PROPERTY(QVariant pointedUs READ pointedUs NOTIFY pointed)
    /// That time beside the present or what was it; empty while the pointer is elsewhere.
    Q_PROPERTY(QString pointedText READ pointedText NOTIFY pointed)
    /// The marks of the time axis: maps with "share" and "text", the time beside the present, or where the
    /// view does not follow it any more, beside the present of that moment.
    Q_PROPERTY(QVariantList marks READ marks NOTIFY changed)
    /// The cursors that are set: maps with "number" and "share", which may be outside of the view.
    Q_PROPERTY(QVariantList cursors READ cursors NOTIFY cursorsChanged)
    /// The time between both cursors and its inverse, or which one is set, or nothing.
    Q_PROPERTY(QString cursorsText READ cursorsText NOTIFY cursorsChanged)

public:
    /// lines must outlive the view.
    explicit CourseView(LinesModel* lines, QObject* parent = nullptr);

    TimeSpan span() const;
    /// The columns in which the courses are drawn: as many as the span has.
    TimeColumns columns() const;
    /// Where timeUs is drawn: the share of the width at which its column of the courses begins.
    double placeOf(qint64 timeUs) const;
    /// What is drawn at share: the time whose level its column of the courses begins with.
    double timeAt(double share) const;
    double fromUs() const { return static_cast<double>(span().fromUs); }
    double spanUs() const { return static_cast<double>(m_span.lengthUs); }
    bool isLive() const { return m_live; }
    double width() const { return m_width; }
    void setWidth(double width);
    double pixelRatio() const { return m_pixelRatio; }
    void setPixelRatio(double ratio);
    double pointer() const { return m_pointer; }
    void setPointer(double share);
    QVariant pointedUs() const;
    QString pointedText() const;
    QVariantList marks() const;
    QVariantList cursors() const;
    QString cursorsText() const;

    /// Shows factor times as much detail, less than 1 for less. What is at share stays there, unless the
    /// view follows the present and share is its right edge, or there is less detail to see: then the right
    /// edge stays.
    Q_INVOKABLE void zoom(double factor, double share);
    /// Moves what is shown to the right, by a share of the width.
    Q_INVOKABLE void pan(double share);
    /// Shows all that is remembered, up to the present.
    Q_INVOKABLE void showAll();
    /// Follows the present, which runs on.
    Q_INVOKABLE void goLive();

    /// What can be said of the level of line at a time in microseconds: how long it lasts, its period,
    /// frequency and duty cycle. Empty where nobody knows the level.
    Q_INVOKABLE QString measureText(int line, double timeUs) const;

    /// Sets the cursor number, 1 or 2, at share, or at an edge of line that is near; line may be -1.
    Q_INVOKABLE void setCursor(int number, double share, int line);
    /// Takes the cursors away.
    Q_INVOKABLE void clearCursors();
    /// What line did between both cursors: its edges, and its least, greatest and mean level. Empty where
    /// there are not both, or nobody knew the level.
    Q_INVOKABLE QString selectionText(int line) const;
    /// The time between both cursors; none where there are not both.
    std::optional<TimeSpan> selection() const;
    /// Holds the view, with timeUs at share of it if the present is that far.
    void showAt(qint64 timeUs, double share);
    /// Moves the cursor that was set last, the first one when there is none, to the next edge of any of these
    /// lines, or to the one before, and shows it. Without such an edge it stays.
    Q_INVOKABLE void stepCursor(const QList<int>& lines, bool forward);

Q_SIGNALS:
    /// Something else than the present has changed.
    void changed();
    /// The left edge is at another time.
    void moved();
    /// The pointer is elsewhere, or something else is under it.
    void pointed();
    void cursorsChanged();

private:
    /// What a line did between both cursors: measured anew only when it has done something else there.
    struct Selected
    {
        const LineHistory* history = nullptr;
        qint64 fromUs = 0; ///< as far back as is remembered
        qint64 toUs = 0;
        quint64 changes = 0; ///< until then
        QString text;
    };

    void follow();
    void hold();
    void show(const TimeSpan& span);
    qint64 presentUs() const { return static_cast<qint64>(m_lines->clock().now()); }
    qint64 earliestUs() const;

    LinesModel* const m_lines;
    TimeSpan m_span{0, 10000000}; ///< its begin counts only while the view does not follow the present
    qint64 m_zeroUs = 0;          ///< likewise: the present when it stopped to
    bool m_live = true;
    double m_width = 0;
    double m_pixelRatio = 1;
    double m_pointer = -1;
    std::array<std::optional<qint64>, 2> m_cursors;
    std::size_t m_activeCursor = 0;
    mutable Selected m_selected; ///< what was measured last
};
