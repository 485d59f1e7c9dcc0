#include "config_object.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace {

/// How a value stands in the file, cut where it is long.
DWording asWritten(const JsonNode* node)
{
    constexpr int longest = 40;
    if (node == nullptr) {
        return wording("nothing");
    }
    const QJsonArray list = {QJsonValue::fromVariant(node->toVariant())};
    const QByteArray json = QJsonDocument(list).toJson(QJsonDocument::Compact);
    const QString text = QString::fromUtf8(json.mid(1, json.size() - 2));
    return DWording::name(text.size() > longest ? text.left(longest) + QStringLiteral("…") : text);
}

} // namespace

ConfigProblems::ConfigProblems(const QString& file, const QByteArray& text)
    : m_file(file)
    , m_lineStarts{0}
{
    for (int end = text.indexOf('\n'); end >= 0; end = text.indexOf('\n', end + 1)) {
        m_lineStarts.push_back(end + 1);
    }
}

void ConfigProblems::add(const QString& entry, int offset, const DWording& text)
{
    Problem problem;
    problem.text = text.withNames(inOneLine);
    problem.file = m_file;
    problem.entry = inOneLine(entry);
    const auto next = std::upper_bound(m_lineStarts.cbegin(), m_lineStarts.cend(), offset);
    problem.line = static_cast<int>(next - m_lineStarts.cbegin());
    problem.column = offset - *(next - 1) + 1;
    m_all.append(problem);
}

ConfigObject::ConfigObject(const JsonNode& node, const QString& entry, ConfigProblems* problems)
    : m_node(node)
    , m_entry(entry)
    , m_problems(problems)
{}

const JsonNode* ConfigObject::find(const QString& key) const
{
    const auto found = m_node.entries.find(key);
    return found != m_node.entries.end() ? &found->second : nullptr;
}

QVariant ConfigObject::value(const QString& key) const
{
    const JsonNode* node = find(key);
    return node != nullptr ? node->scalar : QVariant();
}

QString ConfigObject::entryOf(const QString& key) const
{
    const QString shown = key.isEmpty() ? QStringLiteral("\"\"") : key;
    return m_entry.isEmpty() ? shown : m_entry + QLatin1Char('.') + shown;
}

void ConfigObject::addProblem(const QString& key, const DWording& text) const
{
    m_isSound = false;
    const JsonNode* node = find(key);
    m_problems->add(entryOf(key), node != nullptr ? node->offset : m_node.offset, text);
}

DWording ConfigObject::quoted(const QString& key) const
{
    return asWritten(find(key));
}

void ConfigObject::allowOnly(const QStringList& keys) const
{
    for (const auto& [key, node] : m_node.entries) {
        if (!keys.contains(key)) {
            addProblem(key,
                       wording("unknown entry, expected one of: %1").arg(keys.join(QStringLiteral(", "))));
        }
    }
}

QString ConfigObject::text(const QString& key) const
{
    const QVariant found = value(key);
    if (found.type() != QVariant::String || found.toString().isEmpty()) {
        addProblem(key, wording("expected a text, found %1").arg(quoted(key)));
        return QString();
    }
    return found.toString();
}

QString ConfigObject::textOr(const QString& key, const QString& fallback) const
{
    return has(key) ? text(key) : fallback;
}

bool ConfigObject::flagOr(const QString& key, bool fallback) const
{
    if (has(key) && value(key).type() != QVariant::Bool) {
        addProblem(key, wording("expected true or false, found %1").arg(quoted(key)));
        return fallback;
    }
    return has(key) ? value(key).toBool() : fallback;
}

int ConfigObject::numberOr(const QString& key, int lowest, int highest, int fallback) const
{
    if (!has(key)) {
        return fallback;
    }
    const QVariant found = value(key);
    const bool isNumber =
        found.isValid() && found.type() != QVariant::String && found.type() != QVariant::Bool;
    const double number = found.toDouble();
    if (!isNumber || std::trunc(number) != number || number < lowest || number > highest) {
        addProblem(
            key,
            wording("expected a whole number from %1 to %2, found %3").arg(lowest, highest, quoted(key)));
        return fallback;
    }
    return static_cast<int>(number);
}

int ConfigObject::choice(const QString& key, const QStringList& choices) const
{
    const QVariant found = value(key);
    const int choice = found.type() == QVariant::String ? choices.indexOf(found.toString()) : -1;
    if (choice < 0) {
        addProblem(key, wording(R"(expected one of "%1", found %2)")
                            .arg(choices.join(QStringLiteral("\", \"")), quoted(key)));
    }
    return choice;
}

int ConfigObject::choiceOr(const QString& key, const QStringList& choices, int fallback) const
{
    const int found = has(key) ? choice(key, choices) : -1;
    return found >= 0 ? found : fallback;
}

ConfigObject ConfigObject::object(const QString& key) const
{
    static const JsonNode none;
    const JsonNode* node = find(key);
    if (node == nullptr || node->type != JsonNode::Type::Object) {
        addProblem(key, wording("expected an object, found %1").arg(quoted(key)));
    }
    return ConfigObject(node != nullptr ? *node : none, entryOf(key), m_problems);
}

std::vector<ConfigObject> ConfigObject::objects(const QString& key) const
{
    std::vector<ConfigObject> objects;
    const JsonNode* list = find(key);
    if (list == nullptr) {
        return objects;
    }
    if (list->type != JsonNode::Type::List) {
        addProblem(key, wording("expected a list, found %1").arg(quoted(key)));
    }
    for (const JsonNode& element : list->elements) {
        const QString entry = QStringLiteral("%1[%2]").arg(entryOf(key)).arg(objects.size());
        if (element.type != JsonNode::Type::Object) {
            m_problems->add(entry, element.offset,
                            wording("expected an object, found %1").arg(asWritten(&element)));
        }
        objects.emplace_back(element, entry, m_problems);
    }
    return objects;
}
