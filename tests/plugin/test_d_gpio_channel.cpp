#include "d_gpio_channel.h"
#include "exact_compare.h"
#include "literals.h"
#include "meta_object_text.h"
#include "quiet_test.h"
#include "rows.h"
#include "sharing_spy.h"

#include <limits>
#include <type_traits>

using TextSetter = void (DGpioChannel::*)(const QString&);

Q_DECLARE_METATYPE(DGpioChannel::EnChannelType)
Q_DECLARE_METATYPE(TextSetter)

namespace {

QVariantMap subEntry(const QVariant& id, const QVariant& value)
{
    return {{"id"_s, id}, {"value"_s, value}};
}

QVariantMap entryWith(const QVariant& subEntries)
{
    return {{"id"_s, "START"_s}, {"name"_s, "Start button"_s}, {"value"_s, subEntries}};
}

/// Adds the name of each property of channel to changes when its change is notified.
void noteChanges(const DGpioChannel& channel, QStringList* changes)
{
    const auto note = [&channel, changes](auto signal, const QString& property) {
        QObject::connect(&channel, signal, [changes, property] { changes->append(property); });
    };
    note(&DGpioChannel::idChanged, "id"_s);
    note(&DGpioChannel::nameChanged, "name"_s);
    note(&DGpioChannel::labelChanged, "label"_s);
    note(&DGpioChannel::valueChanged, "value"_s);
    note(&DGpioChannel::typeChanged, "type"_s);
}

} // namespace

