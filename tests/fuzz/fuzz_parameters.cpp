#include "support/require.h"
#include "support/variants.h"

#include <plugin_management/d_tool.h>
#include <scripted_plugin.h>

#include <limits>

// Values of all kinds as arguments of a command that declares a parameter of each type tag.

namespace {

const QStringList& tags()
{
    static const QStringList names = {QStringLiteral("strg"), QStringLiteral("ui16"),
                                      QStringLiteral("int"),  QStringLiteral("bool"),
                                      QStringLiteral("vart"), QStringLiteral("other")};
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
    if (tag == QLatin1String("strg")) {
        return value.type() == QVariant::String;
    }
    if (tag == QLatin1String("ui16")) {
        return isWithin(value, 0, std::numeric_limits<quint16>::max());
    }
    if (tag == QLatin1String("int")) {
        return isWithin(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    }
    return tag != QLatin1String("bool") || value.type() == QVariant::Bool;
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
    const bool taken = tool().checkInvocation(QStringLiteral("work"), &asNumber).text.isEmpty();
    require(taken == tool().checkInvocation(QStringLiteral("work"), &asText).text.isEmpty(),
            "a number is taken as its text is");
    require(!taken || tag == QLatin1String("vart") || tag == QLatin1String("other") || asNumber == asText,
            "a number and its text become the same value");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Variants variants(&data, {QStringLiteral("true"), QStringLiteral("0"), QStringLiteral("1"),
                              QStringLiteral("65535"), QStringLiteral("-2147483648"), QStringLiteral("1e3"),
                              QStringLiteral("0x10"), QStringLiteral(" 7 "), QString()});
    const QString tag = tags().at(data.ConsumeIntegralInRange(0, tags().size() - 1));
    const QVariant value = variants.value();
    checkForms(tag, value);

    QVariantMap arguments = {{tag, value}};
    if (data.ConsumeBool()) {
        arguments.insert(variants.text(), variants.value());
    }
    const QVariantMap before = arguments;
    const QString problem = tool().checkInvocation(QStringLiteral("work"), &arguments).text;
    if (!problem.isEmpty()) {
        require(arguments.isSharedWith(before), "arguments that are refused stay as they were");
        require(problem.contains(QLatin1String("\"work\"")), "a refusal names the command");
        return 0;
    }
    require(arguments.keys() == before.keys(), "no argument comes or goes");
    for (auto argument = arguments.cbegin(); argument != arguments.cend(); ++argument) {
        require(!tags().contains(argument.key()) || suits(argument.key(), *argument),
                "a value that is taken has the type of its tag");
    }
    QVariantMap again = arguments;
    require(tool().checkInvocation(QStringLiteral("work"), &again).text.isEmpty(),
            "what was taken is taken again");
    require(tag == QLatin1String("vart") || tag == QLatin1String("other") ||
                again.value(tag) == arguments.value(tag),
            "what was converted stays as it is");
    return 0;
}
