#include "config_object.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <cmath>

namespace {

/// How a value stands in the file, cut where it is long.
QString asWritten(const QJsonValue& value)
{
    constexpr int longest = 40;
    if (value.isUndefined()) {
        return QStringLiteral("nothing");
    }
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    const QString text = QString::fromUtf8(list.mid(1, list.size() - 2));
    return text.size() > longest ? text.left(longest) + QStringLiteral("…") : text;
}

/// text in one line that a terminal takes as text: control characters stand as JSON writes them.
QString inOneLine(const QString& text)
{
    QString line;
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control) {
            line += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            line += character;
        }
    }
    return line;
}

} // namespace

void ConfigProblems::add(const QString& entry, const QString& text)
{
    Problem problem;
    problem.text = inOneLine(text);
    problem.file = m_file;
    problem.entry = inOneLine(entry);
    m_all.append(problem);
}

ConfigObject::ConfigObject(const QJsonObject& object, const QString& place, ConfigProblems* problems)
    : m_object(object)
    , m_place(place)
    , m_problems(problems)
{}

bool ConfigObject::has(const QString& key) const
{
    return m_object.contains(key);
}

QString ConfigObject::placeOf(const QString& key) const
{
    const QString shown = key.isEmpty() ? QStringLiteral("\"\"") : key;
    return m_place.isEmpty() ? shown : m_place + QLatin1Char('.') + shown;
}

void ConfigObject::addProblem(const QString& key, const QString& text) const
{
    m_problems->add(placeOf(key), text);
}

QString ConfigObject::quoted(const QString& key) const
{
    return asWritten(m_object.value(key));
}

void ConfigObject::allowOnly(const QStringList& keys) const
{
    const QStringList found = m_object.keys();
    for (const QString& key : found) {
        if (!keys.contains(key)) {
            addProblem(
                key,
                QStringLiteral("unknown entry, expected one of: %1").arg(keys.join(QStringLiteral(", "))));
        }
    }
}

QString ConfigObject::text(const QString& key) const
{
    QString text = m_object.value(key).toString();
    if (text.isEmpty()) {
        addProblem(key, QStringLiteral("expected a text, found %1").arg(quoted(key)));
    }
    return text;
}

QString ConfigObject::textOr(const QString& key, const QString& fallback) const
{
    return has(key) ? text(key) : fallback;
}

bool ConfigObject::flagOr(const QString& key, bool fallback) const
{
    if (has(key) && !m_object.value(key).isBool()) {
        addProblem(key, QStringLiteral("expected true or false, found %1").arg(quoted(key)));
    }
    return m_object.value(key).toBool(fallback);
}

int ConfigObject::numberOr(const QString& key, int lowest, int highest, int fallback) const
{
    if (!has(key)) {
        return fallback;
    }
    const QJsonValue value = m_object.value(key);
    const double number = value.toDouble();
    if (!value.isDouble() || std::trunc(number) != number || number < lowest || number > highest) {
        addProblem(key, QStringLiteral("expected a whole number from %1 to %2, found %3")
                            .arg(lowest)
                            .arg(highest)
                            .arg(quoted(key)));
        return fallback;
    }
    return static_cast<int>(number);
}

int ConfigObject::choiceOr(const QString& key, const QStringList& choices, int fallback) const
{
    if (!has(key)) {
        return fallback;
    }
    const int choice = choices.indexOf(m_object.value(key).toString());
    if (choice < 0) {
        addProblem(key, QStringLiteral("expected one of \"%1\", found %2")
                            .arg(choices.join(QStringLiteral("\", \"")), quoted(key)));
        return fallback;
    }
    return choice;
}

ConfigObject ConfigObject::object(const QString& key) const
{
    const QJsonValue value = m_object.value(key);
    if (!value.isObject()) {
        addProblem(key, QStringLiteral("expected an object, found %1").arg(quoted(key)));
    }
    return ConfigObject(value.toObject(), placeOf(key), m_problems);
}

std::vector<ConfigObject> ConfigObject::objects(const QString& key) const
{
    std::vector<ConfigObject> objects;
    if (!has(key)) {
        return objects;
    }
    if (!m_object.value(key).isArray()) {
        addProblem(key, QStringLiteral("expected a list, found %1").arg(quoted(key)));
    }
    const QJsonArray elements = m_object.value(key).toArray();
    for (int index = 0; index < elements.size(); ++index) {
        const QJsonValue element = elements.at(index);
        const QString place = QStringLiteral("%1[%2]").arg(placeOf(key)).arg(index);
        if (!element.isObject()) {
            m_problems->add(place, QStringLiteral("expected an object, found %1").arg(asWritten(element)));
        }
        objects.emplace_back(element.toObject(), place, m_problems);
    }
    return objects;
}
