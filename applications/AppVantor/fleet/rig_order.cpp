#include "rig_order.h"

#include <configuration/config_object.h>
#include <devices/rig_changes.h>

namespace {

QString textOf(const QVector<Problem>& problems)
{
    QStringList texts;
    for (const Problem& problem : problems) {
        texts.append(problem.toString());
    }
    return texts.join(QStringLiteral("; "));
}

RigOrder readFields(const ConfigObject& fields)
{
    const QString command = QStringLiteral("command");
    const QString instruction = QStringLiteral("instruction");
    const QString lease = QStringLiteral("lease");
    const QString release = QStringLiteral("release");
    const QString arguments = QStringLiteral("arguments");
    const QString tool = QStringLiteral("tool");
    const QString holder = QStringLiteral("holder");
    RigOrder order;
    order.holder = fields.textOr(holder, QString());
    if (fields.has(lease)) {
        fields.allowOnly({lease, holder});
        order.kind = RigOrder::Kind::Lease;
        order.holder = fields.text(holder);
        order.minutes = fields.numberOr(lease, 1, RigHolder::c_longestMinutes, 1);
    } else if (fields.has(release)) {
        fields.allowOnly({release, holder});
        order.kind = RigOrder::Kind::Release;
        order.holder = fields.text(holder);
        fields.flagOr(release, true);
    } else if (fields.has(instruction)) {
        fields.allowOnly({instruction, arguments, holder});
        const QStringList known = {QStringLiteral("getValue"), QStringLiteral("setValues"),
                                   QStringLiteral("setBlink")};
        order.kind = RigOrder::Kind::Instruction;
        order.name = known.value(fields.choice(instruction, known));
    } else {
        fields.allowOnly({command, arguments, tool, holder});
        order.name = fields.text(command);
        order.tool = fields.textOr(tool, QString());
    }
    if (fields.has(arguments)) {
        order.arguments = fields.object(arguments).toVariantMap();
    }
    return order;
}

} // namespace

std::optional<RigOrder> readRigOrder(const QByteArray& payload, QString* problem)
{
    QVector<JsonMistake> mistakes;
    const std::optional<JsonNode> json = readJson(payload, &mistakes);
    ConfigProblems problems(QStringLiteral("order"), payload);
    for (const JsonMistake& mistake : qAsConst(mistakes)) {
        problems.add(QString(), mistake.offset, mistake.text);
    }
    if (json && json->type != JsonNode::Type::Object) {
        problems.add(QString(), json->offset, wording("expected an object"));
    }
    if (!problems.all().isEmpty()) {
        *problem = textOf(problems.all());
        return std::nullopt;
    }
    RigOrder order = readFields(ConfigObject(*json, QString(), &problems));
    order.size = payload.size();
    *problem = textOf(problems.all());
    return problem->isEmpty() ? std::optional<RigOrder>(order) : std::nullopt;
}
