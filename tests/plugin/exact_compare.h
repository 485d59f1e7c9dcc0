#pragma once

#include <QDebug>
#include <QStringList>
#include <QVariant>

/// A value as its type's name and its text; a null one of its type is told from an empty one.
inline QString exactly(const QVariant& value)
{
    QString text;
    QDebug(&text).nospace() << value << (value.isValid() && value.isNull() ? ", null" : "");
    return text;
}

/// What distinguishes two values, of which the type counts too, and whether they are null; empty when they
/// are the same.
inline QString difference(const QVariant& actual, const QVariant& expected)
{
    const bool same = actual.userType() == expected.userType() && actual.isNull() == expected.isNull() &&
                      actual == expected;
    return same ? QString() : exactly(actual) + QStringLiteral(" instead of ") + exactly(expected);
}

/// What distinguishes two maps: their keys, values and types of values; empty when they are the same.
inline QString difference(const QVariantMap& actual, const QVariantMap& expected)
{
    if (actual.keys() != expected.keys()) {
        return QStringLiteral("keys %1 instead of %2")
            .arg(QStringList(actual.keys()).join(QLatin1Char(' ')),
                 QStringList(expected.keys()).join(QLatin1Char(' ')));
    }
    for (auto item = expected.cbegin(); item != expected.cend(); ++item) {
        const QString problem = difference(actual.value(item.key()), item.value());
        if (!problem.isEmpty()) {
            return item.key() + QStringLiteral(": ") + problem;
        }
    }
    return QString();
}

/// What distinguishes two lists by their lengths, or by what differenceOf tells of their elements; empty when
/// nothing does.
template <typename Actual, typename Expected, typename Difference>
QString differenceOfLists(const QVector<Actual>& actual, const QVector<Expected>& expected,
                          Difference differenceOf)
{
    if (actual.size() != expected.size()) {
        return QStringLiteral("%1 elements instead of %2").arg(actual.size()).arg(expected.size());
    }
    for (int i = 0; i < expected.size(); ++i) {
        const QString problem = differenceOf(actual.at(i), expected.at(i));
        if (!problem.isEmpty()) {
            return QStringLiteral("element %1: %2").arg(i).arg(problem);
        }
    }
    return QString();
}

/// Fails the test with the text of a problem, unless there is none.
#define REQUIRE_NO_PROBLEM(...)                                                                              \
    do {                                                                                                     \
        const QString problem = __VA_ARGS__;                                                                 \
        QVERIFY2(problem.isEmpty(), qPrintable(problem));                                                    \
    } while (false)

/// Fails the test unless the two values or maps are the same, types included.
#define COMPARE_EXACTLY(actual, expected) REQUIRE_NO_PROBLEM(difference(actual, expected))
