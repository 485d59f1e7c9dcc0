#include "literals.h"
#include "rows.h"

#include <fleet/change_ring.h>
#include <fleet/taken_orders.h>
#include <process/time_text.h>

#include <QTest>

#include <malloc.h>

/// The messages of a rig, and what it remembers of them.
class TestMessages : public QObject
{
    Q_OBJECT

    /// Bytes that are allocated; none under a sanitizer, which counts its own way.
    static std::size_t memory() { return mallinfo2().uordblks; }

private Q_SLOTS:
    void changesAreReadAsTheyAreWritten()
    {
        const RigChanges written{"s"_s, 7, 2, {{1000, 0, 1}, {1500, 3, -1}}, 9, {{10, 0, 5}}};
        QCOMPARE(
            written.toJson(),
            QByteArray(
                R"({"session":"s","first":7,"t0":1000,"lost":2,"e":[[0,0,1],[500,3,null]],"next":9,"levels":[[-990,0,5]]})"));
        const auto read = RigChanges::fromJson(written.toJson());
        QVERIFY(read);
        QCOMPARE(read->toJson(), written.toJson());
    }

    void whatIsNoListOfChangesIsNotRead_data()
    {
        const Rows<QByteArray> row("payload");
        row("nothing", "");
        row("no JSON", "{");
        row("no object", "[]");
        row("no session", R"({"first":1,"t0":0,"lost":0,"e":[]})");
        row("no changes", R"({"session":"s","first":1,"t0":0,"lost":0})");
        row("first is 0", R"({"session":"s","first":0,"t0":0,"lost":0,"e":[]})");
        row("more lost than there were", R"({"session":"s","first":3,"t0":0,"lost":3,"e":[]})");
        row("a number too large", R"({"session":"s","first":18446744073709551615,"t0":0,"lost":0,"e":[]})");
        row("a fraction", R"({"session":"s","first":1.5,"t0":0,"lost":0,"e":[]})");
        row("a change too short", R"({"session":"s","first":1,"t0":0,"lost":0,"e":[[0,1]]})");
        row("a level too high", R"({"session":"s","first":1,"t0":0,"lost":0,"e":[[0,1,65536]]})");
        row("a line below 0", R"({"session":"s","first":1,"t0":0,"lost":0,"e":[[0,-1,0]]})");
        row("levels that are none", R"({"session":"s","first":1,"t0":0,"lost":0,"e":[],"levels":1})");
        row("nested deep", R"({"session":"s","first":1,"t0":0,"lost":0,"e":)" + QByteArray(30000, '[') +
                               QByteArray(30000, ']') + "}");
    }
    void whatIsNoListOfChangesIsNotRead()
    {
        QFETCH(QByteArray, payload);
        QVERIFY(!RigChanges::fromJson(payload));
    }

    void aHolderIsReadWithItsTime_data()
    {
        const Rows<QByteArray, QString, qint64> row("payload", "name", "untilUs");
        row("somebody", R"({"holder":"ada","until":1795349535983592})", "ada", 1795349535983592);
        row("nobody", R"({"holder":null})", "", 0);
        row("a time beyond all", R"({"holder":"ada","until":1e300})", "ada", 0);
        row("a time below all", R"({"holder":"ada","until":-1})", "ada", 0);
        row("no JSON", "{", "", 0);
    }
    void aHolderIsReadWithItsTime()
    {
        const auto [payload, name, untilUs] = Rows<QByteArray, QString, qint64>::values();
        const RigHolder holder = RigHolder::fromJson(payload);
        QCOMPARE(holder.name, name);
        QCOMPARE(holder.untilUs, untilUs);
    }

    void aTimeBefore1970IsWrittenAsAnyOther()
    {
        QVERIFY2(fullTime(-1).contains(":59.999999"_s), qPrintable(fullTime(-1)));
        QVERIFY2(fullTime(-1000000).contains(":59.000000"_s), qPrintable(fullTime(-1000000)));
        QVERIFY2(timeOfDay(-34842624).endsWith(":25.157376"_s), qPrintable(timeOfDay(-34842624)));
    }

    void theRingTellsWhatItNoLongerHas()
    {
        ChangeRing ring("s"_s);
        for (std::size_t i = 0; i < ChangeRing::c_capacity + 10; ++i) {
            ring.add({static_cast<qint64>(i), 0, 1});
        }
        const RigChanges found = ring.changesFrom(1, 5);
        QCOMPARE(found.first, quint64{11});
        QCOMPARE(found.lost, quint64{10});
        QCOMPARE(found.changes.size(), 5);
        QCOMPARE(found.changes.first().timeUs, qint64{10});
    }

    void aGapEndsAMessage()
    {
        ChangeRing ring("s"_s);
        ring.add({1, 0, 1});
        ring.skip(3);
        QCOMPARE(ring.add({2, 0, 0}), quint64{5});
        QCOMPARE(ring.changesFrom(1, 9).end(), quint64{2});
        const RigChanges after = ring.changesFrom(2, 9);
        QCOMPARE(after.first, quint64{5});
        QCOMPARE(after.lost, quint64{3});
        QCOMPARE(ring.changesFrom(6, 9).end(), quint64{6});
    }

    void anOrderIsNewOnce()
    {
        TakenOrders taken;
        QVERIFY(taken.isNew("a", "1"));
        QVERIFY(!taken.isNew("a", "1"));
        QVERIFY(taken.isNew("b", "1"));
        QVERIFY(taken.isNew("a", ""));
        QVERIFY(taken.isNew("a", ""));
        for (std::size_t i = 0; i < TakenOrders::c_capacity; ++i) {
            taken.isNew("c", QByteArray::number(static_cast<int>(i)));
        }
        QVERIFY(taken.isNew("a", "1"));
    }

    void ordersAreRememberedInLittleRoom()
    {
        constexpr int many = 200;
        const QByteArray correlation(60000, 'c');
        TakenOrders taken;
        const std::size_t before = memory();
        for (int i = 0; i < many; ++i) {
            QVERIFY(taken.isNew("a", correlation + QByteArray::number(i)));
        }
        QVERIFY(memory() < before + std::size_t{many} * 6000);
    }
};

QTEST_APPLESS_MAIN(TestMessages)
#include "test_messages.moc"
