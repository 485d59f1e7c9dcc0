#include "literals.h"
#include "rows.h"

#include <command_line/invocation.h>

#include <QtTest>

Q_DECLARE_METATYPE(QVariant)

/// How lines are split and values are read.
class TestInvocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineIsSplitAtBlanks_data()
    {
        const Rows<QStringList> row("words");
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

    /// The rows are called by the lines.
    void aLineIsSplitAtBlanks()
    {
        QFETCH(QStringList, words);
        DWording problem;
        QCOMPARE(splitLine(QString::fromUtf8(QTest::currentDataTag()), &problem), words);
        QCOMPARE(problem.english(), QString());
    }

    void aLineThatIsNotClosedIsRefused_data()
    {
        const Rows<QString, QString> row("line", "message");
        row("double quote", "a=\"b", "expected a closing \"");
        row("single quote", "a='b", "expected a closing '");
        row("list", "a=[1", "expected a closing bracket");
        row("object in list", "a=[{1]", "expected a closing bracket");
        row("text in list", "a=[\"1]", "expected a closing \"");
    }

    void aLineThatIsNotClosedIsRefused()
    {
        QFETCH(QString, line);
        QFETCH(QString, message);
        DWording problem;
        splitLine(line, &problem);
        QCOMPARE(problem.english(), message);
    }

    void aValueThatLooksLikeJsonIsReadAsJson_data()
    {
        const Rows<QString, QVariant> row("word", "value");
        row("text", "v=abc", QVariant("abc"_s));
        row("empty text", "v=", QVariant(QString()));
        row("number stays text", "v=12", QVariant("12"_s));
        row("true stays text", "v=true", QVariant("true"_s));
        row("text with =", "v=a=b", QVariant("a=b"_s));
        row("quoted text", "v=\"[1]\"", QVariant("[1]"_s));
        row("list", "v=[1,\"a\"]", QVariant(QVariantList{1.0, "a"_s}));
        row("object", "v={\"a\":true}", QVariant(QVariantMap{{"a"_s, true}}));
    }

    void aValueThatLooksLikeJsonIsReadAsJson()
    {
        QFETCH(QString, word);
        QFETCH(QVariant, value);
        DWording problem;
        const Invocation invocation = readInvocation({"cmd"_s, word}, &problem);
        QCOMPARE(problem.english(), QString());
        QCOMPARE(invocation.command, "cmd"_s);
        QCOMPARE(invocation.arguments.value("v"_s), value);
        QCOMPARE(invocation.arguments.value("v"_s).type(), value.type());
    }

    void aWrongAssignmentIsRefused_data()
    {
        const Rows<QStringList, QString> row("words", "message");
        row("no =", {"v"_s}, "expected NAME=VALUE, found \"v\"");
        row("no name", {"=v"_s}, "expected NAME=VALUE, found \"=v\"");
        row("twice", {"v=1"_s, "v=2"_s}, "parameter \"v\" is given twice");
        row("two values", {"v=[1],[2]"_s},
            "parameter \"v\": expected JSON, found ,[2] (character 4 of [1],[2])");
        row("broken list", {"v=[1"_s},
            "parameter \"v\": expected JSON, found nothing more (character 3 of [1)");
        row("broken text", {"v=\"a"_s}, "parameter \"v\": expected JSON, found \"a (character 1 of \"a)");
    }

    void aWrongAssignmentIsRefused()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, message);
        DWording problem;
        readInvocation(QStringList{"cmd"_s} + words, &problem);
        QCOMPARE(problem.english(), message);
    }
};

QTEST_GUILESS_MAIN(TestInvocation)
#include "test_invocation.moc"
