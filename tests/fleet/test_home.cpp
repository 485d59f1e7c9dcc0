#include "broker_client.h"
#include "rows.h"

#include <QTest>

/// A rig as a home-automation dashboard sees it: by its announcement alone.
class TestHome : public QObject
{
    Q_OBJECT

    static QJsonObject announced(Reader* reader, const QByteArray& topic)
    {
        return objectOf(reader->waitFor("homeassistant/device/" + topic + "/config"));
    }

    static QJsonObject component(const QJsonObject& announcement, const QString& key)
    {
        return announcement.value("cmps"_s).toObject().value(key).toObject();
    }

    /// Waits until what the component's template takes out of its topic is value.
    static bool shows(Reader* reader, const QJsonObject& component, const QString& value)
    {
        return component.value("val_tpl"_s) == "{{ value_json.v }}"_s &&
               !reader
                    ->waitFor(component.value("stat_t"_s).toString().toUtf8(),
                              "{\"v\":" + value.toUtf8() + ",")
                    .isEmpty();
    }

private Q_SLOTS:
    void eachLineIsAComponentOfItsKind_data()
    {
        const Rows<QString, QJsonObject> row("key", "component");
        const auto at = [](const char* line) {
            return "appvantor/1/bench-7/line/%1"_s.arg(QLatin1String(line));
        };
        const QJsonValue v = "{{ value_json.v }}"_s;
        row("an output", "line0"_s,
            {{"p"_s, "switch"_s},
             {"stat_t"_s, at("line0")},
             {"val_tpl"_s, v},
             {"cmd_t"_s, at("line0/set")},
             {"pl_on"_s, "1"_s},
             {"pl_off"_s, "0"_s},
             {"name"_s, "Start button"_s},
             {"unique_id"_s, "appvantor_bench-7_line0"_s}});
        row("an input", "line6"_s,
            {{"p"_s, "binary_sensor"_s},
             {"stat_t"_s, at("line6")},
             {"val_tpl"_s, v},
             {"pl_on"_s, "1"_s},
             {"pl_off"_s, "0"_s},
             {"name"_s, "Alarm contact"_s},
             {"unique_id"_s, "appvantor_bench-7_line6"_s}});
        row("an analogue input", "adc0"_s,
            {{"p"_s, "sensor"_s},
             {"stat_t"_s, at("adc0")},
             {"val_tpl"_s, v},
             {"stat_cla"_s, "measurement"_s},
             {"name"_s, "Motor temperature"_s},
             {"unique_id"_s, "appvantor_bench-7_adc0"_s}});
        row("an analogue output", "dac0"_s,
            {{"p"_s, "number"_s},
             {"stat_t"_s, at("dac0")},
             {"val_tpl"_s, v},
             {"cmd_t"_s, at("dac0/set")},
             {"min"_s, 0},
             {"max"_s, 65535},
             {"step"_s, 1},
             {"mode"_s, "box"_s},
             {"name"_s, "Speed set point"_s},
             {"unique_id"_s, "appvantor_bench-7_dac0"_s}});
    }
    void eachLineIsAComponentOfItsKind()
    {
        QFETCH(QString, key);
        QFETCH(QJsonObject, component);
        const Broker broker;
        const ServedBench bench(broker, {"--home-assistant"_s});
        Reader reader(broker, "homeassistant/#"_s);
        const QJsonObject announcement = announced(&reader, "bench-7");
        QCOMPARE(announcement.value("cmps"_s).toObject().size(), 10);
        QCOMPARE(TestHome::component(announcement, key), component);
    }

    void aSwitchAndANumberActByTheirTopicsAlone()
    {
        const Broker broker;
        ServedBench bench(broker, {"--home-assistant"_s});
        Reader reader(broker, "#"_s);
        const QJsonObject announcement = announced(&reader, "bench-7");
        const QByteArray availability = announcement.value("avty_t"_s).toString().toUtf8();
        QVERIFY(!reader.waitFor(availability, R"("state":"online")").isEmpty());
        const QJsonObject lamp = component(announcement, "line0"_s);
        QVERIFY(shows(&reader, lamp, lamp.value("pl_off"_s).toString()));
        publish(broker, lamp.value("cmd_t"_s).toString(), lamp.value("pl_on"_s).toString().toUtf8());
        QVERIFY(shows(&reader, lamp, lamp.value("pl_on"_s).toString()));
        const QJsonObject number = component(announcement, "dac0"_s);
        publish(broker, number.value("cmd_t"_s).toString(), "40000");
        QVERIFY(shows(&reader, number, "40000"_s));
        bench.leave();
        QVERIFY(!reader.waitFor(availability, R"("state":"offline")").isEmpty());
        // It stays on the dashboard, out of reach.
        Reader later(broker, "homeassistant/#"_s);
        QCOMPARE(announced(&later, "bench-7"), announcement);
    }

    void nothingCanBeSetOfARigThatTakesNoOrders()
    {
        const Broker broker;
        const ServedBench bench(broker, {"--home-assistant"_s, "--read-only"_s});
        Reader reader(broker, "homeassistant/#"_s);
        const QJsonObject announcement = announced(&reader, "bench-7");
        QCOMPARE(component(announcement, "line0"_s).value("p"_s), "binary_sensor"_s);
        QCOMPARE(component(announcement, "dac0"_s).value("p"_s), "sensor"_s);
        QVERIFY(!reader.waitFor("homeassistant/device/bench-7/config", "stat_t").contains("cmd_t"));
    }

    void namesBecomeIdentifiers()
    {
        const Broker broker;
        const BenchProcess bench({"--config"_s, boardFile(R"("lines": [ { "name": "b/c_é" } ])"), "serve"_s,
                                  "--broker"_s, broker.url(QString()), "--rig"_s, "rack 2.a"_s,
                                  "--home-assistant"_s});
        Reader reader(broker, "homeassistant/#"_s);
        const QJsonObject announcement = announced(&reader, "rack_202_2Ea");
        QCOMPARE(announcement.value("dev"_s).toObject().value("name"_s), "rack 2.a"_s);
        const QJsonObject line = component(announcement, "b_2Fc_5F_C3_A9"_s);
        QCOMPARE(line.value("name"_s), "b/c_é"_s);
        QCOMPARE(line.value("stat_t"_s), "appvantor/1/rack%202.a/line/b%2Fc_%C3%A9"_s);
    }

    void nothingIsAnnouncedUnasked()
    {
        const Broker broker;
        Reader reader(broker, "#"_s);
        const ServedBench bench(broker);
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/line/line0").isEmpty());
        QCOMPARE(reader.messages("homeassistant/device/bench-7/config").size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestHome)
#include "test_home.moc"
