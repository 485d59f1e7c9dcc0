#include "literals.h"
#include "rows.h"

#include <command_line/script.h>

#include <QtTest>

namespace {

/// Adds the lines of text, and whatever has its turn then: up to most lines.
QStringList linesOf(const QString& text, int most = 100)
{
    Script script;
    int number = 0;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        script.add({"f"_s, ++number, line});
    }
    script.endInput();
    QStringList lines;
    while (!script.isEmpty() && lines.size() < most) {
        const ScriptLine line = script.next();
        lines.append(line.problem.isEmpty() ? line.text : line.place() + ": "_s + line.problem.english());
    }
    return lines;
}

} // namespace

/// The order in which the lines of a script have their turns.
class TestScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesHaveTheirTurns_data()
    {
        const Rows<QString, QString> row("script", "turns");
        row("one after the other", "a\nb\n# c", "a b # c");
        row("a block comes as often as it says", "a\nrepeat 3\nb\nc\nend\nd", "a b c b c b c d");
        row("a block within a block", "repeat 2\na\nrepeat 2\nb\nend\nend", "a b b a b b");
        row("a block that ends where another does", "repeat 2\nrepeat 2\na\nend\nend\nb", "a a a a b");
        row("two blocks", "repeat 1\na\nend\nrepeat 2\nb\nend", "a b b");
        row("blanks around the words", "  repeat\t2 \na\n\tend  ", "a a");
        row("an empty block is nothing", "repeat 5\nrepeat 1000000\nend\nend\na", "a");
        row("a surplus end", "a\nend\nb", "a f:2: \"end\" without a \"repeat\" b");
        row("a missing end", "a\nrepeat 2\nb", "a f:2: \"repeat\" without an \"end\"");
        row("a missing end within a block", "repeat 2\na\nrepeat 3\nb\nend",
            "f:1: \"repeat\" without an \"end\"");
        row("an end with more", "repeat 2\na\nend all\nend",
            "a f:3: expected nothing after \"end\" a f:3: expected nothing after \"end\"");
        row("quoted words are no block", "'repeat 2'\na", "'repeat 2' a");
        const QString count = "f:1: expected \"repeat N\", N from 1 to 1000000"_s;
        for (const char* wrong : {"repeat", "repeat 0", "repeat -1", "repeat 1000001", "repeat two",
                                  "repeat 2 3", "repeat 99999999999"}) {
            row(wrong, QLatin1String(wrong) + "\na\nrepeat 2\nb\nend\nend\nc"_s, count + " c"_s);
        }
        row("as deep as blocks go",
            "repeat 2\n"_s.repeated(2) + "repeat 1\n"_s.repeated(14) + "a\n"_s + "end\n"_s.repeated(16) +
                "b"_s,
            "a a a a b");
        row("too deep", "repeat 1\n"_s.repeated(17) + "a\n"_s + "end\n"_s.repeated(17) + "b"_s,
            "f:17: expected blocks at most 16 deep b");
    }

    void linesHaveTheirTurns()
    {
        QFETCH(QString, script);
        QFETCH(QString, turns);
        QStringList lines = linesOf(script);
        lines.removeAll(QString());
        QCOMPARE(lines.join(QLatin1Char(' ')), turns);
    }

    void manyRoundsTakeNoRoom()
    {
        QCOMPARE(linesOf("repeat 1000000\n"_s.repeated(16) + "a\n"_s + "end\n"_s.repeated(16), 5),
                 QStringList({"a"_s, "a"_s, "a"_s, "a"_s, "a"_s}));
    }

    void aBlockWaitsForItsEnd()
    {
        Script script;
        script.add({"f"_s, 1, "repeat 2"_s});
        script.add({"f"_s, 2, "a"_s});
        QVERIFY(script.isEmpty() && script.isInBlock());
        script.add({"f"_s, 3, "end"_s});
        QVERIFY(!script.isEmpty() && !script.isInBlock());
    }

    void aBlockThatIsDroppedLeavesWhatWaits()
    {
        Script script;
        script.add({"f"_s, 1, "a"_s});
        script.add({"f"_s, 2, "repeat 2"_s});
        script.add({"f"_s, 3, "b"_s});
        script.dropOpenBlock();
        QVERIFY(!script.isInBlock());
        QCOMPARE(script.next().text, "a"_s);
        QVERIFY(script.isEmpty());
    }

    void aBlockIsBounded()
    {
        Script script;
        const QString line(1 << 20, QLatin1Char('x'));
        script.add({"f"_s, 1, "repeat 2"_s});
        for (int number = 2; number < 19; ++number) {
            script.add({"f"_s, number, line});
        }
        script.add({"f"_s, 19, "end"_s});
        const ScriptLine wrong = script.next();
        QCOMPARE(wrong.place() + ": "_s + wrong.problem.english(),
                 "f:1: expected a block of at most 16777216 characters"_s);
        QVERIFY(script.isEmpty() && !script.isInBlock());
    }

    void whoTypesNeedsNoPlace() { QCOMPARE((ScriptLine{"f"_s, 0, "a"_s}.place()), QString()); }
};

QTEST_GUILESS_MAIN(TestScript)
#include "test_script.moc"
