#include "treatment_rules.h"

#include "text.h"

#include <algorithm>

using namespace model;

std::shared_ptr<Backend> TreatmentRules::makeBackend(const QString& toolName)
{
    m_backends.push_back(std::make_shared<Backend>());
    m_backends.back()->toolName = toolName;
    return m_backends.back();
}

void TreatmentRules::destroyBackend(const std::shared_ptr<Backend>& backend)
{
    m_backends.erase(std::remove(m_backends.begin(), m_backends.end(), backend), m_backends.end());
}

void TreatmentRules::addTool(const std::shared_ptr<Tool>& tool)
{
    m_tools.push_back(tool);
    for (const auto& backend : m_backends) {
        if (backend->tool == nullptr && backend->initialized) {
            bind(*backend);
        }
    }
}

void TreatmentRules::closeTool(const std::shared_ptr<Tool>& tool)
{
    m_tools.erase(std::remove(m_tools.begin(), m_tools.end(), tool), m_tools.end());
    for (const auto& backend : m_backends) {
        if (backend->tool == tool) {
            bind(*backend);
        }
    }
}

void TreatmentRules::initialized(Backend& backend)
{
    if (!backend.initialized) {
        backend.initialized = true;
        bind(backend);
    }
}

void TreatmentRules::bind(Backend& backend) const
{
    const auto found = std::find_if(m_tools.cbegin(), m_tools.cend(),
                                    [&backend](const auto& tool) { return tool->name == backend.toolName; });
    backend.tool = found != m_tools.cend() ? *found : nullptr;
    if (backend.tool != nullptr) {
        backend.limit = std::max(256, backend.tool->channels);
    }
}

void TreatmentRules::queued(Backend& backend, const Treatment& treatment, bool accepted)
{
    const bool hasRoom = static_cast<int>(backend.queue.size()) < backend.limit;
    m_journal.require(accepted == hasRoom, "a queue of %1 treatments, of %2 at most, answers wrongly"_q
                                               .arg(static_cast<int>(backend.queue.size()))
                                               .arg(backend.limit));
    if (accepted) {
        backend.queue.push_back(treatment);
    } else {
        ++refusals;
    }
}

const Treatment& TreatmentRules::orderMade(const Backend& backend) const
{
    m_journal.require(!backend.queue.empty(), "an order is made for no treatment"_q);
    m_journal.require(backend.running == nullptr, "two treatments run at a time"_q);
    m_journal.require(backend.tool != nullptr && backend.tool->device != nullptr &&
                          backend.tool->device->connected,
                      "a treatment runs without a device"_q);
    return backend.queue.front();
}

void TreatmentRules::requireFirst(const Backend& backend, int id, const QString& name) const
{
    const bool first = !backend.queue.empty() && backend.queue.front().id == id &&
                       backend.queue.front().plan.command == name;
    m_journal.require(first, "treatment %1 (%2) out of turn"_q.arg(id).arg(name));
}

void TreatmentRules::replied(Backend& backend, int id, const QString& name)
{
    requireFirst(backend, id, name);
    const bool succeeded =
        backend.running != nullptr && backend.running->decided && backend.running->outcomes.front().success;
    m_journal.require(succeeded && !backend.replied, "results of a treatment that has none to tell"_q);
    backend.replied = true;
}

void TreatmentRules::released(Backend& backend, int id, const QString& name, bool success)
{
    ++releases;
    requireFirst(backend, id, name);
    if (backend.running != nullptr) {
        m_journal.require(backend.running->decided, "a treatment is released while it runs"_q);
        m_journal.require(success == backend.running->outcomes.front().success,
                          "a treatment is released with another outcome"_q);
    } else {
        const bool refused = backend.queue.front().plan.deed == InvocationPlan::Deed::RefusedByHost;
        const bool reachable =
            backend.tool != nullptr && backend.tool->device != nullptr && backend.tool->device->connected;
        m_journal.require(refused || !reachable, "a treatment is released without having run"_q);
        m_journal.require(!success, "a treatment succeeds without having run"_q);
    }
    m_journal.require(success == backend.replied, "a treatment's results were not told"_q);
    backend.queue.pop_front();
    backend.running = nullptr;
    backend.replied = false;
}

void TreatmentRules::check(const Backend& backend) const
{
    m_journal.require(backend.queue.empty() || (backend.running != nullptr && backend.running->isRunning()),
                      "treatments wait for nothing"_q);
}
