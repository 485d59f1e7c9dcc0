#include "rows.h"
#include "workbench.h"

#include <limits>

class TestTypeTags : public QObject
{
    Q_OBJECT

    /// Passes value to a parameter of the type tag; returns what the command would read, or an invalid
    /// variant and the refusal.
    static QVariant converted(const QString& tag, const QVariant& value, QString* refusal)
    {
        const Workbench bench([&tag](CommandScript& script) {
            script.parameters = {{"value"_s, tag, "Value"_s, QVariant()}};
        });
        QVariantMap arguments{{"value"_s, value}};
        *refusal = bench.tool->checkInvocation("work"_s, &arguments).text.english();
        return refusal->isEmpty() ? arguments.value("value"_s) : QVariant();
    }

    static inline const double c_infinity = std::numeric_limits<double>::infinity();
    static inline const double c_nan = std::numeric_limits<double>::quiet_NaN();
    const QVariant c_refused;

private Q_SLOTS:
    void aParameterHoldsWhatItsTypeCanHold_data()
    {
        const Rows<QString, QVariant, QVariant> row("tag", "value", "held");
        const auto addRow = [&row](const char* tag, const char* what, const QVariant& value,
                                   const QVariant& held) {
            row(QByteArray(tag) + ": " + what, tag, value, held);
        };
        for (const char* tag : {"ui16", "int"}) {
            addRow(tag, "zero", 0, 0);
            addRow(tag, "one", 1, 1);
            addRow(tag, "unsigned", 7U, 7);
            addRow(tag, "long", 7LL, 7);
            addRow(tag, "unsigned long", 7ULL, 7);
            addRow(tag, "true", true, 1);
            addRow(tag, "false", false, 0);
            addRow(tag, "whole double", 12.0, 12);
            addRow(tag, "whole float", 12.0F, 12);
            addRow(tag, "minus zero", -0.0, 0);
            addRow(tag, "text", "12"_s, 12);
            addRow(tag, "text with plus", "+12"_s, 12);
            addRow(tag, "broken double", 12.5, c_refused);
            addRow(tag, "almost whole double", 0.999999999, c_refused);
            addRow(tag, "NaN", c_nan, c_refused);
            addRow(tag, "infinity", c_infinity, c_refused);
            addRow(tag, "minus infinity", -c_infinity, c_refused);
            addRow(tag, "huge double", 1e300, c_refused);
            addRow(tag, "huge unsigned", std::numeric_limits<quint64>::max(), c_refused);
            addRow(tag, "huge text", "99999999999999999999999"_s, c_refused);
            addRow(tag, "empty text", QString(""_s), c_refused);
            addRow(tag, "word", "many"_s, c_refused);
            addRow(tag, "true as text", "true"_s, c_refused);
            addRow(tag, "broken text", "12.5"_s, c_refused);
            addRow(tag, "exponent text", "1e2"_s, c_refused);
            addRow(tag, "hexadecimal text", "0x10"_s, c_refused);
            addRow(tag, "number with unit", "12ms"_s, c_refused);
            addRow(tag, "nothing", QVariant(), c_refused);
            addRow(tag, "null", QVariant::fromValue(nullptr), c_refused);
            addRow(tag, "date", QDateTime::currentDateTime(), c_refused);
        }
        addRow("ui16", "highest", 65535, 65535);
        addRow("ui16", "above the highest", 65536, c_refused);
        addRow("ui16", "negative", -1, c_refused);
        addRow("ui16", "negative text", "-1"_s, c_refused);
        addRow("ui16", "negative double", -1.0, c_refused);
        addRow("ui16", "highest text", "65535"_s, 65535);
        addRow("ui16", "above the highest text", "65536"_s, c_refused);

        addRow("int", "negative", -1, -1);
        addRow("int", "negative text", "-12"_s, -12);
        addRow("int", "highest", 2147483647, 2147483647);
        addRow("int", "above the highest", 2147483648LL, c_refused);
        addRow("int", "lowest", std::numeric_limits<int>::min(), std::numeric_limits<int>::min());
        addRow("int", "below the lowest", -2147483649LL, c_refused);
        addRow("int", "above the highest double", 2147483648.0, c_refused);

        addRow("bool", "true", true, true);
        addRow("bool", "false", false, false);
        addRow("bool", "one", 1, true);
        addRow("bool", "zero", 0, false);
        addRow("bool", "one as double", 1.0, true);
        addRow("bool", "true as text", "true"_s, true);
        addRow("bool", "TRUE as text", "TRUE"_s, true);
        addRow("bool", "false as text", "False"_s, false);
        addRow("bool", "1 as text", "1"_s, true);
        addRow("bool", "0 as text", "0"_s, false);
        addRow("bool", "two", 2, c_refused);
        addRow("bool", "minus one", -1, c_refused);
        addRow("bool", "half", 0.5, c_refused);
        addRow("bool", "NaN", c_nan, c_refused);
        addRow("bool", "yes", "yes"_s, c_refused);
        addRow("bool", "padded text", " true"_s, c_refused);
        addRow("bool", "empty text", QString(""_s), c_refused);
        addRow("bool", "nothing", QVariant(), c_refused);
        addRow("bool", "a list", QVariantList{true}, c_refused);

        addRow("strg", "text", "lamp"_s, "lamp"_s);
        addRow("strg", "empty text", QString(""_s), QString(""_s));
        addRow("strg", "padded text", " lamp "_s, " lamp "_s);
        addRow("strg", "text beyond ASCII", "señal 信号"_s, "señal 信号"_s);
        addRow("strg", "whole number", 12, "12"_s);
        addRow("strg", "negative number", -12, "-12"_s);
        addRow("strg", "double", 0.5, "0.5"_s);
        addRow("strg", "bool", true, "true"_s);
        addRow("strg", "nothing", QVariant(), c_refused);
        addRow("strg", "a list", QVariantList{1}, c_refused);
        addRow("strg", "a map", QVariantMap{{"a"_s, 1}}, c_refused);
    }
    void aParameterHoldsWhatItsTypeCanHold()
    {
        const auto [tag, value, held] = Rows<QString, QVariant, QVariant>::values();
        QString refusal;
        const QVariant result = converted(tag, value, &refusal);
        QCOMPARE(result, held);
        QCOMPARE(result.userType(), held.userType());
        QCOMPARE(refusal.isEmpty(), held.isValid());
    }

    void anyValuePassesUnchangedWhereTheTypeIsOpen()
    {
        const QVariantList values = {"12"_s, 0.5, true, QVariant(QVariantList{1, 2}), QVariant()};
        for (const QString& tag : {"vart"_s, "colour"_s}) {
            for (const QVariant& value : values) {
                QString refusal;
                const QVariant result = converted(tag, value, &refusal);
                QCOMPARE(refusal, QString());
                QCOMPARE(result, value);
                QCOMPARE(result.userType(), value.userType());
            }
        }
    }

    void aRefusalSaysWhatTheTypeHolds()
    {
        const QMap<QString, QString> texts = {{"ui16"_s, "a whole number from 0 to 65535"_s},
                                              {"int"_s, "a whole number from -2147483648 to 2147483647"_s},
                                              {"bool"_s, "true or false"_s},
                                              {"strg"_s, "a text"_s}};
        for (auto held = texts.cbegin(); held != texts.cend(); ++held) {
            QString refusal;
            converted(held.key(), QVariant(), &refusal);
            QCOMPARE(refusal,
                     "parameter \"value\" of command \"work\" cannot hold \"\"; expected "_s + *held);
        }
    }
};

QTEST_GUILESS_MAIN(TestTypeTags)
#include "test_type_tags.moc"
