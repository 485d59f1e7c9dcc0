#pragma once

#include "command_form.h"
#include "course_export.h"
#include "course_trigger.h"
#include "course_view.h"
#include "device_clock.h"
#include "line_filter.h"
#include "lines_model.h"
#include "order_events_model.h"
#include "order_log_model.h"
#include "page_reads_model.h"
#include "tools_model.h"
#include "trace_recorder.h"
#include "window_options.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QSet>

#include <memory>

class Bench;
class ConfigurationChoice;
class PagePanel;
class QQuickWindow;
class ScriptRun;

/// What a window shows: a root item with a panel somewhere in it, in an engine of its own.
class Scene
{
public:
    virtual ~Scene();
    Q_DISABLE_COPY(Scene)

    QQmlEngine& engine() { return m_engine; }
    /// The root item; it takes the size of its window.
    QQuickItem& root() const { return *m_root; }
    /// The panel with the plugin's page.
    PagePanel& panel();
    /// Makes the root item the content of window, as large as it is.
    void putInto(QQuickWindow& window);

protected:
    Scene() = default;

    /// Makes the root item from a file of the window's QML folder.
    void load(const QString& file, QVariantMap properties, WindowOptions::Theme theme);
    /// Takes the root item away; what it shows may go then.
    void unload();

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
};

/// The bench window with its models.
class BenchScene : public Scene
{
public:
    /// device, tools, choice and script must outlive the scene; without choice no other bench can be chosen,
    /// without script there are none.
    BenchScene(LineDevice* device, const QVector<DTool*>& tools, WindowOptions::Theme theme,
               ConfigurationChoice* choice = nullptr, ScriptRun* script = nullptr);
    /// The same with all tools of a bench.
    BenchScene(const Bench& bench, WindowOptions::Theme theme, ConfigurationChoice* choice = nullptr,
               ScriptRun* script = nullptr);
    ~BenchScene() override;

    LinesModel& lines() { return m_lines; }
    OrderLogModel& orders() { return m_orders; }
    PageReadsModel& pageReads() { return m_pageReads; }
    CommandForm& form() { return m_form; }
    DeviceClock& clock() { return m_clock; }
    CourseView& courses() { return m_courses; }
    CourseTrigger& trigger() { return m_trigger; }
    LineFilter& lineFilter() { return m_filter; }

    /// How the user has arranged the window, by names: panes, rows and lines.
    QVariantMap arrangement() const;
    /// Arranges the window so; what is not named, or makes no sense, stays.
    void arrange(const QVariantMap& arrangement);
    /// Whether what the tools drive is switched off when the bench is left.
    void setOffAtEnd(bool off) { m_offAtEnd = off; }
    /// What would end, stay on or go off if the bench were left, for people; empty for nothing.
    QString reasonToStay() const;
    /// That nothing would stay on then, for people.
    QString nothingStaysOn() const;

private:
    QSet<QString> drivenLines() const;
    QString outputsAtEnd() const;

    DeviceClock m_clock;
    ToolsModel m_tools;
    LinesModel m_lines;
    CourseView m_courses;
    CourseTrigger m_trigger;
    LineFilter m_filter;
    CourseExport m_export;
    TraceRecorder m_recorder;
    OrderLogModel m_orders;
    OrderEventsModel m_orderEvents;
    PageReadsModel m_pageReads;
    CommandForm m_form;
    const ScriptRun* const m_script;
    bool m_offAtEnd = false;
};

/// The maintenance page of one tool alone.
class PanelScene : public Scene
{
public:
    /// tool must outlive the scene.
    PanelScene(DTool* tool, WindowOptions::Theme theme);
    ~PanelScene() override;
};
