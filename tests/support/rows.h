#pragma once

#include <QtTest>

#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

/// The columns of a test's data, and its rows: a literal is taken for a QString, too.
///
///     const Rows<QString, int> row("words", "status");
///     row("an order", "run getValue channel=START", 0);
///
/// In the test, a row's values: const auto [words, status] = Rows<QString, int>::values();
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
        s_names = {names...};
        (QTest::addColumn<Types>(names), ...);
    }

    void operator()(const QByteArray& name, const Value<Types>&... values) const
    {
        (QTest::newRow(name.constData()) << ... << static_cast<const Types&>(values));
    }

    /// The values of the row that runs, of a test whose data have these columns.
    static std::tuple<Types...> values() { return valuesOf(std::index_sequence_for<Types...>()); }

private:
    template <std::size_t... Column>
    static std::tuple<Types...> valuesOf(std::index_sequence<Column...>)
    {
        return {*static_cast<const Types*>(QTest::qData(s_names.at(Column), qMetaTypeId<Types>()))...};
    }

    static inline std::array<const char*, sizeof...(Types)> s_names; ///< those of the test that runs
};
