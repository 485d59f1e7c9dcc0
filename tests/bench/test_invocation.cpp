#include "literals.h"

#include <command_line/invocation.h>

#include <QtTest>

Q_DECLARE_METATYPE(QVariant)

/// How lines are split and values are read.
class TestInvocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineIsSplitAtBlanks_data();
    void aLineIsSplitAtBlanks();
    void aLineThatIsNotClosedIsRefused_data();
    void aLineThatIsNotClosedIsRefused();
    void aValueThatLooksLikeJsonIsReadAsJson_data();
    void aValueThatLooksLikeJsonIsReadAsJson();
    void aWrongAssignmentIsRefused_data();
    void aWrongAssignmentIsRefused();
};

void TestInvocation::aLineIsSplitAtBlanks_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("words");
    const auto row = [](const char* line, const QStringList& words) {
        QTest::newRow(line) << QString::fromUtf8(line) << words;
    };
    row("", {});
    row("  ", {});
    row("a b\tc", {"a"_s, "b"_s, "c"_s});
    row("  a   b ", {"a"_s, "b"_s});
    row("a=\"b c\"", {"a=\"b c\""_s});
    row("a=\"\\u0041 \\\"\" b", {"a=\"\\u0041 \\\"\""_s, "b"_s});
    row("\"a b\"", {"a b"_s});
    row("a='b \"c'", {"a=b \"c"_s});
    row("a=\"b 'c\"", {"a=\"b 'c\""_s});
    row("''", {QString()});
    row("a\\ b", {"a b"_s});
    row("a\\\\", {"a\\"_s});
    row("a\\", {"a\\"_s});
    row("a=[1, 2] b", {"a=[1, 2]"_s, "b"_s});
    row("a={\"x\": [1, \"]\"]} b", {"a={\"x\": [1, \"]\"]}"_s, "b"_s});
    row("a=[\"x\\\"y z\"] b", {"a=[\"x\\\"y z\"]"_s, "b"_s});
    row("a=[it's fine] b", {"a=[it's fine]"_s, "b"_s});
    row("a] b", {"a]"_s, "b"_s});
    row("é=ü ☃", {"é=ü"_s, "☃"_s});
}

void TestInvocation::aLineIsSplitAtBlanks()
{
    QFETCH(QString, line);
    QFETCH(QStringList, words);
    QString problem;
    QCOMPARE(splitLine(line, &problem), words);
    QCOMPARE(problem, QString());
}

void TestInvocation::aLineThatIsNotClosedIsRefused_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("double quote") << "a=\"b"
                                  << "expected a closing \"";
    QTest::newRow("single quote") << "a='b"
                                  << "expected a closing '";
    QTest::newRow("list") << "a=[1"
                          << "expected a closing bracket";
    QTest::newRow("object in list") << "a=[{1]"
                                    << "expected a closing bracket";
    QTest::newRow("text in list") << "a=[\"1]"
                                  << "expected a closing \"";
}

void TestInvocation::aLineThatIsNotClosedIsRefused()
{
    QFETCH(QString, line);
    QFETCH(QString, message);
    QString problem;
    splitLine(line, &problem);
    QCOMPARE(problem, message);
}

void TestInvocation::aValueThatLooksLikeJsonIsReadAsJson_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << "v=abc" << QVariant("abc"_s);
    QTest::newRow("empty text") << "v=" << QVariant(QString());
    QTest::newRow("number stays text") << "v=12" << QVariant("12"_s);
    QTest::newRow("true stays text") << "v=true" << QVariant("true"_s);
    QTest::newRow("text with =") << "v=a=b" << QVariant("a=b"_s);
    QTest::newRow("quoted text") << "v=\"[1]\"" << QVariant("[1]"_s);
    QTest::newRow("list") << "v=[1,\"a\"]" << QVariant(QVariantList{1.0, "a"_s});
    QTest::newRow("object") << "v={\"a\":true}" << QVariant(QVariantMap{{"a"_s, true}});
}

void TestInvocation::aValueThatLooksLikeJsonIsReadAsJson()
{
    QFETCH(QString, word);
    QFETCH(QVariant, value);
    QString problem;
    const Invocation invocation = readInvocation({"cmd"_s, word}, &problem);
    QCOMPARE(problem, QString());
    QCOMPARE(invocation.command, "cmd"_s);
    QCOMPARE(invocation.arguments.value("v"_s), value);
    QCOMPARE(invocation.arguments.value("v"_s).type(), value.type());
}

void TestInvocation::aWrongAssignmentIsRefused_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const QStringList& words, const char* message) {
        QTest::newRow(name) << QStringList{"cmd"_s} + words << QString::fromUtf8(message);
    };
    row("no =", {"v"_s}, "expected NAME=VALUE, found \"v\"");
    row("no name", {"=v"_s}, "expected NAME=VALUE, found \"=v\"");
    row("twice", {"v=1"_s, "v=2"_s}, "parameter \"v\" is given twice");
    row("two values", {"v=[1],[2]"_s}, "parameter \"v\": expected one JSON value, found [1],[2]");
    row("broken list", {"v=[1"_s}, "parameter \"v\": unterminated array in [1");
    row("broken text", {"v=\"a"_s}, "parameter \"v\": unterminated string in \"a");
}

void TestInvocation::aWrongAssignmentIsRefused()
{
    QFETCH(QStringList, words);
    QFETCH(QString, message);
    QString problem;
    readInvocation(words, &problem);
    QCOMPARE(problem, message);
}

QTEST_GUILESS_MAIN(TestInvocation)
#include "test_invocation.moc"
