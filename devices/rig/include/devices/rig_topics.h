#pragma once

#include <QByteArray>
#include <QString>

/// The topics of one rig, "appvantor/1/RIG/…"; names are percent-encoded.
class RigTopics
{
public:
    explicit RigTopics(const QString& rig);

    QByteArray state() const { return m_root + "state"; }
    QByteArray description() const { return m_root + "description"; }
    QByteArray events() const { return m_root + "events"; }
    QByteArray order() const { return m_root + "order"; }
    QByteArray history() const { return m_root + "history"; }
    QByteArray lease() const { return m_root + "lease"; }
    QByteArray line(const QString& name) const;
    QByteArray lineSet(const QString& name) const { return line(name) + "/set"; }
    /// The pattern of lineSet for all lines.
    QByteArray anyLineSet() const { return m_root + "line/+/set"; }
    /// Where the answers for client go.
    QByteArray answer(const QByteArray& client) const { return m_root + "answer/" + client; }
    /// True when answers of this rig may go to topic: nobody is to make it speak in the name of another rig,
    /// or give orders.
    bool mayAnswer(const QByteArray& topic) const;
    /// Name of the line that a topic of the form lineSet() is about.
    QString lineOfSet(const QByteArray& topic) const;

    /// The pattern of the topic called name of all rigs.
    static QByteArray ofAnyRig(const char* name);
    /// Name of the rig that topic belongs to; empty for a topic of another kind.
    static QString rigOf(const QByteArray& topic);

private:
    QByteArray m_root;
};
