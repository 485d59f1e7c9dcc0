#include "literals.h"
#include "meta_object_text.h"
#include "olm_d_gpio_channel.h"
#include "quiet_test.h"
#include "rows.h"
#include "virtual_slot.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>

class TestChannelModel : public QuietTest
{
    Q_OBJECT

    static QSharedPointer<DGpioChannel> channelOf(const QString& id)
    {
        return DGpioChannel::create({{"id"_s, id}});
    }

    /// item(i) as QML calls it.
    static QVariant itemOf(OLM_DGpioChannel& model, int row)
    {
        QVariant item("not called"_s);
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

    /// A model that has these channels.
    class FilledModel : public OLM_DGpioChannel
    {
    public:
        explicit FilledModel(const QStringList& ids = {"A"_s})
        {
            for (const QString& id : ids) {
                append(channelOf(id));
            }
        }
    };

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

    void metaObjectHoldsTwoNumbersTheSignalAndTheTwoInvokables()
    {
        QCOMPARE(metaObjectText(OLM_DGpioChannel::staticMetaObject),
                 QStringList({"OLM_DGpioChannel: QAbstractListModel"_s,
                              "property int length: readable, changed()"_s,
                              "property int isEmpty: readable, changed()"_s, "public signal void changed()"_s,
                              "public method QVariant header(int section)"_s,
                              "protected method QVariant item(int i)"_s}));
    }

    void changeHookTakesTheFirstSlotAfterTheBases()
    {
        QCOMPARE(OpenedModel::hookSlot(), virtualSlotOf(&NextSlotProbe::first));
    }

    void changeHookEmitsChanged()
    {
        OpenedModel model;
        const QSignalSpy changed(&model, &OLM_DGpioChannel::changed);
        model.emitChanged();
        QCOMPARE(changed.count(), 1);
    }

    void appendAnnouncesTheRowThenTheChange()
    {
        FilledModel model;
        QStringList events;
        const auto note = [&](const QString& event) {
            return [&, event](const QModelIndex& parent, int first, int last) {
                events.append("%1 %2-%3 %4 with %5 rows"_s.arg(event)
                                  .arg(first)
                                  .arg(last)
                                  .arg(parent.isValid())
                                  .arg(model.rowCount()));
            };
        };
        connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this, note("about to insert"_s));
        connect(&model, &QAbstractItemModel::rowsInserted, this, note("inserted"_s));
        connect(&model, &OLM_DGpioChannel::changed, this, [&] { note("changed"_s)({}, 0, model.length()); });
        const QSharedPointer<DGpioChannel> channel = channelOf("B"_s);
        model.append(channel);
        QCOMPARE(events, QStringList({"about to insert 1-1 0 with 1 rows"_s, "inserted 1-1 0 with 2 rows"_s,
                                      "changed 0-2 0 with 2 rows"_s}));
        QCOMPARE(model.items().last(), channel);
        QCOMPARE(model.property("length"), QVariant(2));
        QCOMPARE(model.property("isEmpty"), QVariant(0));
    }

