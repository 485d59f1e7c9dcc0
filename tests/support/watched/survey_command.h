#pragma once

#include <plugin_management/d_abstract_command.h>

/// The command "survey": sends one request for each number of the section "timeouts", with this time limit,
/// and reports "doneOk" with each reply. The plugin's own commands send one request at a time, all with the
/// same limit.
class SurveyCommand : public DAbstractCommand
{
    Q_OBJECT
    Q_DISABLE_COPY(SurveyCommand)

public:
    SurveyCommand(const QVariantMap& parameters, QObject* parent);

    bool commandExecute() override;

private:
    bool onReply(quint64 request, const QVariantMap& reply);
};
