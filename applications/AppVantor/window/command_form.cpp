#include "command_form.h"

#include "order_log_model.h"
#include "texts.h"

#include <configuration/channel_orders.h>
#include <configuration/json_text.h>
#include <configuration/value_text.h>

#include <algorithm>

namespace {

/// Without these an order does nothing.
bool isNeeded(const DDeclaration& parameter)
{
    const bool tellsWhat =
        parameter.name == QLatin1String("channel") || parameter.name == QLatin1String("state");
    return tellsWhat && parameter.defaultValue.toString().isEmpty();
}

} // namespace

CommandForm::CommandForm(OrderLogModel* log, QObject* parent)
    : QAbstractListModel(parent)
    , m_log(log)
{
    check();
}

int CommandForm::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant CommandForm::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const DDeclaration& parameter = m_declared.parameters.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return parameter.name;
    case DescriptionRole:
        return textOr(QStringLiteral("parameter_") + parameter.name, parameter.description);
    case EditorRole:
        return editor(parameter);
    case DefaultTextRole:
        return parameter.defaultValue.isValid() ? valueText(parameter.defaultValue) : QString();
    case Qt::EditRole:
    case TextRole:
        return m_texts.at(index.row());
    case ChoicesRole:
        return choices(parameter);
    case UsedRole:
        return isUsed(index.row());
    case ProblemRole:
        return m_rowProblems.value(index.row());
    default:
        return QVariant();
    }
}

bool CommandForm::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const bool valid = checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid);
    if (!valid || (role != TextRole && role != Qt::EditRole)) {
        return false;
    }
    const QString text = value.toString();
    if (text != m_texts.at(index.row())) {
        m_texts[index.row()] = text;
        Q_EMIT dataChanged(index, index, {TextRole, Qt::EditRole});
        check();
        Q_EMIT dataChanged(this->index(0), this->index(count() - 1), {UsedRole, ProblemRole});
    }
    return true;
}

QHash<int, QByteArray> CommandForm::roleNames() const
{
    return {{NameRole, "name"},     {DescriptionRole, "description"},
            {EditorRole, "editor"}, {DefaultTextRole, "defaultText"},
            {TextRole, "text"},     {ChoicesRole, "choices"},
            {UsedRole, "used"},     {ProblemRole, "problem"}};
}

QObject* CommandForm::tool() const
{
    return m_tool;
}

void CommandForm::setTool(QObject* tool)
{
    auto* newTool = qobject_cast<DTool*>(tool);
    if (newTool == m_tool && newTool != nullptr) { // null may stand for one that is gone
        return;
    }
    m_tool = newTool;
    Q_EMIT toolChanged();
    const QStringList names = commands();
    setCommand(names.contains(command()) ? command() : names.value(0));
}

QStringList CommandForm::commands() const
{
    QStringList names;
    const QVector<DCommandDescription> all = declared();
    for (const DCommandDescription& one : all) {
        names.append(one.name);
    }
    return names;
}

QVector<DCommandDescription> CommandForm::declared() const
{
    return m_tool.isNull() ? QVector<DCommandDescription>() : m_tool->orderables();
}

void CommandForm::setCommand(const QString& command)
{
    const QVector<DCommandDescription> all = declared();
    const auto found = std::find_if(all.cbegin(), all.cend(),
                                    [&](const DCommandDescription& one) { return one.name == command; });
    // What was entered for a parameter stays for the parameter of that name of the next command.
    QMap<QString, QString> entered;
    for (int row = 0; row < count(); ++row) {
        entered.insert(m_declared.parameters.at(row).name, m_texts.at(row));
    }
    beginResetModel();
    m_wasTried = false;
    m_declared = found != all.cend() ? *found : DCommandDescription();
    m_sections.clear();
    m_texts.clear();
    for (const DDeclaration& parameter : m_declared.parameters) {
        m_texts.append(entered.value(parameter.name));
    }
    check();
    endResetModel();
    Q_EMIT commandChanged();
    Q_EMIT problemChanged();
}

void CommandForm::setSections(const QString& sections)
{
    if (sections != m_sections) {
        m_sections = sections;
        Q_EMIT problemChanged();
        check();
    }
}

void CommandForm::setText(int row, const QString& text)
{
    setData(index(row), text, TextRole);
}

