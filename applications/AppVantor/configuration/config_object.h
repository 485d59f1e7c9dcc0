#pragma once

#include "problem.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <vector>

/// The mistakes found in one configuration file.
class ConfigProblems
{
public:
    explicit ConfigProblems(const QString& file)
        : m_file(file)
    {}

    void add(const QString& entry, const QString& text);
    const QVector<Problem>& all() const { return m_all; }

private:
    QString m_file;
    QVector<Problem> m_all;
};

/// A JSON object of a configuration file, with the place where it stands. Every reading of an entry that is
/// missing or wrong adds to the problems what was expected, and gives a harmless value.
class ConfigObject
{
public:
    ConfigObject(const QJsonObject& object, const QString& place, ConfigProblems* problems);

    const QJsonObject& json() const { return m_object; }
    bool has(const QString& key) const;
    /// The place of an entry, for messages.
    QString placeOf(const QString& key) const;
    void addProblem(const QString& key, const QString& text) const;

    /// Only these keys are known.
    void allowOnly(const QStringList& keys) const;
    /// A text with at least one character; a missing one counts as wrong.
    QString text(const QString& key) const;
    QString textOr(const QString& key, const QString& fallback) const;
    bool flagOr(const QString& key, bool fallback) const;
    /// A whole number from lowest to highest.
    int numberOr(const QString& key, int lowest, int highest, int fallback) const;
    /// Position of a text in choices.
    int choiceOr(const QString& key, const QStringList& choices, int fallback) const;
    /// An object; a missing one counts as wrong.
    ConfigObject object(const QString& key) const;
    /// A list of objects; a missing list is empty.
    std::vector<ConfigObject> objects(const QString& key) const;

private:
    QString quoted(const QString& key) const;

    QJsonObject m_object;
    QString m_place;
    ConfigProblems* m_problems;
};
