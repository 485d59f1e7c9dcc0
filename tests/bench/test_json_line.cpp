#include "literals.h"
#include "rows.h"

#include <process/json_line.h>

#include <QDate>
#include <QUuid>
#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(QVariant)

/// How values are written as JSON.
class TestJsonLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueIsWrittenExactly_data()
    {
        const Rows<QVariant, QByteArray> row("value", "json");
        row("invalid", QVariant(), "null");
        row("true", QVariant(true), "true");
        row("int", QVariant(std::numeric_limits<int>::min()), "-2147483648");
        row("largest 64-bit number", QVariant(std::numeric_limits<quint64>::max()), "18446744073709551615");
        row("real", QVariant(0.5), "0.5");
        row("real that is no number", QVariant(qQNaN()), "null");
        row("text", QVariant("d\u00E9 \"a\"\n"_s), "\"d\xC3\xA9 \\\"a\\\"\\n\"");
        row("list", QVariant(QVariantList{1, "a"_s}), "[1,\"a\"]");
        row("no texts", QVariant(QStringList()), "[]");
        row("texts", QVariant(QStringList{"a"_s, "b"_s}), "[\"a\",\"b\"]");
        row("map", QVariant(QVariantMap{{"b"_s, 1}, {"a"_s, 2}}), "{\"a\":2,\"b\":1}");
        row("numbers that doubles do not hold",
            QVariant(QVariantMap{{"a"_s, -9007199254740993LL},
                                 {"b"_s, std::numeric_limits<quint64>::max()},
                                 {"c"_s, 9007199254740993LL}}),
            "{\"a\":-9007199254740993,\"aText\":\"-9007199254740993\","
            "\"b\":18446744073709551615,\"bText\":\"18446744073709551615\","
            "\"c\":9007199254740993,\"cText\":\"9007199254740993\"}");
        row("numbers that they do",
            QVariant(QVariantMap{{"a"_s, -9007199254740992LL}, {"b"_s, 9007199254740992LL}}),
            "{\"a\":-9007199254740992,\"b\":9007199254740992}");
        row("date", QVariant(QDate(2026, 1, 2)), "\"2026-01-02\"");
        row("what has no text", QVariant::fromValue<QObject*>(nullptr), "null");
    }

    void aValueIsWrittenExactly()
    {
        QFETCH(QVariant, value);
        QFETCH(QByteArray, json);
        QCOMPARE(QByteArray::fromStdString(toJson(value).dump()), json);
    }
};

QTEST_GUILESS_MAIN(TestJsonLine)
#include "test_json_line.moc"
