#include <plugin_management/d_wording.h>

#include "literals.h"
#include "rows.h"

#include <QtTest>

/// A text that each reader gets in a language of his own.
class TestWording : public QObject
{
    Q_OBJECT

    /// Another language: of each source, the letters as capitals.
    static QString shouted(const QString& source) { return source.toUpper(); }

private Q_SLOTS:
    void isWordedInEachLanguage_data()
    {
        const Rows<DWording, QString, QString> row("wording", "english", "shouted");
        row("nothing", DWording(), QString(), QString());
        row("no places", wording("all is well"), "all is well"_s, "ALL IS WELL"_s);
        row("a name", wording("no line %1").arg("door"_s), "no line door"_s, "NO LINE door"_s);
        row("numbers", wording("%1 of %2").arg(3, Q_UINT64_C(18446744073709551615)),
            "3 of 18446744073709551615"_s, "3 OF 18446744073709551615"_s);
        row("a wording in a wording", wording("%2: %1").arg(wording("it is %1").arg("shut"_s), "door"_s),
            "door: it is shut"_s, "door: IT IS shut"_s);
        row("one place after the other", wording("%1 %2").arg("a"_s).arg("b"_s), "a b"_s, "a b"_s);
        row("a name with a place in it", wording("%1 %2").arg("%2"_s, "b"_s), "%2 b"_s, "%2 b"_s);
        row("a place for nothing", wording("%1 at 5 %").arg("a"_s), "a at 5 %"_s, "a AT 5 %"_s);
        row("what others say", DWording::told("busy %1"_s), "busy %1"_s, "BUSY %1"_s);
    }
    void isWordedInEachLanguage()
    {
        QFETCH(DWording, wording);
        QTEST(wording.english(), "english");
        QTEST(wording.in(shouted), "shouted");
    }

    void namesCanBeChanged()
    {
        const DWording told = wording("%1: %2").arg("a"_s, wording("like %1").arg("a"_s));
        QCOMPARE(told.withNames(shouted).english(), "A: like A"_s);
    }

    void isTheSameWithTheSameNames()
    {
        const DWording door = wording("no line %1").arg("door"_s);
        QVERIFY(door == wording("no line %1").arg("door"_s));
        QVERIFY(door != wording("no line %1").arg("lamp"_s));
        QVERIFY(door != wording("no line %1").arg(wording("door")));
        QVERIFY(door != wording("a line %1").arg("door"_s));
    }
};

QTEST_GUILESS_MAIN(TestWording)
#include "test_wording.moc"
