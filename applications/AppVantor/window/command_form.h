#pragma once

#include <plugin_management/d_tool.h>

#include <QAbstractListModel>
#include <QPointer>

class OrderLogModel;

/// The form for one of a tool's commands or stop names: a row for each declared parameter, with the text that
/// was entered. A parameter without a text is left out, so that its default counts, and so is one that does
/// nothing beside the state that was entered.
class CommandForm : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(CommandForm)
    Q_PROPERTY(QObject* tool READ tool WRITE setTool NOTIFY toolChanged)
    Q_PROPERTY(QStringList commands READ commands NOTIFY toolChanged)
    Q_PROPERTY(QString command READ command WRITE setCommand NOTIFY commandChanged)
    Q_PROPERTY(QString description READ description NOTIFY commandChanged)
    Q_PROPERTY(int count READ count NOTIFY commandChanged)
    /// Lists and maps that reach the command beside its parameters, as one JSON object.
    Q_PROPERTY(QString sections READ sections WRITE setSections NOTIFY problemChanged)
    /// True when the command declares no parameters, so that only sections reach it.
    Q_PROPERTY(bool takesSections READ takesSections NOTIFY commandChanged)
    /// Why the command cannot be run with what was entered; empty when it can.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

public:
    enum Role
    {
        NameRole = Qt::UserRole,
        DescriptionRole,
        EditorRole,
        DefaultTextRole,
        TextRole,
        ChoicesRole,
        UsedRole,   ///< false of a parameter that does nothing beside the state that was entered
        ProblemRole ///< what is wrong with the text; empty for nothing
    };

    /// Orders are run in log, which must outlive the form.
    explicit CommandForm(OrderLogModel* log, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QHash<int, QByteArray> roleNames() const override;

    QObject* tool() const;
    void setTool(QObject* tool);
    QStringList commands() const;
    QString command() const { return m_declared.name; }
    void setCommand(const QString& command);
    QString description() const;
    int count() const { return static_cast<int>(m_declared.parameters.size()); }
    bool takesSections() const { return !command().isEmpty() && count() == 0; }
    QString sections() const { return m_sections; }
    void setSections(const QString& sections);
    QString problem() const { return m_problem; }

    /// Enters the text of a row.
    Q_INVOKABLE void setText(int row, const QString& text);
    /// Runs the command with what was entered; does nothing while there is a problem. A channel or a state
    /// that is missing is one from the first try on.
    Q_INVOKABLE void run();

Q_SIGNALS:
    void toolChanged();
    void commandChanged();
    void problemChanged();

private:
    QVector<DCommandDescription> declared() const;
    QVariantMap arguments(QString* problem) const;
    QString editor(const DDeclaration& parameter) const;
    QStringList choices(const DDeclaration& parameter) const;
    QStringList channels() const;
    bool isUsed(int row) const;
    QString problemOf(int row) const;
    void check();

    OrderLogModel* m_log;
    QPointer<DTool> m_tool;
    DCommandDescription m_declared;
    QStringList m_texts;
    QString m_sections;
    QString m_problem;
    QStringList m_rowProblems;
    bool m_wasTried = false; ///< to run it, in vain: from then on what is missing is told
};
