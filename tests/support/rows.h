#pragma once

#include <QtTest>

#include <type_traits>

/// The columns of a test's data, and its rows: a literal is taken for a QString, too.
///
///     const Rows<QString, int> row("words", "status");
///     row("an order", "run getValue channel=START", 0);
template <typename... Types>
class Rows
{
    struct Text : QString
    {
        Text(const QString& text)
            : QString(text)
        {}
        Text(const char* text)
            : QString(QString::fromUtf8(text))
        {}
    };
    template <typename Type>
    using Value = std::conditional_t<std::is_same_v<Type, QString>, Text, Type>;

public:
    template <typename... Names>
    explicit Rows(Names... names)
    {
        (QTest::addColumn<Types>(names), ...);
    }

    void operator()(const QByteArray& name, const Value<Types>&... values) const
    {
        (QTest::newRow(name.constData()) << ... << static_cast<const Types&>(values));
    }
};
