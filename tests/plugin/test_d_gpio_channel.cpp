#include "d_gpio_channel.h"
#include "exact_compare.h"
#include "message_log.h"
#include "sharing_spy.h"
#include "text.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <limits>
#include <type_traits>

Q_DECLARE_METATYPE(DGpioChannel::EnChannelType)

namespace {

QVariantMap subEntry(const QVariant& id, const QVariant& value)
{
    return {{"id"_q, id}, {"value"_q, value}};
}

QVariantMap entryWith(const QVariant& subEntries)
{
    return {{"id"_q, "START"_q}, {"name"_q, "Start button"_q}, {"value"_q, subEntries}};
}

/// Counts each change signal of a channel.
class ChangeCount
{
public:
    explicit ChangeCount(DGpioChannel& channel)
        : id(&channel, &DGpioChannel::idChanged)
        , name(&channel, &DGpioChannel::nameChanged)
        , label(&channel, &DGpioChannel::labelChanged)
        , value(&channel, &DGpioChannel::valueChanged)
        , type(&channel, &DGpioChannel::typeChanged)
    {}

    QVector<int> counts() const
    {
        return {id.count(), name.count(), label.count(), value.count(), type.count()};
    }

private:
    QSignalSpy id;
    QSignalSpy name;
    QSignalSpy label;
    QSignalSpy value;
    QSignalSpy type;
};

} // namespace