    void rowsStandInTheOrderOfTheirAppending()
    {
        QStringList ids;
        for (int i = 0; i < 100; ++i) {
            ids.append(QString::number(i));
        }
        const FilledModel model(ids);
        QCOMPARE(model.rowCount(), 100);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(model.items().at(i)->id(), ids.at(i));
        }
    }

    void rowCountIgnoresItsParent()
    {
        FilledModel model;
        QCOMPARE(model.rowCount(model.index(0)), 1);
    }

    void dataIsTheObjectUnderModelDataOnly()
    {
        FilledModel model;
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
        FilledModel model;
        const FilledModel longer({"A"_s, "B"_s});
        QVERIFY(!model.data(QModelIndex(), 256).isValid());
        QVERIFY(!model.data(longer.index(1), 256).isValid());
    }

    void headersAreInvalidEverywhere()
    {
        OLM_DGpioChannel empty;
        FilledModel filled;
        for (OLM_DGpioChannel* model : {&empty, static_cast<OLM_DGpioChannel*>(&filled)}) {
            for (const int section : {-1, 0, 1}) {
                QVERIFY(!model->header(section).isValid());
                for (const int role : {static_cast<int>(Qt::DisplayRole), 256}) {
                    QVERIFY(!model->headerData(section, Qt::Horizontal, role).isValid());
                    QVERIFY(!model->headerData(section, Qt::Vertical, role).isValid());
                }
            }
        }
    }

    void headerAsksForTheHorizontalTextOfTheSubclass()
    {
        TitledModel model;
        QCOMPARE(model.header(5), QVariant(QVariantList({5, static_cast<int>(Qt::Horizontal),
                                                         static_cast<int>(Qt::DisplayRole)})));
    }

    void itemIsTheChannelUnderItsOwnPointerTypeAndCppsOwn()
    {
        FilledModel model;
        DGpioChannel* channel = model.items().first().data();
        QQmlEngine::setObjectOwnership(channel, QQmlEngine::JavaScriptOwnership);
        const QVariant item = itemOf(model, 0);
        QCOMPARE(QByteArray(item.typeName()), QByteArray("DGpioChannel*"));
        QCOMPARE(item.value<DGpioChannel*>(), channel);
        QCOMPARE(QQmlEngine::objectOwnership(channel), QQmlEngine::CppOwnership);
    }

    void itemOutsideTheRowsIsInvalidAndChangesNoOwnership()
    {
        FilledModel model;
        DGpioChannel* channel = model.items().first().data();
        QQmlEngine::setObjectOwnership(channel, QQmlEngine::JavaScriptOwnership);
        for (const int row : {-1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
            QVERIFY(!itemOf(model, row).isValid());
        }
        QCOMPARE(QQmlEngine::objectOwnership(channel), QQmlEngine::JavaScriptOwnership);
    }

    void collectionOfGarbageSparesTheChannel_data()
    {
        const Rows<QString> row("way");
        row("by its item", "model.item(0).id");
        row("by the data of its row", "model.data(model.index(0, 0), 256).id");
    }
    void collectionOfGarbageSparesTheChannel()
    {
        QFETCH(QString, way);
        FilledModel model;
        const QPointer<DGpioChannel> channel(model.items().first().data());
        QQmlEngine engine;
        engine.rootContext()->setContextProperty("model"_s, &model);
        bool isUndefined = true;
        QQmlExpression read(engine.rootContext(), nullptr, way);
        QCOMPARE(read.evaluate(&isUndefined), QVariant("A"_s));
        QVERIFY(!isUndefined);
        engine.collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!channel.isNull());
    }

    void collectionOfGarbageSparesTheChannelThatCppHandsOn()
    {
        FilledModel model;
        const QPointer<DGpioChannel> channel(model.items().first().data());
        QJSEngine engine;
        QCOMPARE(engine.newQObject(channel).property("id"_s).toString(), "A"_s);
        engine.collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!channel.isNull());
    }

    void qmlFollowsTheLength()
    {
        OLM_DGpioChannel model;
        QQmlEngine engine;
        engine.rootContext()->setContextProperty("model"_s, &model);
        QQmlExpression read(engine.rootContext(), nullptr, "model.length + ' ' + model.isEmpty"_s);
        read.setNotifyOnValueChanged(true);
        QCOMPARE(read.evaluate(), QVariant("0 1"_s));
        QSignalSpy changed(&read, &QQmlExpression::valueChanged);
        model.append(channelOf("A"_s));
        QVERIFY(changed.count() >= 1);
        QCOMPARE(read.evaluate(), QVariant("1 0"_s));
    }

    void modelSharesItsChannels()
    {
        const QSharedPointer<DGpioChannel> kept = channelOf("A"_s);
        QWeakPointer<DGpioChannel> given;
        {
            OLM_DGpioChannel model;
            model.append(kept);
            QSharedPointer<DGpioChannel> channel = channelOf("B"_s);
            given = channel;
            model.append(channel);
            channel.clear();
            QVERIFY(!given.isNull());
        }
        QVERIFY(given.isNull());
        QCOMPARE(kept->id(), "A"_s);
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
        fillUnderTheModelTester(model);
        const QStringList remarks = takeTexts();
        QVERIFY(!remarks.isEmpty());
        for (const QString& remark : remarks) {
            QVERIFY2(remark.startsWith("FAIL! childIndex.isValid() () returned FALSE"_s), qPrintable(remark));
        }
    }

    void modelTesterRemarksNothingElse()
    {
        FlatModel model;
        fillUnderTheModelTester(model);
    }

private:
    static void fillUnderTheModelTester(OLM_DGpioChannel& model)
    {
        const QAbstractItemModelTester tester(&model,
                                              QAbstractItemModelTester::FailureReportingMode::Warning);
        for (const QString& id : {"A"_s, "B"_s, "C"_s}) {
            model.append(channelOf(id));
        }
    }
};

QTEST_GUILESS_MAIN(TestChannelModel)
#include "test_olm_d_gpio_channel.moc"
