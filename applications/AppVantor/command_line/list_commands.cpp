#include "list_commands.h"

#include "order_report.h"

#include <plugin_management/d_tool.h>
#include <process/exit_status.h>

namespace {

Json toJson(const DDeclarations& declarations)
{
    Json list = Json::array();
    for (const DDeclaration& declared : declarations) {
        list.push_back({{"name", toJson(declared.name)},
                        {"typeTag", toJson(declared.typeTag)},
                        {"description", toJson(declared.description)},
                        {"default", toJson(declared.defaultValue)}});
    }
    return list;
}

QString toText(const QString& title, const DDeclarations& declarations)
{
    QString text;
    for (const DDeclaration& declared : declarations) {
        text += QStringLiteral("\n  %1 %2 (%3): %4")
                    .arg(title, declared.name, declared.typeTag, declared.description);
        if (declared.defaultValue.isValid()) {
            text += QStringLiteral(" [default: %1]")
                        .arg(QString::fromStdString(toJson(declared.defaultValue).dump()));
        }
    }
    return text;
}

QString toText(const DCommandDescription& command)
{
    const QString stop =
        command.stopName.isEmpty() ? QString() : QStringLiteral(", stopped by %1").arg(command.stopName);
    return QStringLiteral("%1: %2%3%4%5")
        .arg(command.name, command.description, stop, toText(QStringLiteral("parameter"), command.parameters),
             toText(QStringLiteral("result"), command.results));
}

} // namespace

Json commandJson(const DTool& tool, const DCommandDescription& command)
{
    return {{"type", "command"},
            {"tool", toJson(tool.objectName())},
            {"command", toJson(command.name)},
            {"stop", command.stopName.isEmpty() ? Json() : toJson(command.stopName)},
            {"description", toJson(command.description)},
            {"parameters", toJson(command.parameters)},
            {"returns", toJson(command.results)}};
}

int listCommands(const DTool& tool, Output* output)
{
    const QVector<DCommandDescription> commands = tool.commands();
    for (const DCommandDescription& command : commands) {
        output->write([&] { return commandJson(tool, command); }, [&] { return toText(command); });
    }
    return ExitSuccess;
}
