#pragma once

#include "json_text.h"
#include "problem.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <vector>

/// The mistakes found in one configuration file.
class ConfigProblems
{
public:
    /// Mistakes in file, which holds text.
    ConfigProblems(const QString& file, const QByteArray& text);

    /// Adds a mistake in the entry ("device.lines[2].name", or empty), at offset bytes of the text.
    void add(const QString& entry, int offset, const DWording& text);
    const QVector<Problem>& all() const { return m_all; }

private:
    QString m_file;
    std::vector<int> m_lineStarts; ///< in bytes
    QVector<Problem> m_all;
};

/// A JSON object of a configuration file, with the place where it stands. Every reading of an entry that is
/// missing or wrong adds to the problems what was expected, and gives a harmless value.
class ConfigObject
{
public:
    /// node, called entry in messages, counts as empty when it is no object; it must outlive this.
    ConfigObject(const JsonNode& node, const QString& entry, ConfigProblems* problems);

    bool has(const QString& key) const { return find(key) != nullptr; }
    /// A text, number or flag as it stands there; invalid for anything else.
    QVariant value(const QString& key) const;
    /// All of it as it stands there.
    QVariantMap toVariantMap() const { return m_node.toVariant().toMap(); }
    void addProblem(const QString& key, const DWording& text) const;
    /// True as long as nothing has been found wrong with its entries: else what they should be is not known.
    bool isSound() const { return m_isSound; }

    /// Only these keys are known.
    void allowOnly(const QStringList& keys) const;
    /// A text with at least one character; a missing one counts as wrong.
    QString text(const QString& key) const;
    QString textOr(const QString& key, const QString& fallback) const;
    bool flagOr(const QString& key, bool fallback) const;
    /// A whole number from lowest to highest.
    int numberOr(const QString& key, int lowest, int highest, int fallback) const;
    /// Position of a text in choices; a missing one counts as wrong.
    int choice(const QString& key, const QStringList& choices) const;
    int choiceOr(const QString& key, const QStringList& choices, int fallback) const;
    /// An object; a missing one counts as wrong.
    ConfigObject object(const QString& key) const;
    /// A list of objects; a missing list is empty.
    std::vector<ConfigObject> objects(const QString& key) const;

private:
    const JsonNode* find(const QString& key) const;
    QString entryOf(const QString& key) const;
    DWording quoted(const QString& key) const;

    const JsonNode& m_node;
    QString m_entry;
    ConfigProblems* m_problems;
    mutable bool m_isSound = true;
};
