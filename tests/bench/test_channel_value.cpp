#include "literals.h"
#include "rows.h"

#include <command_line/channel_value.h>
#include <configuration/value_text.h>
#include <process/did_you_mean.h>

#include <QtTest>

namespace {

DToolChannel makeChannel(const QString& id, const QString& type, const QString& direction,
                         const QString& link)
{
    return {id, id, "public"_s, link, {{"type"_s, type}, {"direction"_s, direction}}};
}

/// A drives a line, N a line that drives nothing; R is read; SET and T are analogue.
QVector<DToolChannel> channels()
{
    return {makeChannel("A"_s, "digitalInput"_s, "out"_s, "a"_s),
            makeChannel("N"_s, "digitalInput"_s, "out"_s, {}),
            makeChannel("R"_s, "digitalOutput"_s, "in"_s, "r"_s),
            makeChannel("SET"_s, "analogInput"_s, "out"_s, "set"_s),
            makeChannel("T"_s, "analogOutput"_s, "in"_s, "t"_s),
            makeChannel("X=Y"_s, "digitalInput"_s, "out"_s, "x"_s)};
}

QString written(const Invocation& invocation)
{
    return invocation.command + QLatin1Char(' ') + assignmentsText(invocation.arguments);
}

} // namespace

/// What a channel is set to in a word, and what that makes the plugin do.
class TestChannelValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSettingIsACommandOfThePlugin_data()
    {
        const Rows<QString> row("order");
        row("A=ON", "setValue channel=A state=ON");
        row("A=OFF", "setValue channel=A state=OFF");
        row("A=on", "setValue channel=A state=ON");
        row("A=1", "setValue channel=A state=ON");
        row("A=0", "setValue channel=A state=OFF");
        row("R=ON", "setValue channel=R state=ON");
        row("X=Y=ON", "setValue channel=X=Y state=ON");
        row("A=PULSE:500", "setValue channel=A duration=500 state=PULSE");
        row("A=PULSE:2147483647", "setValue channel=A duration=2147483647 state=PULSE");
        row("A=BLINK:200:25", "setValue channel=A duration=200 dutyCycle=25 state=BLINK");
        row("A=blink:65535:0", "setValue channel=A duration=65535 dutyCycle=0 state=BLINK");
        row("SET=OFF", "setValue channel=SET state=OFF");
        row("SET=0", "setValue channel=SET state=OFF");
        row("SET=1", "setValue channel=SET state=ON");
        row("SET=2", "setValue channel=SET dutyCycle=100 state=BLINK value=2");
        row("SET=65535", "setValue channel=SET dutyCycle=100 state=BLINK value=65535");
    }

    /// The rows are called by the words.
    void aSettingIsACommandOfThePlugin()
    {
        QFETCH(QString, order);
        DWording problem;
        const Invocation invocation =
            readSetting(channels(), QString::fromUtf8(QTest::currentDataTag()), &problem);
        QCOMPARE(problem.english(), QString());
        QCOMPARE(written(invocation), order);
    }

    void aSettingThatIsNoneIsRefused_data()
    {
        const Rows<QString> row("message");
        const char* digital =
            "channel \"A\": expected ON, OFF, PULSE:MS, or BLINK:MS:PERCENT with a cycle of 1 "
            "to 65535 milliseconds and 0 to 100 percent, found \"%1\"";
        row("A", "expected CHANNEL=VALUE, found \"A\"");
        row("=ON", "expected CHANNEL=VALUE, found \"=ON\"");
        row("", "expected CHANNEL=VALUE, found \"\"");
        row("SEE=5", "the tool has no channel \"SEE\"; did you mean \"SET\"?");
        row("NOPE=ON", "the tool has no channel \"NOPE\"");
        for (const char* value : {"", "2", "-1", "OPEN", "PULSE", "PULSE:0", "PULSE:2147483648", "PULSE:1:2",
                                  "BLINK", "BLINK:200", "BLINK:0:50", "BLINK:65536:50", "BLINK:200:101",
                                  "BLINK:200:-1", "BLINK:200:25:1", "BLINK:a:b"}) {
            row((QByteArray("A=") + value).constData(),
                QString::fromLatin1(digital).arg(QLatin1String(value)));
        }
        for (const char* value : {"ON", "-1", "65536", "1.5", "PULSE:5", "BLINK:200:25"}) {
            row((QByteArray("SET=") + value).constData(),
                "channel \"SET\": expected a number from 0 to 65535 or OFF, found \"%1\""_s.arg(
                    QLatin1String(value)));
        }
    }

    void aSettingThatIsNoneIsRefused()
    {
        QFETCH(QString, message);
        DWording problem;
        readSetting(channels(), QString::fromUtf8(QTest::currentDataTag()), &problem);
        QCOMPARE(problem.english(), message);
    }

    void everythingThatIsDrivenIsSwitchedOff()
    {
        QStringList orders;
        for (const Invocation& order : switchingOff(channels())) {
            orders.append(written(order));
        }
        QCOMPARE(orders, (QStringList{"setValue channel=A state=OFF"_s, "setValue channel=SET state=OFF"_s,
                                      "setValue channel=X=Y state=OFF"_s}));
    }

    void aLevelIsReadAsItIsWritten_data()
    {
        const Rows<QString, int, QString> row("channel", "level", "text");
        row("on", "R", 1, "ON");
        row("off", "R", 0, "OFF");
        row("analogue", "T", 1, "1");
        row("analogue off", "T", 0, "0");
        row("highest", "T", 65535, "65535");
    }

    void aLevelIsReadAsItIsWritten()
    {
        QFETCH(QString, channel);
        QFETCH(int, level);
        QFETCH(QString, text);
        DWording problem;
        const auto all = channels();
        const DToolChannel* found = findChannel(all, channel, &problem);
        QVERIFY(found != nullptr);
        QCOMPARE(levelText(*found, level), text);
        QCOMPARE(readLevel(*found, text, &problem), level);
        QCOMPARE(problem.english(), QString());
    }

    void aLevelThatIsNoneIsRefused()
    {
        DWording problem;
        const auto all = channels();
        readLevel(all.first(), "PULSE:5"_s, &problem);
        QCOMPARE(problem.english(), "channel \"A\": expected ON or OFF, found \"PULSE:5\""_s);
    }

    void aWordIsTakenForTheNearestOne_data()
    {
        const Rows<QString> row("meant");
        row("DOOR", "DOOR");
        row("DOR", "DOOR");
        row("door", "DOOR");
        row("DORO", "DOOR");
        row("READ", "READY");
        row("TEMPRATUR", "TEMPERATURE");
        row("WINDOW", "");
        row("X", "");
        row("", "");
    }

    /// The rows are called by the words.
    void aWordIsTakenForTheNearestOne()
    {
        QFETCH(QString, meant);
        const QString text = didYouMean(QString::fromUtf8(QTest::currentDataTag()),
                                        {"A"_s, "READY"_s, "DOOR"_s, "DOORS"_s, "TEMPERATURE"_s})
                                 .english();
        QCOMPARE(text, meant.isEmpty() ? QString() : "; did you mean \"%1\"?"_s.arg(meant));
    }
};

QTEST_GUILESS_MAIN(TestChannelValue)
#include "test_channel_value.moc"
