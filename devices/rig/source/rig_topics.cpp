#include <devices/rig_topics.h>

#include <QUrl>

namespace {

const QByteArray& root()
{
    static const QByteArray text = QByteArrayLiteral("appvantor/1/");
    return text;
}

QByteArray encoded(const QString& name)
{
    return QUrl::toPercentEncoding(name);
}

} // namespace

RigTopics::RigTopics(const QString& rig)
    : m_root(root() + encoded(rig) + '/')
{}

QByteArray RigTopics::line(const QString& name) const
{
    return m_root + "line/" + encoded(name);
}

bool RigTopics::mayAnswer(const QByteArray& topic) const
{
    const bool hasPattern = topic.contains('+') || topic.contains('#') || topic.contains('\0');
    return !topic.isEmpty() && !hasPattern && !topic.startsWith('$') &&
           (!topic.startsWith("appvantor/") || topic.startsWith(m_root + "answer/"));
}

QString RigTopics::lineOfSet(const QByteArray& topic) const
{
    const int start = m_root.size() + static_cast<int>(qstrlen("line/"));
    const int end = topic.size() - static_cast<int>(qstrlen("/set"));
    return QUrl::fromPercentEncoding(topic.mid(start, end - start));
}

QByteArray RigTopics::ofAnyRig(const char* name)
{
    return root() + "+/" + name;
}

QString RigTopics::rigOf(const QByteArray& topic)
{
    const int end = topic.indexOf('/', root().size());
    return topic.startsWith(root()) && end > 0
               ? QUrl::fromPercentEncoding(topic.mid(root().size(), end - root().size()))
               : QString();
}
