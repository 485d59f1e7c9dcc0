#pragma once

#include "literals.h"

#include <plugin_management/d_abstract_command.h>

/// The command "survey": sends one request for each number of the section "timeouts", with this time limit,
/// and reports "doneOk" with each reply. The plugin's own commands send one request at a time, all with the
/// same limit.
class SurveyCommand : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(SurveyCommand)

public:
    SurveyCommand(const QVariantMap& parameters, QObject* parent)
        : DAbstractCommand("survey"_s, parameters, parent)
    {
        declareAResult("doneOk"_s, "bool"_s, "Job done"_s, QVariant(false));
    }

    bool commandExecute() override
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

private:
    bool onReply(quint64 request, const QVariantMap& reply)
    {
        Q_UNUSED(request)
        Q_UNUSED(reply)
        commandUpdateResult("doneOk"_s, true);
        return true;
    }
};