class TestGpioChannel : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void newChannelIsEmptyAndUnknown()
    {
        QObject owner;
        const auto* channel = new DGpioChannel(&owner);
        QCOMPARE(channel->objectName(), "DGpioChannel"_s);
        QCOMPARE(channel->parent(), &owner);
        QCOMPARE(channel->id(), QString());
        QCOMPARE(channel->name(), QString());
        QCOMPARE(channel->label(), QString());
        QVERIFY(!channel->value().isValid());
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(channel->parameters(), QVariantMap());
        QCOMPARE(DGpioChannel().parent(), nullptr);
    }

    void metaObjectHasTheseTypesPropertiesAndMethods()
    {
        QCOMPARE(
            metaObjectText(DGpioChannel::staticMetaObject),
            QStringList(
                {"DGpioChannel: DObject"_s,
                 "enum EnChannelType: CeCtUnknown 0, CeCtAnaIn 1, CeCtAnaOut 2, CeCtBinIn 3, CeCtBinOut 4, "
                 "_CeCtNbr 5"_s,
                 "property QString id: readable final, idChanged()"_s,
                 "property QString name: readable final, nameChanged()"_s,
                 "property QString label: readable final, labelChanged()"_s,
                 "property QVariant value: readable final, valueChanged()"_s,
                 "property EnChannelType type: readable final, typeChanged()"_s,
                 "public signal void idChanged()"_s, "public signal void nameChanged()"_s,
                 "public signal void labelChanged()"_s, "public signal void valueChanged()"_s,
                 "public signal void typeChanged()"_s,
                 "public signal void sigSwitchChannelValue(QString channelId)"_s,
                 "public method bool isSwitchable()"_s}));
    }

    void typeNamesOfTheConfigurationAreThese()
    {
        QCOMPARE(DGpioChannel::c_channelTypesMap, (QMap<QString, DGpioChannel::EnChannelType>{
                                                      {"analogInput"_s, DGpioChannel::CeCtAnaIn},
                                                      {"analogOutput"_s, DGpioChannel::CeCtAnaOut},
                                                      {"digitalInput"_s, DGpioChannel::CeCtBinIn},
                                                      {"digitalOutput"_s, DGpioChannel::CeCtBinOut},
                                                  }));
    }

    void propertySystemReadsButCannotWrite()
    {
        DGpioChannel channel;
        channel.setId("START"_s);
        channel.setName("Start"_s);
        channel.setLabel("label"_s);
        channel.setType(DGpioChannel::CeCtBinIn);
        channel.setValue(1);
        const QVector<QPair<const char*, QVariant>> values = {
            {"id", "START"_s}, {"name", "Start"_s}, {"label", "label"_s}, {"value", 1}, {"type", 3}};
        for (const auto& [property, value] : values) {
            QVERIFY2(!channel.setProperty(property, QVariant(0)), property);
            QCOMPARE(channel.property(property), value);
        }
    }

    void changeOfATextIsNotifiedOnce_data()
    {
        const Rows<TextSetter> row("set");
        row("id", &DGpioChannel::setId);
        row("name", &DGpioChannel::setName);
        row("label", &DGpioChannel::setLabel);
    }
    void changeOfATextIsNotifiedOnce()
    {
        QFETCH(TextSetter, set);
        const char* property = QTest::currentDataTag();
        DGpioChannel channel;
        QStringList changes;
        noteChanges(channel, &changes);
        (channel.*set)(QString());
        (channel.*set)(""_s);
        QCOMPARE(changes, QStringList());
        (channel.*set)("text"_s);
        (channel.*set)("text"_s);
        QCOMPARE(changes, QStringList({QString::fromLatin1(property)}));
        QCOMPARE(channel.property(property), QVariant("text"_s));
        (channel.*set)("TEXT"_s);
        QCOMPARE(changes.size(), 2);
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
        QStringList changes;
        noteChanges(channel, &changes);
        channel.setType(DGpioChannel::CeCtUnknown);
        channel.setType(DGpioChannel::CeCtBinOut);
        channel.setType(DGpioChannel::CeCtBinOut);
        QCOMPARE(changes, QStringList({"type"_s}));
        QCOMPARE(channel.type(), DGpioChannel::CeCtBinOut);
    }

    void typeOutsideTheNamedOnesIsStored_data()
    {
        const Rows<int> row("number");
        row("7", 7);
        row("77", 77);
        row("-1", -1);
        row("the lowest", std::numeric_limits<int>::min());
        row("the highest", std::numeric_limits<int>::max());
    }
    void typeOutsideTheNamedOnesIsStored()
    {
        static_assert(std::is_same_v<std::underlying_type_t<DGpioChannel::EnChannelType>, int>);
        QFETCH(int, number);
        DGpioChannel channel;
        QStringList changes;
        noteChanges(channel, &changes);
        channel.setType(static_cast<DGpioChannel::EnChannelType>(number));
        channel.setType(static_cast<DGpioChannel::EnChannelType>(number));
        QCOMPARE(static_cast<int>(channel.type()), number);
        QCOMPARE(channel.property("type").toInt(), number);
        QCOMPARE(changes, QStringList({"type"_s}));
        QVERIFY(!channel.isSwitchable());
        QVERIFY(!channel.setValue(1));
    }

    void onlyBinaryInputsAreSwitchable_data()
    {
        const Rows<DGpioChannel::EnChannelType, bool> row("type", "switchable");
        row("unknown", DGpioChannel::CeCtUnknown, false);
        row("analogue input", DGpioChannel::CeCtAnaIn, false);
        row("analogue output", DGpioChannel::CeCtAnaOut, false);
        row("binary input", DGpioChannel::CeCtBinIn, true);
        row("binary output", DGpioChannel::CeCtBinOut, false);
        row("the count", DGpioChannel::_CeCtNbr, false);
    }
    void onlyBinaryInputsAreSwitchable()
    {
        const auto [type, switchable] = Rows<DGpioChannel::EnChannelType, bool>::values();
        DGpioChannel channel;
        channel.setType(type);
        bool answer = !switchable;
        QVERIFY(QMetaObject::invokeMethod(&channel, "isSwitchable", Q_RETURN_ARG(bool, answer)));
        QCOMPARE(answer, switchable);
    }

    void setValueTellsWhetherTheValueSuitsTheType_data()
    {
        const Rows<DGpioChannel::EnChannelType, QVariant, bool> row("type", "value", "suits");
        const QVariant map = QVariantMap({{"a"_s, 1}});
        row("unknown, a number", DGpioChannel::CeCtUnknown, 1, false);
        row("analogue input, a number", DGpioChannel::CeCtAnaIn, 512, true);
        row("analogue input, a text", DGpioChannel::CeCtAnaIn, "x"_s, true);
        row("analogue input, a map", DGpioChannel::CeCtAnaIn, map, false);
        row("analogue output, a number", DGpioChannel::CeCtAnaOut, 5.5, true);
        row("analogue output, a map", DGpioChannel::CeCtAnaOut, map, false);
        row("analogue output, bytes", DGpioChannel::CeCtAnaOut, QByteArray("1"), true);
        row("binary input, the number 1", DGpioChannel::CeCtBinIn, 1, true);
        row("binary input, a bool", DGpioChannel::CeCtBinIn, true, true);
        row("binary input, a map", DGpioChannel::CeCtBinIn, map, false);
        row("binary output, a text", DGpioChannel::CeCtBinOut, "on"_s, true);
        row("binary output, a map", DGpioChannel::CeCtBinOut, map, false);
        row("the count, a number", DGpioChannel::_CeCtNbr, 1, false);
    }
    void setValueTellsWhetherTheValueSuitsTheType()
    {
        const auto [type, value, suits] = Rows<DGpioChannel::EnChannelType, QVariant, bool>::values();
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
        const Rows<QVariant, QVariant> row("stored", "given");
        QVariantList values = {QVariant(), true, false,    1,       0,     1U,     1LL,
                               1.0,        2.5,  "true"_s, "yes"_s, "1"_s, "01"_s, ""_s};
        values << QVariant::fromValue<qint8>(1) << QVariant::fromValue<quint16>(1) << QByteArray("1")
               << QVariant(QVariantList({1})) << QStringList({"1"_s}) << QVariantMap({{"1"_s, 1}});
        for (const QVariant& stored : qAsConst(values)) {
            for (const QVariant& given : qAsConst(values)) {
                row((exactly(stored) + " then "_s + exactly(given)).toUtf8(), stored, given);
            }
        }
    }
    void valueIsStoredUnlessTheStoredOneEqualsIt()
    {
        const auto [stored, given] = Rows<QVariant, QVariant>::values();
        DGpioChannel channel;
        channel.setValue(stored);
        COMPARE_EXACTLY(channel.value(), stored);
        QSignalSpy changed(&channel, &DGpioChannel::valueChanged);
        channel.setValue(given);
        const bool equal = stored == given; // in this order: true equals "yes" only on one side
        QCOMPARE(changed.count(), equal ? 0 : 1);
        COMPARE_EXACTLY(channel.value(), equal ? stored : given);
    }

    void createOfAnEmptyMapIsNull() { QVERIFY(DGpioChannel::create({}).isNull()); }

    void createWithOnlyAnIdLeavesTheRestEmpty()
    {
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"id"_s, "START"_s}});
        QCOMPARE(channel->id(), "START"_s);
        QCOMPARE(channel->name(), QString());
        QCOMPARE(channel->label(), QString());
        QVERIFY(!channel->value().isValid());
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(channel->parameters(), QVariantMap());
        QCOMPARE(channel->parent(), nullptr);
    }

    void createConvertsIdAndNameToText()
    {
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"id"_s, 12}, {"name"_s, 3.5}});
        QCOMPARE(channel->id(), "12"_s);
        QCOMPARE(channel->name(), "3.5"_s);
    }

    void createOfForeignKeysIsAnEmptyChannel()
    {
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"visibility"_s, "public"_s}});
        QVERIFY(!channel.isNull());
        QCOMPARE(channel->id(), QString());
    }

    void createCutsTheNameTo64Characters_data()
    {
        const Rows<int, int> row("length", "kept");
        row("63", 63, 63);
        row("64", 64, 64);
        row("65", 65, 64);
        row("1000", 1000, 64);
    }
    void createCutsTheNameTo64Characters()
    {
        const auto [length, kept] = Rows<int, int>::values();
        QString name;
        for (int i = 0; i < length; ++i) {
            name.append(QChar(0x100 + i));
        }
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"name"_s, name}});
        QCOMPARE(channel->name(), name.mid(0, kept));
    }

    void createTakesTheTypeFromItsSubEntry_data()
    {
        const Rows<QVariant, DGpioChannel::EnChannelType> row("name", "type");
        row("analogInput", "analogInput"_s, DGpioChannel::CeCtAnaIn);
        row("analogOutput", "analogOutput"_s, DGpioChannel::CeCtAnaOut);
        row("digitalInput", "digitalInput"_s, DGpioChannel::CeCtBinIn);
        row("digitalOutput", "digitalOutput"_s, DGpioChannel::CeCtBinOut);
        row("DigitalOutput", "DigitalOutput"_s, DGpioChannel::CeCtUnknown);
        row("padded", "digitalOutput "_s, DGpioChannel::CeCtUnknown);
        row("empty", ""_s, DGpioChannel::CeCtUnknown);
        row("the number of a type", 3, DGpioChannel::CeCtUnknown);
        row("an invalid value", QVariant(), DGpioChannel::CeCtUnknown);
        row("bytes", QByteArray("digitalInput"), DGpioChannel::CeCtBinIn);
    }
    void createTakesTheTypeFromItsSubEntry()
    {
        const auto [name, type] = Rows<QVariant, DGpioChannel::EnChannelType>::values();
        const auto channel = DGpioChannel::create(entryWith(QVariantList({subEntry("type"_s, name)})));
        QCOMPARE(channel->type(), type);
        COMPARE_EXACTLY(channel->parameters(), QVariantMap({{"type"_s, name}}));
        QVERIFY(!channel->value().isValid());
        QCOMPARE(channel->id(), "START"_s);
        QCOMPARE(channel->name(), "Start button"_s);
    }

    void keyOfTheTypeIsExact()
    {
        const auto channel =
            DGpioChannel::create(entryWith(QVariantList({subEntry("Type"_s, "digitalInput"_s)})));
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(channel->parameters(), QVariantMap({{"Type"_s, "digitalInput"_s}}));
    }

    void lastOfSeveralTypesWins()
    {
        const auto known = DGpioChannel::create(entryWith(
            QVariantList({subEntry("type"_s, "digitalInput"_s), subEntry("type"_s, "analogOutput"_s)})));
        QCOMPARE(known->type(), DGpioChannel::CeCtAnaOut);
        const auto unknown = DGpioChannel::create(
            entryWith(QVariantList({subEntry("type"_s, "digitalInput"_s), subEntry("type"_s, "relay"_s)})));
        QCOMPARE(unknown->type(), DGpioChannel::CeCtUnknown);
        QCOMPARE(unknown->parameters(), QVariantMap({{"type"_s, "relay"_s}}));
    }

    void subEntriesBecomeParametersAsTheyStand()
    {
        const QVariantList nested = {1, 2};
        const auto channel = DGpioChannel::create(entryWith(QVariantList({
            subEntry("link"_s, "line0"_s),
            subEntry("scale"_s, 2.5),
            subEntry("list"_s, nested),
            subEntry(5, true),
            subEntry("again"_s, 1),
            subEntry("again"_s, 2),
            QVariantMap({{"id"_s, "valueless"_s}}),
            QVariantMap({{"value"_s, "keyless"_s}}),
        })));
        COMPARE_EXACTLY(channel->parameters(), QVariantMap({{"link"_s, "line0"_s},
                                                            {"scale"_s, 2.5},
                                                            {"list"_s, nested},
                                                            {"5"_s, true},
                                                            {"again"_s, 2},
                                                            {"valueless"_s, QVariant()},
                                                            {""_s, "keyless"_s}}));
    }

    void malformedSubEntriesAreSkipped()
    {
        const QVariantHash hash = {{"id"_s, "type"_s}, {"value"_s, "digitalInput"_s}};
        const auto channel = DGpioChannel::create(
            entryWith(QVariantList({hash, "type"_s, 5, QVariant(), subEntry("link"_s, "line0"_s)})));
        QCOMPARE(channel->parameters(), QVariantMap({{"link"_s, "line0"_s}}));
        QCOMPARE(channel->type(), DGpioChannel::CeCtUnknown);
    }

    void valueThatIsNoListGivesNoParameters_data()
    {
        const Rows<QVariant> row("value");
        row("a list of texts", QStringList({"type"_s, "digitalInput"_s}));
        row("a single map", subEntry("type"_s, "digitalInput"_s));
        row("a text", "digitalInput"_s);
        row("an invalid value", QVariant());
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
        QSharedPointer<DGpioChannel> channel = DGpioChannel::create({{"id"_s, "START"_s}});
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
        channel.setId("START"_s);
        QCOMPARE(switched.count(), 0);
        Q_EMIT channel.sigSwitchChannelValue("START"_s);
        QCOMPARE(switched, QList<QList<QVariant>>({{"START"_s}}));
    }
};

QTEST_GUILESS_MAIN(TestGpioChannel)
#include "test_d_gpio_channel.moc"
