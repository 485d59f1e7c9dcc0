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
    row("a b\tc", {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    row("  a   b ", {QStringLiteral("a"), QStringLiteral("b")});
    row("a=\"b c\"", {QStringLiteral("a=\"b c\"")});
    row("a=\"\\u0041 \\\"\" b", {QStringLiteral("a=\"\\u0041 \\\"\""), QStringLiteral("b")});
    row("\"a b\"", {QStringLiteral("a b")});
    row("a='b \"c'", {QStringLiteral("a=b \"c")});
    row("a=\"b 'c\"", {QStringLiteral("a=\"b 'c\"")});
    row("''", {QString()});
    row("a\\ b", {QStringLiteral("a b")});
    row("a\\\\", {QStringLiteral("a\\")});
    row("a\\", {QStringLiteral("a\\")});
    row("a=[1, 2] b", {QStringLiteral("a=[1, 2]"), QStringLiteral("b")});
    row("a={\"x\": [1, \"]\"]} b", {QStringLiteral("a={\"x\": [1, \"]\"]}"), QStringLiteral("b")});
    row("a=[\"x\\\"y z\"] b", {QStringLiteral("a=[\"x\\\"y z\"]"), QStringLiteral("b")});
    row("a=[it's fine] b", {QStringLiteral("a=[it's fine]"), QStringLiteral("b")});
    row("a] b", {QStringLiteral("a]"), QStringLiteral("b")});
    row("é=ü ☃", {QStringLiteral("é=ü"), QStringLiteral("☃")});
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
    QTest::newRow("text") << "v=abc" << QVariant(QStringLiteral("abc"));
    QTest::newRow("empty text") << "v=" << QVariant(QString());
    QTest::newRow("number stays text") << "v=12" << QVariant(QStringLiteral("12"));
    QTest::newRow("true stays text") << "v=true" << QVariant(QStringLiteral("true"));
    QTest::newRow("text with =") << "v=a=b" << QVariant(QStringLiteral("a=b"));
    QTest::newRow("quoted text") << "v=\"[1]\"" << QVariant(QStringLiteral("[1]"));
    QTest::newRow("list") << "v=[1,\"a\"]" << QVariant(QVariantList{1.0, QStringLiteral("a")});
    QTest::newRow("object") << "v={\"a\":true}" << QVariant(QVariantMap{{QStringLiteral("a"), true}});
}

void TestInvocation::aValueThatLooksLikeJsonIsReadAsJson()
{
    QFETCH(QString, word);
    QFETCH(QVariant, value);
    QString problem;
    const Invocation invocation = readInvocation({QStringLiteral("cmd"), word}, &problem);
    QCOMPARE(problem, QString());
    QCOMPARE(invocation.command, QStringLiteral("cmd"));
    QCOMPARE(invocation.arguments.value(QStringLiteral("v")), value);
    QCOMPARE(invocation.arguments.value(QStringLiteral("v")).type(), value.type());
}

void TestInvocation::aWrongAssignmentIsRefused_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const QStringList& words, const char* message) {
        QTest::newRow(name) << QStringList{QStringLiteral("cmd")} + words << QString::fromUtf8(message);
    };
    row("no =", {QStringLiteral("v")}, "expected NAME=VALUE, found \"v\"");
    row("no name", {QStringLiteral("=v")}, "expected NAME=VALUE, found \"=v\"");
    row("twice", {QStringLiteral("v=1"), QStringLiteral("v=2")}, "parameter \"v\" is given twice");
    row("two values", {QStringLiteral("v=[1],[2]")},
        "parameter \"v\": expected one JSON value, found [1],[2]");
    row("broken list", {QStringLiteral("v=[1")}, "parameter \"v\": unterminated array in [1");
    row("broken text", {QStringLiteral("v=\"a")}, "parameter \"v\": unterminated string in \"a");
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
