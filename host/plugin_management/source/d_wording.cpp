#include <plugin_management/d_wording.h>

DWording wording(const char* source)
{
    return DWording::told(QString::fromUtf8(source));
}

DWording DWording::told(const QString& text)
{
    DWording wording;
    wording.m_source = text;
    return wording;
}

DWording DWording::name(const QString& name)
{
    DWording wording = told(name);
    wording.m_isName = true;
    return wording;
}

QString DWording::english() const
{
    return in([](const QString& source) { return source; });
}

QString DWording::in(const Translation& translation) const
{
    if (m_isName) {
        return m_source;
    }
    const QString text = translation(m_source);
    QString filled;
    for (int place = 0; place < text.size(); ++place) {
        const int number = text.at(place) == QLatin1Char('%') ? text.midRef(place + 1, 1).toInt() : 0;
        if (number < 1 || number > m_arguments.size()) {
            filled += text.at(place);
        } else {
            filled += m_arguments.at(number - 1).in(translation);
            ++place;
        }
    }
    return filled;
}

DWording DWording::withNames(const std::function<QString(const QString& name)>& change) const
{
    DWording changed(*this);
    if (m_isName) {
        changed.m_source = change(m_source);
    }
    for (DWording& argument : changed.m_arguments) {
        argument = argument.withNames(change);
    }
    return changed;
}

bool DWording::operator==(const DWording& other) const
{
    return m_isName == other.m_isName && m_source == other.m_source && m_arguments == other.m_arguments;
}
