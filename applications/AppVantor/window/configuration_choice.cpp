#include "configuration_choice.h"

#include "files.h"
#include "texts.h"
#include "window_memory.h"

#include <QDir>
#include <QFileInfo>

ConfigurationChoice::ConfigurationChoice(BenchSource* source, const QString& current, bool reloadable,
                                         QObject* parent)
    : QObject(parent)
    , m_source(source)
    , m_current(current)
    , m_reloadable(reloadable)
{}

QString ConfigurationChoice::folder() const
{
    return m_current.isEmpty() ? Files().documentFile(QString())
                               : QFileInfo(m_current).absolutePath() + QLatin1Char('/');
}

QStringList ConfigurationChoice::recent() const
{
    QStringList files = WindowMemory::recentFiles();
    files.removeAll(QFileInfo(m_current).canonicalFilePath());
    return files;
}

void ConfigurationChoice::open(const QString& file)
{
    make(QFileInfo(Files().path(file)).absoluteFilePath());
}

void ConfigurationChoice::reload()
{
    make(m_current);
}

void ConfigurationChoice::make(const QString& file)
{
    m_bench.reset();
    QStringList mistakes;
    QVector<Problem> problems;
    const QFileInfo info(file);
    if (info.exists() && !info.isFile()) { // one could wait for a pipe for ever
        mistakes.append(qtTrId("open_no_file").arg(file));
    } else {
        m_bench = m_source->make(file, &problems);
    }
    for (const Problem& problem : qAsConst(problems)) {
        mistakes.append(problem.toString(worded(problem.text)));
    }
    m_chosen = file;
    m_mistakes = mistakes;
    Q_EMIT mistakesChanged();
    if (mistakes.isEmpty()) {
        Q_EMIT ready();
    } else {
        Q_EMIT failed();
    }
}
