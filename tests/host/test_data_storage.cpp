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
        QVERIFY(!storage.data("level"_s).isValid());
    }

    void theLatestValueOfANameIsGivenElseTheFallback()
    {
        DDataStorage storage("Store"_s);
        QCOMPARE(storage.data("level"_s, 7), QVariant(7));
        for (const QVariant& value : {QVariant(3), QVariant("high"_s), QVariant()}) {
            storage.setData("level"_s, value);
            QCOMPARE(storage.data("level"_s, 7), value);
        }
        QCOMPARE(storage.data("Level"_s, 7), QVariant(7));
    }
};

QTEST_GUILESS_MAIN(TestDataStorage)
#include "test_data_storage.moc"
