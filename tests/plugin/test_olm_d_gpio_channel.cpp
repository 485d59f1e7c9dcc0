#include "message_log.h"
#include "olm_d_gpio_channel.h"
#include "text.h"
#include "virtual_slot.h"

#include <QAbstractItemModelTester>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QSignalSpy>
#include <QStringListModel>
#include <QtTest>

namespace {

QSharedPointer<DGpioChannel> channelOf(const QString& id)
{
    return DGpioChannel::create({{"id"_q, id}});
}

/// item(i) as QML calls it.
QVariant itemOf(OLM_DGpioChannel& model, int row)
{
    QVariant item("not called"_q);
    QMetaObject::invokeMethod(&model, "item", Q_RETURN_ARG(QVariant, item), Q_ARG(int, row));
    return item;
}

/// Opens the change hook.
class OpenedModel : public OLM_DGpioChannel
{
public:
    static int hookSlot() { return virtualSlotOf(&OpenedModel::emitChanged); }
    using OLM_DGpioChannel::emitChanged;
};

/// A list model whose one new virtual takes the first slot after the base's.
class NextSlotProbe : public QAbstractListModel
{
public:
    virtual void first();
};

/// A model with header texts of its own.
class TitledModel : public OLM_DGpioChannel
{
public:
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        return QVariantList({section, static_cast<int>(orientation), role});
    }
};

/// The model with the one answer that the model tester expects otherwise.
class FlatModel : public OLM_DGpioChannel
{
public:
    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : OLM_DGpioChannel::rowCount(parent);
    }
};

QStringList remarksOfTheModelTester(OLM_DGpioChannel& model)
{
    const MessageLog log;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
    model.append(channelOf("A"_q));
    model.append(channelOf("B"_q));
    model.append(channelOf("C"_q));
    return log.texts();
}

} // namespace

class TestChannelModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyModelHasNothing()
    {
        OLM_DGpioChannel model;
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.property("length"), QVariant(0));
        QCOMPARE(model.property("isEmpty"), QVariant(1));
        QVERIFY(model.items().isEmpty());
        QVERIFY(!itemOf(model, 0).isValid());
        QVERIFY(!model.header(0).isValid());
        QVERIFY(!model.data(model.index(0), Qt::UserRole).isValid());
    }

    void modelBelongsToTheParentItIsGiven()
    {
        QObject owner;
        QCOMPARE((new OLM_DGpioChannel(&owner))->parent(), &owner);
        QCOMPARE(OLM_DGpioChannel().parent(), nullptr);
    }

    void rolesAreQtsAndModelData()
    {
        QHash<int, QByteArray> expected = QStringListModel().roleNames();
        expected.insert(256, "modelData");
        QCOMPARE(OLM_DGpioChannel().roleNames(), expected);
    }

    void metaObjectHoldsTheSignalAndTheTwoInvokables()
    {
        const QMetaObject& meta = OLM_DGpioChannel::staticMetaObject;
        QCOMPARE(QByteArray(meta.className()), QByteArray("OLM_DGpioChannel"));
        QCOMPARE(meta.superClass(), &QAbstractListModel::staticMetaObject);
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 3);
        const QMetaMethod changed = meta.method(meta.methodOffset());
        QCOMPARE(changed.methodSignature(), QByteArray("changed()"));
        QCOMPARE(changed.methodType(), QMetaMethod::Signal);
        const QMetaMethod header = meta.method(meta.methodOffset() + 1);
        QCOMPARE(header.methodSignature(), QByteArray("header(int)"));
        QCOMPARE(header.parameterNames(), QList<QByteArray>({"section"}));
        QCOMPARE(header.methodType(), QMetaMethod::Method);
        QCOMPARE(header.access(), QMetaMethod::Public);
        QCOMPARE(header.returnType(), static_cast<int>(QMetaType::QVariant));
        const QMetaMethod item = meta.method(meta.methodOffset() + 2);
        QCOMPARE(item.methodSignature(), QByteArray("item(int)"));
        QCOMPARE(item.parameterNames(), QList<QByteArray>({"i"}));
        QCOMPARE(item.methodType(), QMetaMethod::Method);
        QCOMPARE(item.access(), QMetaMethod::Protected);
        QCOMPARE(item.returnType(), static_cast<int>(QMetaType::QVariant));
    }

    void propertiesAreNumbersThatNotifyByChanged()
    {
        const QMetaObject& meta = OLM_DGpioChannel::staticMetaObject;
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 2);
        const QVector<QByteArray> names = {"length", "isEmpty"};
        for (int i = 0; i < names.size(); ++i) {
            const QMetaProperty property = meta.property(meta.propertyOffset() + i);
            QCOMPARE(QByteArray(property.name()), names.at(i));
            QCOMPARE(property.userType(), static_cast<int>(QMetaType::Int));
            QCOMPARE(property.notifySignal().methodSignature(), QByteArray("changed()"));
            QVERIFY(property.isReadable());
            QVERIFY(!property.isWritable());
            QVERIFY(!property.isFinal());
        }
    }

    void changeHookTakesTheFirstSlotAfterTheBases()
    {
        QCOMPARE(OpenedModel::hookSlot(), virtualSlotOf(&NextSlotProbe::first));
    }

    void changeHookEmitsChanged()
    {
        OpenedModel model;
        QSignalSpy changed(&model, &OLM_DGpioChannel::changed);
        model.emitChanged();
        QCOMPARE(changed.count(), 1);
    }

    void appendAnnouncesTheRowThenTheChange()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        QStringList events;
        const auto note = [&](const QString& event) {
            events.append("%1 with %2 rows"_q.arg(event).arg(model.rowCount()));
        };
        connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this,
                [&](const QModelIndex& parent, int first, int last) {
                    note("about to insert %1-%2 %3"_q.arg(first).arg(last).arg(parent.isValid()));
                });
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [&](const QModelIndex& parent, int first, int last) {
                    note("inserted %1-%2 %3"_q.arg(first).arg(last).arg(parent.isValid()));
                });
        connect(&model, &OLM_DGpioChannel::changed, this, [&] { note("changed"_q); });
        const QSharedPointer<DGpioChannel> channel = channelOf("B"_q);
        model.append(channel);
        QCOMPARE(events, QStringList({"about to insert 1-1 0 with 1 rows"_q, "inserted 1-1 0 with 2 rows"_q,
                                      "changed with 2 rows"_q}));
        QCOMPARE(model.items().last(), channel);
        QCOMPARE(model.property("length"), QVariant(2));
        QCOMPARE(model.property("isEmpty"), QVariant(0));
    }

    void rowsStandInTheOrderOfTheirAppending()
    {
        OLM_DGpioChannel model;
        for (int i = 0; i < 100; ++i) {
            model.append(channelOf(QString::number(i)));
        }
        QCOMPARE(model.rowCount(), 100);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(model.items().at(i)->id(), QString::number(i));
        }
    }

    void rowCountIgnoresItsParent()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        QCOMPARE(model.rowCount(model.index(0)), 1);
    }

    void dataIsTheObjectUnderModelDataOnly()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        const QVariant object = model.data(model.index(0), 256);
        QCOMPARE(object.userType(), static_cast<int>(QMetaType::QObjectStar));
        QCOMPARE(object.value<QObject*>(), model.items().first().data());
        for (const int role :
             {static_cast<int>(Qt::DisplayRole), static_cast<int>(Qt::EditRole), 255, 257, -1}) {
            QVERIFY2(!model.data(model.index(0), role).isValid(), QByteArray::number(role).constData());
        }
    }

    void dataOutsideTheRowsIsInvalid()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        OLM_DGpioChannel longer;
        longer.append(channelOf("A"_q));
        longer.append(channelOf("B"_q));
        QVERIFY(!model.data(QModelIndex(), 256).isValid());
        QVERIFY(!model.data(longer.index(1), 256).isValid());
    }

    void headersAreInvalidEverywhere_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<Qt::Orientation>("orientation");
        QTest::newRow("empty, horizontal") << 0 << Qt::Horizontal;
        QTest::newRow("empty, vertical") << 0 << Qt::Vertical;
        QTest::newRow("a row, horizontal") << 1 << Qt::Horizontal;
        QTest::newRow("a row, vertical") << 1 << Qt::Vertical;
    }
    void headersAreInvalidEverywhere()
    {
        QFETCH(int, rows);
        QFETCH(Qt::Orientation, orientation);
        OLM_DGpioChannel model;
        for (int i = 0; i < rows; ++i) {
            model.append(channelOf("A"_q));
        }
        for (const int role : {static_cast<int>(Qt::DisplayRole), 256}) {
            for (const int section : {-1, 0, 1}) {
                QVERIFY(!model.headerData(section, orientation, role).isValid());
                QVERIFY(!model.header(section).isValid());
            }
        }
    }

    void headerAsksForTheHorizontalTextOfTheSubclass()
    {
        TitledModel model;
        QCOMPARE(model.header(5), QVariant(QVariantList({5, static_cast<int>(Qt::Horizontal),
                                                         static_cast<int>(Qt::DisplayRole)})));
    }

    void itemIsTheChannelUnderItsOwnPointerType()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        const QVariant item = itemOf(model, 0);
        QCOMPARE(QByteArray(item.typeName()), QByteArray("DGpioChannel*"));
        QCOMPARE(item.value<DGpioChannel*>(), model.items().first().data());
    }

    void itemMakesTheChannelCppsOwn()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        DGpioChannel* channel = model.items().first().data();
        QQmlEngine::setObjectOwnership(channel, QQmlEngine::JavaScriptOwnership);
        itemOf(model, 0);
        QCOMPARE(QQmlEngine::objectOwnership(channel), QQmlEngine::CppOwnership);
    }

    void itemOutsideTheRowsIsInvalidAndChangesNoOwnership()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        DGpioChannel* channel = model.items().first().data();
        QQmlEngine::setObjectOwnership(channel, QQmlEngine::JavaScriptOwnership);
        for (const int row : {-1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
            QVERIFY(!itemOf(model, row).isValid());
        }
        QCOMPARE(QQmlEngine::objectOwnership(channel), QQmlEngine::JavaScriptOwnership);
    }

    void collectionOfGarbageSparesTheChannel_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("by its item") << "model.item(0).id"_q;
        QTest::newRow("by the data of its row") << "model.data(model.index(0, 0), 256).id"_q;
    }
    void collectionOfGarbageSparesTheChannel()
    {
        QFETCH(QString, way);
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        const QPointer<DGpioChannel> channel(model.items().first().data());
        QQmlEngine engine;
        engine.rootContext()->setContextProperty("model"_q, &model);
        bool isUndefined = true;
        QQmlExpression read(engine.rootContext(), nullptr, way);
        QCOMPARE(read.evaluate(&isUndefined), QVariant("A"_q));
        QVERIFY(!isUndefined);
        engine.collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!channel.isNull());
    }

    void collectionOfGarbageSparesTheChannelThatCppHandsOn()
    {
        OLM_DGpioChannel model;
        model.append(channelOf("A"_q));
        const QPointer<DGpioChannel> channel(model.items().first().data());
        QJSEngine engine;
        QCOMPARE(engine.newQObject(channel).property("id"_q).toString(), "A"_q);
        engine.collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!channel.isNull());
    }

    void qmlFollowsTheLength()
    {
        OLM_DGpioChannel model;
        QQmlEngine engine;
        engine.rootContext()->setContextProperty("model"_q, &model);
        QQmlExpression read(engine.rootContext(), nullptr, "model.length + ' ' + model.isEmpty"_q);
        read.setNotifyOnValueChanged(true);
        QCOMPARE(read.evaluate(), QVariant("0 1"_q));
        QSignalSpy changed(&read, &QQmlExpression::valueChanged);
        model.append(channelOf("A"_q));
        QVERIFY(changed.count() >= 1);
        QCOMPARE(read.evaluate(), QVariant("1 0"_q));
    }

    void modelSharesItsChannels()
    {
        const QSharedPointer<DGpioChannel> kept = channelOf("A"_q);
        QWeakPointer<DGpioChannel> given;
        {
            OLM_DGpioChannel model;
            model.append(kept);
            QSharedPointer<DGpioChannel> channel = channelOf("B"_q);
            given = channel;
            model.append(channel);
            channel.clear();
            QVERIFY(!given.isNull());
        }
        QVERIFY(given.isNull());
        QCOMPARE(kept->id(), "A"_q);
    }

    void nullChannelIsARowWithoutAnObject()
    {
        OLM_DGpioChannel model;
        model.append(QSharedPointer<DGpioChannel>());
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.data(model.index(0), 256).value<QObject*>(), nullptr);
        QCOMPARE(itemOf(model, 0).value<DGpioChannel*>(), nullptr);
    }

    void modelTesterRemarksOnlyThatARowHasRowsItself()
    {
        OLM_DGpioChannel model;
        const QStringList remarks = remarksOfTheModelTester(model);
        QVERIFY(!remarks.isEmpty());
        for (const QString& remark : remarks) {
            QVERIFY2(remark.startsWith("FAIL! childIndex.isValid() () returned FALSE"_q), qPrintable(remark));
        }
    }

    void modelTesterRemarksNothingElse()
    {
        FlatModel model;
        QCOMPARE(remarksOfTheModelTester(model), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestChannelModel)
#include "test_olm_d_gpio_channel.moc"
