#include "support/require.h"
#include "support/variants.h"

#include <literals.h>
#include <plugin_management/d_tool.h>
#include <scripted_plugin.h>

#include <limits>

// Values of all kinds as arguments of a command that declares a parameter of each type tag.

namespace {

const QStringList& tags()
{
    static const QStringList names = {"strg"_s, "ui16"_s, "int"_s, "bool"_s, "vart"_s, "other"_s};
    return names;
}

/// A tool whose command "work" has a parameter of each tag, called like the tag.
const DTool& tool()
{
    static const auto script = [] {
        auto made = std::make_shared<CommandScript>();
        for (const QString& tag : tags()) {
            made->parameters.push_back({tag, tag, QString(), QVariant()});
        }
        return made;
    }();
    static const DTool instance({}, ScriptedPlugin({script}), nullptr);
    return instance;
}

bool isWithin(const QVariant& value, int lowest, int highest)
{
    return value.type() == QVariant::Int && value.toInt() >= lowest && value.toInt() <= highest;
}

bool suits(const QString& tag, const QVariant& value)
{
    if (tag == "strg"_s) {
        return value.type() == QVariant::String;
    }
    if (tag == "ui16"_s) {
        return isWithin(value, 0, std::numeric_limits<quint16>::max());
    }
    if (tag == "int"_s) {
        return isWithin(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    }
    return tag != "bool"_s || value.type() == QVariant::Bool;
}

/// Text and number forms of one whole number are the same to a tag.
void checkForms(const QString& tag, const QVariant& value)
{
    bool isWhole = false;
    const qlonglong number = value.toString().toLongLong(&isWhole);
    if (value.type() != QVariant::LongLong && value.type() != QVariant::Int) {
        return;
    }
    require(isWhole, "a whole number has a text");
    QVariantMap asNumber = {{tag, number}};
    QVariantMap asText = {{tag, QString::number(number)}};
    const bool taken = tool().checkInvocation("work"_s, &asNumber).text.isEmpty();
    require(taken == tool().checkInvocation("work"_s, &asText).text.isEmpty(),
            "a number is taken as its text is");
    require(!taken || tag == "vart"_s || tag == "other"_s || asNumber == asText,
            "a number and its text become the same value");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Variants variants(
        &data, {"true"_s, "0"_s, "1"_s, "65535"_s, "-2147483648"_s, "1e3"_s, "0x10"_s, " 7 "_s, QString()});
    const QString tag = tags().at(data.ConsumeIntegralInRange(0, tags().size() - 1));
    const QVariant value = variants.value();
    checkForms(tag, value);

    QVariantMap arguments = {{tag, value}};
    if (data.ConsumeBool()) {
        arguments.insert(variants.text(), variants.value());
    }
    const QVariantMap before = arguments;
    const QString problem = tool().checkInvocation("work"_s, &arguments).text.english();
    if (!problem.isEmpty()) {
        require(arguments.isSharedWith(before), "arguments that are refused stay as they were");
        require(problem.contains("\"work\""_s), "a refusal names the command");
        return 0;
    }
    require(arguments.keys() == before.keys(), "no argument comes or goes");
    for (auto argument = arguments.cbegin(); argument != arguments.cend(); ++argument) {
        require(!tags().contains(argument.key()) || suits(argument.key(), *argument),
                "a value that is taken has the type of its tag");
    }
    QVariantMap again = arguments;
    require(tool().checkInvocation("work"_s, &again).text.isEmpty(), "what was taken is taken again");
    require(tag == "vart"_s || tag == "other"_s || again.value(tag) == arguments.value(tag),
            "what was converted stays as it is");
    return 0;
}
