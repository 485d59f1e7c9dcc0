#include "channel_names.h"

#include "channel_value.h"

ChannelNames::ChannelNames(const DTool& tool)
    : m_tool(tool)
{}

DWording ChannelNames::define(const QStringList& words)
{
    const QString text = words.join(QLatin1Char(' '));
    const QString name = text.section(QLatin1Char('='), 0, 0).trimmed();
    const QString channel = text.section(QLatin1Char('='), 1).trimmed();
    if (name.isEmpty() || name.contains(QLatin1Char(' ')) || channel.isEmpty()) {
        return wording(R"(expected "let NAME = CHANNEL")");
    }
    DWording problem;
    const DToolChannel* meant = find(channel, &problem);
    if (meant == nullptr) {
        return problem;
    }
    if (all().contains(name)) {
        return wording(R"("%1" stands for the channel %2 already)").arg(name, this->channel(name));
    }
    m_given.insert(name, meant->id);
    return {};
}

QString ChannelNames::channel(const QString& name) const
{
    return m_given.value(name, name);
}

const DToolChannel* ChannelNames::find(const QString& name, DWording* problem) const
{
    return findChannel(m_tool.channels(), channel(name), problem);
}

QStringList ChannelNames::all() const
{
    QStringList names = m_given.keys();
    for (const DToolChannel& channel : m_tool.channels()) {
        names.append(channel.id);
    }
    return names;
}