void CommandForm::run()
{
    m_wasTried = true;
    check();
    if (m_problem.isEmpty()) {
        m_wasTried = false;
        QString problem;
        m_log->run(m_tool, command(), arguments(&problem));
    } else if (count() > 0) {
        Q_EMIT dataChanged(index(0), index(count() - 1), {ProblemRole});
    }
}

QVariantMap CommandForm::arguments(QString* problem) const
{
    QVariantMap values;
    if (!m_sections.trimmed().isEmpty()) {
        QVector<JsonMistake> mistakes;
        const QByteArray text = m_sections.toUtf8();
        const std::optional<JsonNode> json = readJson(text, &mistakes);
        if (!mistakes.isEmpty()) {
            const int before = QString::fromUtf8(text.left(mistakes.first().offset)).size();
            *problem = qtTrId("form_sections_broken").arg(before + 1);
            return QVariantMap();
        }
        if (json->type != JsonNode::Type::Object) {
            *problem = qtTrId("form_sections_expected");
            return QVariantMap();
        }
        values = json->toVariant().toMap();
    }
    for (int row = 0; row < count(); ++row) {
        const QString& text = m_texts.at(row);
        if (!text.isEmpty() && isUsed(row)) {
            values.insert(m_declared.parameters.at(row).name, text);
        }
    }
    return values;
}

QString CommandForm::editor(const DDeclaration& parameter) const
{
    if (parameter.typeTag == QLatin1String("bool")) {
        return QStringLiteral("bool");
    }
    if (parameter.typeTag == QLatin1String("ui16") || parameter.typeTag == QLatin1String("int")) {
        return QStringLiteral("number");
    }
    if (parameter.name == QLatin1String("channel")) {
        return QStringLiteral("channel");
    }
    return choices(parameter).isEmpty() ? QStringLiteral("text") : QStringLiteral("choice");
}

QStringList CommandForm::choices(const DDeclaration& parameter) const
{
    return parameter.name == QLatin1String("channel") ? channels() : knownWords(parameter.name);
}

/// Beside a state that does not use it a parameter does nothing.
bool CommandForm::isUsed(int row) const
{
    const auto isState = [](const DDeclaration& parameter) {
        return parameter.name == QLatin1String("state");
    };
    const auto state = std::find_if(m_declared.parameters.cbegin(), m_declared.parameters.cend(), isState);
    return state == m_declared.parameters.cend() ||
           countsWith(m_texts.at(static_cast<int>(state - m_declared.parameters.cbegin())),
                      m_declared.parameters.at(row).name);
}

QString CommandForm::problemOf(int row) const
{
    const QString& text = m_texts.at(row);
    const DDeclaration& parameter = m_declared.parameters.at(row);
    if (text.isEmpty()) {
        return m_wasTried && isNeeded(parameter) ? qtTrId("form_needed") : QString();
    }
    if (!isUsed(row)) {
        return QString();
    }
    if (parameter.name == QLatin1String("channel") && !channels().contains(text)) {
        return qtTrId("form_no_channel").arg(text);
    }
    QVariantMap alone = {{parameter.name, text}};
    return worded(m_tool->checkInvocation(command(), &alone).text);
}

QStringList CommandForm::channels() const
{
    QStringList ids;
    if (!m_tool.isNull()) {
        for (const DToolChannel& channel : m_tool->channels()) {
            ids.append(channel.id);
        }
    }
    return ids;
}

void CommandForm::check()
{
    QString problem;
    m_rowProblems.clear();
    if (m_tool.isNull() || command().isEmpty()) {
        problem = qtTrId("form_no_command");
    } else {
        QVariantMap values = arguments(&problem);
        if (problem.isEmpty()) {
            problem = worded(m_tool->checkInvocation(command(), &values).text);
        }
        for (int row = 0; row < count(); ++row) {
            m_rowProblems.append(problemOf(row));
            problem = problem.isEmpty() ? m_rowProblems.constLast() : problem;
        }
    }
    if (problem != m_problem) {
        m_problem = problem;
        Q_EMIT problemChanged();
    }
}

QString CommandForm::description() const
{
    return textOr(QStringLiteral("command_") + command(), m_declared.description);
}
