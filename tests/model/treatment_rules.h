#pragma once

#include "journal.h"
#include "model_state.h"

/// The rules that backends keep with their treatments: released once each, one at a time, those that do
/// something before those that ask, each kind in its order.
class TreatmentRules
{
public:
    explicit TreatmentRules(const Journal& journal)
        : m_journal(journal)
    {}

    std::shared_ptr<model::Backend> makeBackend(const QString& toolName);
    void destroyBackend(const std::shared_ptr<model::Backend>& backend);
    void addTool(const std::shared_ptr<model::Tool>& tool);
    void closeTool(const std::shared_ptr<model::Tool>& tool);
    void initialized(model::Backend& backend);

    /// The backend has answered to a treatment that was to be queued.
    void queued(model::Backend& backend, const model::Treatment& treatment, bool accepted);
    /// The treatment that a new order of the backend carries out.
    const model::Treatment& orderMade(model::Backend& backend) const;
    void replied(model::Backend& backend, int id, const QString& name);
    void released(model::Backend& backend, int id, const QString& name, bool success);

    void check(const model::Backend& backend) const;

    quint64 releases = 0;
    quint64 refusals = 0; ///< by a full queue

private:
    void bind(model::Backend& backend) const;
    static model::Treatments& turn(model::Backend& backend);
    void requireFirst(model::Backend& backend, int id, const QString& name) const;

    const Journal& m_journal;
    std::vector<std::shared_ptr<model::Backend>> m_backends;
    std::vector<std::shared_ptr<model::Tool>> m_tools; ///< in the order of their making
};
