#include "survey_command.h"

#include "text.h"

SurveyCommand::SurveyCommand(const QVariantMap& parameters, QObject* parent)
    : DAbstractCommand("survey"_q, parameters, parent)
{
    declareAResult("doneOk"_q, "bool"_q, "Job done"_q, QVariant(false));
}

bool SurveyCommand::commandExecute()
{
    if (!DAbstractCommand::commandExecute()) {
        return false;
    }
    const QVariantList timeouts = getParametersSection("timeouts"_q).toList();
    for (const QVariant& timeout : timeouts) {
        addInstruction("device"_q, "getValue"_q, {{"channel"_q, "line0"_q}}, timeout.toInt(),
                       ReplyDelegate(this, &SurveyCommand::onReply));
    }
    return true;
}

bool SurveyCommand::onReply(quint64 request, const QVariantMap& reply)
{
    Q_UNUSED(request)
    Q_UNUSED(reply)
    commandUpdateResult("doneOk"_q, true);
    return true;
}
