#include "literals.h"

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
    void aValueIsWrittenExactly_data();
    void aValueIsWrittenExactly();
};

void TestJsonLine::aValueIsWrittenExactly_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("invalid") << QVariant() << QByteArray("null");
    QTest::newRow("true") << QVariant(true) << QByteArray("true");
    QTest::newRow("int") << QVariant(std::numeric_limits<int>::min()) << QByteArray("-2147483648");
    QTest::newRow("largest 64-bit number")
        << QVariant(std::numeric_limits<quint64>::max()) << QByteArray("18446744073709551615");
    QTest::newRow("real") << QVariant(0.5) << QByteArray("0.5");
    QTest::newRow("real that is no number") << QVariant(qQNaN()) << QByteArray("null");
    QTest::newRow("text") << QVariant("d\u00E9 \"a\"\n"_s) << QByteArray("\"d\xC3\xA9 \\\"a\\\"\\n\"");
    QTest::newRow("list") << QVariant(QVariantList{1, "a"_s}) << QByteArray("[1,\"a\"]");
    QTest::newRow("map") << QVariant(QVariantMap{{"b"_s, 1}, {"a"_s, 2}}) << QByteArray("{\"a\":2,\"b\":1}");
    QTest::newRow("date") << QVariant(QDate(2026, 1, 2)) << QByteArray("\"2026-01-02\"");
    QTest::newRow("what has no text") << QVariant::fromValue<QObject*>(nullptr) << QByteArray("null");
}

void TestJsonLine::aValueIsWrittenExactly()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, json);
    QCOMPARE(QByteArray::fromStdString(toJson(value).dump()), json);
}

QTEST_GUILESS_MAIN(TestJsonLine)
#include "test_json_line.moc"
