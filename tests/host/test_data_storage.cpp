#include "literals.h"

#include <plugin_management/d_data_storage.h>

#include <QTest>

class TestDataStorage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewStorageIsNamedAndEmpty()
    {
        const DDataStorage storage("Store"_s);
        QCOMPARE(storage.objectName(), "Store"_s);
        QVERIFY(!storage.hasData("level"_s));
        QVERIFY(!storage.data("level"_s).isValid());
    }

    void theFallbackStandsInForAMissingValueOnly()
    {
        DDataStorage storage("Store"_s);
        QCOMPARE(storage.data("level"_s, 7), QVariant(7));
        storage.setData("level"_s, 3);
        QCOMPARE(storage.data("level"_s, 7), QVariant(3));
    }

    void aLaterValueReplacesAnEarlierOne()
    {
        DDataStorage storage("Store"_s);
        storage.setData("level"_s, 3);
        storage.setData("level"_s, "high"_s);
        QCOMPARE(storage.data("level"_s), QVariant("high"_s));
    }

    void anInvalidValueIsAValue()
    {
        DDataStorage storage("Store"_s);
        storage.setData("level"_s, QVariant());
        QVERIFY(storage.hasData("level"_s));
        QVERIFY(!storage.data("level"_s, 7).isValid());
    }

    void namesAreToldApartByCase()
    {
        DDataStorage storage("Store"_s);
        storage.setData("level"_s, 3);
        QVERIFY(!storage.hasData("Level"_s));
    }
};

QTEST_GUILESS_MAIN(TestDataStorage)

#include "test_data_storage.moc"
