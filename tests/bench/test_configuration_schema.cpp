#include "bench_process.h"
#include "json_checks.h"
#include "literals.h"
#include "rows.h"

#include <configuration/bench_configuration.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <iterator>

namespace {

const char* const c_simulated = R"({
  "$schema": "x",
  "device": {
    "type": "simulated", "connected": true,
    "lines": [
      { "name": "a", "kind": "digital", "direction": "out", "level": 1 },
      { "name": "b" },
      { "name": "c", "kind": "analog", "direction": "in", "level": 9,
        "waveform": { "shape": "sine", "low": 1, "high": 70, "periodMs": 8, "intervalMs": 3, "seed": 5 } } ],
    "wires": [ { "from": "a", "to": "b", "delayMs": 4, "inverted": true } ],
    "faults": [ { "kind": "late", "line": "a", "instruction": "getValue", "delayMs": 3 } ]
  },
  "tools": [
    { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
      "channels": [
        { "id": "A", "name": "a", "visibility": "public",
          "value": [ {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"},
                     {"id": "link", "value": "a"}, {"id": "own", "value": 1} ] },
        { "id": "B",
          "value": [ {"id": "type", "value": "analogOutput"}, {"id": "direction", "value": "in"} ] } ] } ]
})";

const char* const c_chips = R"({
  "device": {
    "type": "gpiochip",
    "lines": [
      { "name": "lamp", "chip": "c", "line": 3, "direction": "out", "activeLow": true, "bias": "none",
        "drive": "open-drain", "level": 1, "onReturn": "leave", "kind": "digital" },
      { "name": "button", "line": "B", "direction": "in", "debounceUs": 5, "clock": "realtime" },
      { "name": "door" } ]
  },
  "tools": [
    { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio",
      "channels": [
        { "id": "A",
          "value": [ {"id": "type", "value": "digitalInput"}, {"id": "direction", "value": "out"},
                     {"id": "link", "value": "lamp"} ] },
        { "id": "B", "value": [ {"id": "type", "value": "analogOutput"} ] } ] } ]
})";

const char* const c_rig = R"({
  "device": {
    "type": "rig", "broker": "mqtts:\/\/lab.example:8884", "rig": "bench 7", "ca": "lab.crt", "cert": "me.crt",
    "key": "me.key",
    "lines": [ { "name": "lamp", "line": "line0", "kind": "digital", "direction": "out" }, { "name": "adc0" } ]
  },
  "tools": [
    { "name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio", "channels": [] } ]
})";

const char* const c_replacements = R"([
  null, true, -1, 0, 1, 1.5, 2, 65536, 1000001, 3600001, 4e9, "", "x", "3", "4294967296", "in", "out", "analog",
  "analogInput", "digitalOutput", "link", "gpiochip", "{00000000-0000-0000-0000-000000000000}", [], {},
  "MQTT://lab/b", "mqtt://lab:0/b", "mqtt://lab:65536/b", "mqtt://[::1]:65535/b", "mqtt://l b/b", "mqtt://lab/%" ])";

QJsonObject with(QJsonObject object, const QString& key, const QJsonValue& value)
{
    object.insert(key, value);
    return object;
}

QJsonArray with(QJsonArray list, int index, const QJsonValue& value)
{
    list.replace(index, value);
    return list;
}

/// All that differs in one place from a value.
QVector<QJsonValue> variantsOf(const QJsonValue& value)
{
    QVector<QJsonValue> variants;
    const QJsonArray replacements = QJsonDocument::fromJson(c_replacements).array();
    std::copy(replacements.begin(), replacements.end(), std::back_inserter(variants));
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        variants.append(with(object, "unknown"_s, 1));
        for (auto entry = object.begin(); entry != object.end(); ++entry) {
            QJsonObject rest = object;
            rest.remove(entry.key());
            variants.append(rest);
            const QVector<QJsonValue> changes = variantsOf(*entry);
            for (const QJsonValue& change : changes) {
                variants.append(with(object, entry.key(), change));
            }
        }
    }
    if (value.isArray()) {
        const QJsonArray list = value.toArray();
        for (int i = 0; i < list.size(); ++i) {
            QJsonArray longer = list;
            longer.append(list.at(i));
            variants.append(longer);
            const QVector<QJsonValue> changes = variantsOf(list.at(i));
            for (const QJsonValue& change : changes) {
                variants.append(with(list, i, change));
            }
        }
    }
    return variants;
}

QStringList mistakesIn(const QString& file)
{
    QVector<Problem> problems;
    readConfiguration(file, &problems);
    QStringList mistakes;
    for (const Problem& problem : qAsConst(problems)) {
        mistakes.append(problem.text.english());
    }
    return mistakes;
}

} // namespace

/// The schema of configurations and what reads them.
class TestConfigurationSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schemaAndReaderAgreeOnEveryChangeInOnePlace_data()
    {
        const Rows<QByteArray> row("right");
        row("a simulated board", c_simulated);
        row("lines of GPIO chips", c_chips);
        row("lines of a rig", c_rig);
    }

    void schemaAndReaderAgreeOnEveryChangeInOnePlace()
    {
        QFETCH(QByteArray, right);
        const QJsonObject configuration = QJsonDocument::fromJson(right).object();
        const QString name = temporaryFile(right);
        QCOMPARE(mistakesIn(name), QStringList());
        const QVector<QJsonValue> variants = variantsOf(configuration);
        for (const QJsonValue& variant : variants) {
            const QJsonDocument document =
                variant.isArray() ? QJsonDocument(variant.toArray()) : QJsonDocument(variant.toObject());
            QFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(document.toJson());
            file.close();
            checkVerdictOnConfiguration(name, mistakesIn(name));
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestConfigurationSchema)
#include "test_configuration_schema.moc"