class TestGpioChannel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newChannelIsEmptyAndUnknown()
    {
        const MessageLog log;
        {
            const DGpioChannel channel;
            QCOMPARE(channel.objectName(), "DGpioChannel"_q);
            QCOMPARE(channel.parent(), nullptr);
            QCOMPARE(channel.id(), QString());
            QCOMPARE(channel.name(), QString());
            QCOMPARE(channel.label(), QString());
            QVERIFY(!channel.value().isValid());
            QCOMPARE(channel.type(), DGpioChannel::CeCtUnknown);
            QCOMPARE(channel.parameters(), QVariantMap());
        }
        QCOMPARE(log.texts(), QStringList());
    }

    void channelBelongsToTheParentItIsGiven()
    {
        QObject owner;
        const QPointer<DGpioChannel> channel(new DGpioChannel(&owner));
        QCOMPARE(channel->parent(), &owner);
    }

    void typesHaveTheirNumbers()
    {
        const QMetaObject& meta = DGpioChannel::staticMetaObject;
        QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 1);
        const QMetaEnum types = meta.enumerator(meta.enumeratorOffset());
        QCOMPARE(QByteArray(types.name()), QByteArray("EnChannelType"));
        QVERIFY(!types.isFlag());
        const QVector<QByteArray> names = {"CeCtUnknown", "CeCtAnaIn",  "CeCtAnaOut",
                                           "CeCtBinIn",   "CeCtBinOut", "_CeCtNbr"};
        QCOMPARE(types.keyCount(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            QCOMPARE(QByteArray(types.key(i)), names.at(i));
            QCOMPARE(types.value(i), i);
        }
    }

    void typeNamesOfTheConfigurationAreThese()
    {
        QCOMPARE(DGpioChannel::c_channelTypesMap, (QMap<QString, DGpioChannel::EnChannelType>{
                                                      {"analogInput"_q, DGpioChannel::CeCtAnaIn},
                                                      {"analogOutput"_q, DGpioChannel::CeCtAnaOut},
                                                      {"digitalInput"_q, DGpioChannel::CeCtBinIn},
                                                      {"digitalOutput"_q, DGpioChannel::CeCtBinOut},
                                                  }));
    }

    void propertiesStandInOrderReadableFinalAndNotified()
    {
        struct Expected
        {
            QByteArray name;
            QByteArray type;
            QByteArray signal;
        };
        const QVector<Expected> properties = {{"id", "QString", "idChanged()"},
                                              {"name", "QString", "nameChanged()"},
                                              {"label", "QString", "labelChanged()"},
                                              {"value", "QVariant", "valueChanged()"},
                                              {"type", "EnChannelType", "typeChanged()"}};
        const QMetaObject& meta = DGpioChannel::staticMetaObject;
        QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("DObject"));
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), properties.size());
        for (int i = 0; i < properties.size(); ++i) {
            const QMetaProperty property = meta.property(meta.propertyOffset() + i);
            QCOMPARE(QByteArray(property.name()), properties.at(i).name);
            QCOMPARE(QByteArray(property.typeName()), properties.at(i).type);
            QCOMPARE(property.notifySignal().methodSignature(), properties.at(i).signal);
            QVERIFY(property.isReadable());
            QVERIFY(!property.isWritable());
            QVERIFY(!property.isResettable());
            QVERIFY(property.isFinal());
            QVERIFY(!property.isConstant());
        }
    }

    void methodsStandInOrder()
    {
        const QMetaObject& meta = DGpioChannel::staticMetaObject;
        QVector<QByteArray> signatures;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            signatures.append(meta.method(i).methodSignature());
        }
        QCOMPARE(signatures,
                 QVector<QByteArray>({"idChanged()", "nameChanged()", "labelChanged()", "valueChanged()",
                                      "typeChanged()", "sigSwitchChannelValue(QString)", "isSwitchable()"}));
        for (int i = meta.methodOffset(); i < meta.methodCount() - 1; ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
        }
        const QMetaMethod switched = meta.method(meta.methodCount() - 2);
        QCOMPARE(switched.parameterNames(), QList<QByteArray>({"channelId"}));
        const QMetaMethod isSwitchable = meta.method(meta.methodCount() - 1);
        QCOMPARE(isSwitchable.methodType(), QMetaMethod::Method);
        QCOMPARE(isSwitchable.access(), QMetaMethod::Public);
        QCOMPARE(isSwitchable.returnType(), static_cast<int>(QMetaType::Bool));
    }

    void propertySystemReadsButCannotWrite()
    {
        DGpioChannel channel;
        channel.setId("START"_q);
        channel.setName("Start"_q);
        channel.setLabel("label"_q);
        channel.setType(DGpioChannel::CeCtBinIn);
        channel.setValue(1);
        const QMap<QByteArray, QVariant> values = {
            {"id", "START"_q}, {"name", "Start"_q}, {"label", "label"_q}, {"value", 1}, {"type", 3}};
        for (auto item = values.cbegin(); item != values.cend(); ++item) {
            QVERIFY2(!channel.setProperty(item.key().constData(), QVariant(0)), item.key().constData());
            QCOMPARE(channel.property(item.key().constData()), item.value());
        }
    }

    void changeOfATextIsNotifiedOnce_data()
    {
        QTest::addColumn<QStringList>("properties");
        for (const char* property : {"id", "name", "label"}) {
            QTest::newRow(property) << QStringList({"id"_q, "name"_q, "label"_q, "value"_q, "type"_q});
        }
    }
    void changeOfATextIsNotifiedOnce()
    {
        QFETCH(QStringList, properties);
        const QString changing = QString::fromLatin1(QTest::currentDataTag());
        using Setter = void (DGpioChannel::*)(const QString&);
        const QMap<QString, Setter> setters = {{"id"_q, &DGpioChannel::setId},
                                               {"name"_q, &DGpioChannel::setName},
                                               {"label"_q, &DGpioChannel::setLabel}};
        const Setter set = setters.value(changing);
        DGpioChannel channel;
        const ChangeCount changes(channel);
        QVector<int> expected(properties.size(), 0);
        (channel.*set)(QString());
        (channel.*set)(""_q);
        QCOMPARE(changes.counts(), expected);
        (channel.*set)("text"_q);
        (channel.*set)("text"_q);
        expected[properties.indexOf(changing)] = 1;
        QCOMPARE(changes.counts(), expected);
        QCOMPARE(channel.property(changing.toLatin1().constData()), QVariant("text"_q));
        (channel.*set)("TEXT"_q);
        expected[properties.indexOf(changing)] = 2;
        QCOMPARE(changes.counts(), expected);
    }

    void setNameKeepsLongNames()
    {
        DGpioChannel channel;
        channel.setName(QString(100, QLatin1Char('x')));
        QCOMPARE(channel.name().size(), 100);
    }

    void changeOfTheTypeIsNotifiedOnce()
    {
        DGpioChannel channel;
        const ChangeCount changes(channel);
        channel.setType(DGpioChannel::CeCtUnknown);
        channel.setType(DGpioChannel::CeCtBinOut);
        channel.setType(DGpioChannel::CeCtBinOut);
        QCOMPARE(changes.counts(), QVector<int>({0, 0, 0, 0, 1}));
        QCOMPARE(channel.type(), DGpioChannel::CeCtBinOut);
    }

    void typeOutsideTheNamedOnesIsStored_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("7") << 7;
        QTest::newRow("77") << 77;
        QTest::newRow("-1") << -1;
        QTest::newRow("the lowest") << std::numeric_limits<int>::min();
        QTest::newRow("the highest") << std::numeric_limits<int>::max();
    }
    void typeOutsideTheNamedOnesIsStored()
    {
        QFETCH(int, number);
        DGpioChannel channel;
        const ChangeCount changes(channel);
        channel.setType(static_cast<DGpioChannel::EnChannelType>(number));
        channel.setType(static_cast<DGpioChannel::EnChannelType>(number));
        QCOMPARE(static_cast<int>(channel.type()), number);
        QCOMPARE(channel.property("type").toInt(), number);
        QCOMPARE(changes.counts(), QVector<int>({0, 0, 0, 0, 1}));
        QVERIFY(!channel.isSwitchable());
        QVERIFY(!channel.setValue(1));
    }

    void typeIsHeldAsAnInt()
    {
        const bool isInt = std::is_same_v<std::underlying_type_t<DGpioChannel::EnChannelType>, int>;
        QVERIFY(isInt);
    }

    void onlyBinaryInputsAreSwitchable_data()
    {
        QTest::addColumn<DGpioChannel::EnChannelType>("type");
        QTest::addColumn<bool>("switchable");
        QTest::newRow("unknown") << DGpioChannel::CeCtUnknown << false;
        QTest::newRow("analogue input") << DGpioChannel::CeCtAnaIn << false;
        QTest::newRow("analogue output") << DGpioChannel::CeCtAnaOut << false;
        QTest::newRow("binary input") << DGpioChannel::CeCtBinIn << true;
        QTest::newRow("binary output") << DGpioChannel::CeCtBinOut << false;
        QTest::newRow("the count") << DGpioChannel::_CeCtNbr << false;
    }
    void onlyBinaryInputsAreSwitchable()
    {
        QFETCH(DGpioChannel::EnChannelType, type);
        QFETCH(bool, switchable);
        DGpioChannel channel;
        channel.setType(type);
        bool answer = !switchable;
        QVERIFY(QMetaObject::invokeMethod(&channel, "isSwitchable", Q_RETURN_ARG(bool, answer)));
        QCOMPARE(answer, switchable);
    }

    void setValueTellsWhetherTheValueSuitsTheType_data()
    {
        QTest::addColumn<DGpioChannel::EnChannelType>("type");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("suits");
        const QVariant map = QVariantMap({{"a"_q, 1}});
        QTest::newRow("unknown, a number") << DGpioChannel::CeCtUnknown << QVariant(1) << false;
        QTest::newRow("analogue input, a number") << DGpioChannel::CeCtAnaIn << QVariant(512) << true;
        QTest::newRow("analogue input, a text") << DGpioChannel::CeCtAnaIn << QVariant("x"_q) << true;
        QTest::newRow("analogue input, a map") << DGpioChannel::CeCtAnaIn << map << false;
        QTest::newRow("analogue output, a number") << DGpioChannel::CeCtAnaOut << QVariant(5.5) << true;
        QTest::newRow("analogue output, a map") << DGpioChannel::CeCtAnaOut << map << false;
        QTest::newRow("analogue output, bytes")
            << DGpioChannel::CeCtAnaOut << QVariant(QByteArray("1")) << true;
        QTest::newRow("binary input, the number 1") << DGpioChannel::CeCtBinIn << QVariant(1) << true;
        QTest::newRow("binary input, a bool") << DGpioChannel::CeCtBinIn << QVariant(true) << true;
        QTest::newRow("binary input, a map") << DGpioChannel::CeCtBinIn << map << false;
        QTest::newRow("binary output, a text") << DGpioChannel::CeCtBinOut << QVariant("on"_q) << true;
        QTest::newRow("binary output, a map") << DGpioChannel::CeCtBinOut << map << false;
        QTest::newRow("the count, a number") << DGpioChannel::_CeCtNbr << QVariant(1) << false;
    }
    void setValueTellsWhetherTheValueSuitsTheType()
    {
        QFETCH(DGpioChannel::EnChannelType, type);
        QFETCH(QVariant, value);
        QFETCH(bool, suits);
        DGpioChannel channel;
        channel.setType(type);
        QSignalSpy changed(&channel, &DGpioChannel::valueChanged);
        QCOMPARE(channel.setValue(value), suits);
        COMPARE_EXACTLY(channel.value(), value);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(channel.setValue(value), suits);
        QCOMPARE(changed.count(), 1);
    }

    void invalidValueSuitsNoTypeAndReplacesAValue()
    {
        DGpioChannel channel;
        channel.setType(DGpioChannel::CeCtBinIn);
        QVERIFY(channel.setValue(1));
        QSignalSpy changed(&channel, &DGpioChannel::valueChanged);
        QVERIFY(!channel.setValue(QVariant()));
        QVERIFY(!channel.value().isValid());
        QCOMPARE(changed.count(), 1);
    }

    void valueIsStoredUnlessTheStoredOneEqualsIt_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QVariant>("given");
        const QVariantList values = {QVariant(),
                                     true,
                                     false,
                                     1,
                                     0,
                                     1U,
                                     1LL,
                                     QVariant::fromValue<qint8>(1),
                                     QVariant::fromValue<quint16>(1),
                                     1.0,
                                     2.5,
                                     "true"_q,
                                     "yes"_q,
                                     "1"_q,
                                     "01"_q,
                                     ""_q,
                                     QByteArray("1"),
                                     QVariantList({1}),
                                     QStringList({"1"_q}),
                                     QVariantMap({{"1"_q, 1}})};
        for (const QVariant& stored : values) {
            for (const QVariant& given : values) {
                QTest::newRow(qPrintable(exactly(stored) + " then "_q + exactly(given))) << stored << given;
            }
        }
    }
    void valueIsStoredUnlessTheStoredOneEqualsIt()
    {
        QFETCH(QVariant, stored);
        QFETCH(QVariant, given);
        DGpioChannel channel;
        channel.setValue(stored);
        COMPARE_EXACTLY(channel.value(), stored);
        QSignalSpy changed(&channel, &DGpioChannel::valueChanged);
        channel.setValue(given);
        const bool equal = stored == given;
        QCOMPARE(changed.count(), equal ? 0 : 1);
        COMPARE_EXACTLY(channel.value(), equal ? stored : given);
    }

    void givenValueIsConvertedToTheTypeOfTheStoredOne()
    {
        DGpioChannel channel;
        channel.setValue("yes"_q);
        QSignalSpy changed(&channel, &DGpioChannel::valueChanged);
        channel.setValue(true);
        QCOMPARE(changed.count(), 1);
        COMPARE_EXACTLY(channel.value(), QVariant(true));
        channel.setValue("yes"_q);
        QCOMPARE(changed.count(), 1);
        COMPARE_EXACTLY(channel.value(), QVariant(true));
    }

    void createOfAnEmptyMapIsNull() { QVERIFY(DGpioChannel::create({}).isNull()); }

    void createWithOnlyAnIdLeavesTheRestEmpty()
    {
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"id"_q, "START"_q}});
        QCOMPARE(channel->id(), "START"_q);
        QCOMPARE(channel->name(), QString());
        QCOMPARE(channel->label(), QString());
        QVERIFY(!channel->value().isValid());
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(channel->parameters(), QVariantMap());
        QCOMPARE(channel->parent(), nullptr);
    }

    void createConvertsIdAndNameToText()
    {
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"id"_q, 12}, {"name"_q, 3.5}});
        QCOMPARE(channel->id(), "12"_q);
        QCOMPARE(channel->name(), "3.5"_q);
    }

    void createOfForeignKeysIsAnEmptyChannel()
    {
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"visibility"_q, "public"_q}});
        QVERIFY(!channel.isNull());
        QCOMPARE(channel->id(), QString());
    }

    void createCutsTheNameTo64Characters_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("kept");
        QTest::newRow("63") << 63 << 63;
        QTest::newRow("64") << 64 << 64;
        QTest::newRow("65") << 65 << 64;
        QTest::newRow("1000") << 1000 << 64;
    }
    void createCutsTheNameTo64Characters()
    {
        QFETCH(int, length);
        QFETCH(int, kept);
        QString name;
        for (int i = 0; i < length; ++i) {
            name.append(QChar(0x100 + i));
        }
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"name"_q, name}});
        QCOMPARE(channel->name(), name.mid(0, kept));
    }

    void createTakesTheTypeFromItsSubEntry_data()
    {
        QTest::addColumn<QVariant>("name");
        QTest::addColumn<DGpioChannel::EnChannelType>("type");
        QTest::newRow("analogInput") << QVariant("analogInput"_q) << DGpioChannel::CeCtAnaIn;
        QTest::newRow("analogOutput") << QVariant("analogOutput"_q) << DGpioChannel::CeCtAnaOut;
        QTest::newRow("digitalInput") << QVariant("digitalInput"_q) << DGpioChannel::CeCtBinIn;
        QTest::newRow("digitalOutput") << QVariant("digitalOutput"_q) << DGpioChannel::CeCtBinOut;
        QTest::newRow("DigitalOutput") << QVariant("DigitalOutput"_q) << DGpioChannel::CeCtUnknown;
        QTest::newRow("padded") << QVariant("digitalOutput "_q) << DGpioChannel::CeCtUnknown;
        QTest::newRow("empty") << QVariant(""_q) << DGpioChannel::CeCtUnknown;
        QTest::newRow("the number of a type") << QVariant(3) << DGpioChannel::CeCtUnknown;
        QTest::newRow("an invalid value") << QVariant() << DGpioChannel::CeCtUnknown;
        QTest::newRow("bytes") << QVariant(QByteArray("digitalInput")) << DGpioChannel::CeCtBinIn;
    }
    void createTakesTheTypeFromItsSubEntry()
    {
        QFETCH(QVariant, name);
        QFETCH(DGpioChannel::EnChannelType, type);
        const auto channel = DGpioChannel::create(entryWith(QVariantList({subEntry("type"_q, name)})));
        QCOMPARE(channel->type(), type);
        COMPARE_EXACTLY(channel->parameters(), QVariantMap({{"type"_q, name}}));
        QVERIFY(!channel->value().isValid());
        QCOMPARE(channel->id(), "START"_q);
        QCOMPARE(channel->name(), "Start button"_q);
    }

    void keyOfTheTypeIsExact()
    {
        const auto channel =
            DGpioChannel::create(entryWith(QVariantList({subEntry("Type"_q, "digitalInput"_q)})));
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(channel->parameters(), QVariantMap({{"Type"_q, "digitalInput"_q}}));
    }

    void lastOfSeveralTypesWins()
    {
        const auto known = DGpioChannel::create(entryWith(
            QVariantList({subEntry("type"_q, "digitalInput"_q), subEntry("type"_q, "analogOutput"_q)})));
        QCOMPARE(known->type(), DGpioChannel::CeCtAnaOut);
        const auto unknown = DGpioChannel::create(
            entryWith(QVariantList({subEntry("type"_q, "digitalInput"_q), subEntry("type"_q, "relay"_q)})));
        QCOMPARE(unknown->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(unknown->parameters(), QVariantMap({{"type"_q, "relay"_q}}));
    }

    void subEntriesBecomeParametersAsTheyStand()
    {
        const QVariantList nested = {1, 2};
        const auto channel = DGpioChannel::create(entryWith(QVariantList({
            subEntry("link"_q, "line0"_q),
            subEntry("scale"_q, 2.5),
            subEntry("list"_q, nested),
            subEntry(5, true),
            subEntry("again"_q, 1),
            subEntry("again"_q, 2),
            QVariantMap({{"id"_q, "valueless"_q}}),
            QVariantMap({{"value"_q, "keyless"_q}}),
        })));
        COMPARE_EXACTLY(channel->parameters(), QVariantMap({{"link"_q, "line0"_q},
                                                            {"scale"_q, 2.5},
                                                            {"list"_q, nested},
                                                            {"5"_q, true},
                                                            {"again"_q, 2},
                                                            {"valueless"_q, QVariant()},
                                                            {""_q, "keyless"_q}}));
    }

    void malformedSubEntriesAreSkipped()
    {
        const QVariantHash hash = {{"id"_q, "type"_q}, {"value"_q, "digitalInput"_q}};
        const auto channel = DGpioChannel::create(
            entryWith(QVariantList({hash, "type"_q, 5, QVariant(), subEntry("link"_q, "line0"_q)})));
        QCOMPARE(channel->parameters(), QVariantMap({{"link"_q, "line0"_q}}));
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
    }

    void valueThatIsNoListGivesNoParameters_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a list of texts") << QVariant(QStringList({"type"_q, "digitalInput"_q}));
        QTest::newRow("a single map") << QVariant(subEntry("type"_q, "digitalInput"_q));
        QTest::newRow("a text") << QVariant("digitalInput"_q);
        QTest::newRow("an invalid value") << QVariant();
    }
    void valueThatIsNoListGivesNoParameters()
    {
        QFETCH(QVariant, value);
        const auto channel = DGpioChannel::create(entryWith(value));
        QCOMPARE(channel->parameters(), QVariantMap());
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
        QVERIFY(!channel->value().isValid());
    }

    void createdChannelIsTrackedAndDiesWithItsSharedPointer()
    {
        const int markedBefore = objectsMarkedAsShared().size();
        QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"id"_q, "START"_q}});
        QCOMPARE(objectsMarkedAsShared().mid(markedBefore), QVector<const QObject*>({channel.data()}));
        const QPointer<DGpioChannel> tracked(channel.data());
        const QWeakPointer<DGpioChannel> weak(channel);
        channel.clear();
        QVERIFY(tracked.isNull());
        QVERIFY(weak.isNull());
    }

    void switchSignalIsForOthersToEmit()
    {
        DGpioChannel channel;
        channel.setType(DGpioChannel::CeCtBinIn);
        QSignalSpy switched(&channel, &DGpioChannel::sigSwitchChannelValue);
        channel.setValue(1);
        channel.setId("START"_q);
        QCOMPARE(switched.count(), 0);
        Q_EMIT channel.sigSwitchChannelValue("START"_q);
        QCOMPARE(switched, QList<QList<QVariant>>({{"START"_q}}));
    }
};

QTEST_GUILESS_MAIN(TestGpioChannel)
#include "test_d_gpio_channel.moc"
