#include "survey_command.h"

#include "literals.h"

SurveyCommand::SurveyCommand(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand("survey"_s, parameters, parent)
{
    declareAResult("doneOk"_s, "bool"_s, "Job done"_s, QVariant(false));
}

bool SurveyCommand::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    const QVariantList timeouts = getParametersSection("timeouts"_s).toList();
    for (const QVariant& timeout : timeouts) {
        addInstruction("device"_s, "getValue"_s, {{"channel"_s, "line0"_s}}, timeout.toInt(),
                       ReplyDelegate(this, &SurveyCommand::onReply));
    }
    return true;
}

bool SurveyCommand::onReply(quint64 request, const QVariantMap& reply)
{
    Q_UNUSED(request)
    Q_UNUSED(reply)
    commandUpdateResult("doneOk"_s, true);
    return true;
}
