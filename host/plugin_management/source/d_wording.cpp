#include <plugin_management/d_wording.h>

DWording wording(const char* source)
{
    return DWording::told(QString::fromUtf8(source));
}

struct DWording::Content
{
    QString source;
    QVector<DWording> arguments;
    bool isName = false;
};

DWording::DWording(const Content& content)
    : m_content(std::make_shared<const Content>(content))
{}

const DWording::Content& DWording::content() const
{
    static const Content nothing;
    return m_content != nullptr ? *m_content : nothing;
}

DWording DWording::told(const QString& text)
{
    return DWording({text, {}, false});
}

DWording DWording::name(const QString& name)
{
    return DWording({name, {}, true});
}

DWording DWording::withArguments(const QVector<DWording>& arguments) const
{
    return DWording({content().source, content().arguments + arguments, content().isName});
}

bool DWording::isEmpty() const
{
    return content().source.isEmpty();
}

QString DWording::english() const
{
    return in([](const QString& source) { return source; });
}

QString DWording::in(const Translation& translation) const
{
    if (content().isName) {
        return content().source;
    }
    const QVector<DWording>& arguments = content().arguments;
    const QString text = translation(content().source);
    QString filled;
    for (int place = 0; place < text.size(); ++place) {
        const int number = text.at(place) == QLatin1Char('%') ? text.midRef(place + 1, 1).toInt() : 0;
        if (number < 1 || number > arguments.size()) {
            filled += text.at(place);
        } else {
            filled += arguments.at(number - 1).in(translation);
            ++place;
        }
    }
    return filled;
}

DWording DWording::withNames(const std::function<QString(const QString& name)>& change) const
{
    Content changed = content();
    if (changed.isName) {
        changed.source = change(changed.source);
    }
    for (DWording& argument : changed.arguments) {
        argument = argument.withNames(change);
    }
    return DWording(changed);
}

bool DWording::operator==(const DWording& other) const
{
    const Content& ours = content();
    const Content& theirs = other.content();
    return &ours == &theirs || (ours.isName == theirs.isName && ours.source == theirs.source &&
                                ours.arguments == theirs.arguments);
}
