#pragma once

#include "journal.h"
#include "literals.h"
#include "model_state.h"

#include <algorithm>

/// The rules that backends keep with their treatments: released once each, one at a time, those that do
/// something before those that ask, each kind in its order.
class TreatmentRules
{
public:
    explicit TreatmentRules(const Journal& journal)
        : m_journal(journal)
    {}

    std::shared_ptr<Backend> makeBackend(const QString& toolName)
    {
        m_backends.push_back(std::make_shared<Backend>());
        m_backends.back()->toolName = toolName;
        return m_backends.back();
    }

    void destroyBackend(const std::shared_ptr<Backend>& backend)
    {
        m_backends.erase(std::remove(m_backends.begin(), m_backends.end(), backend), m_backends.end());
    }

    void addTool(const std::shared_ptr<Tool>& tool)
    {
        m_tools.push_back(tool);
        for (const auto& backend : m_backends) {
            if (backend->tool == nullptr && backend->initialized) {
                bind(*backend);
            }
        }
    }

    void closeTool(const std::shared_ptr<Tool>& tool)
    {
        m_tools.erase(std::remove(m_tools.begin(), m_tools.end(), tool), m_tools.end());
        for (const auto& backend : m_backends) {
            if (backend->tool == tool) {
                bind(*backend);
            }
        }
    }

    void initialized(Backend& backend)
    {
        if (!backend.initialized) {
            backend.initialized = true;
            bind(backend);
        }
    }

    /// The backend has answered to a treatment that was to be queued.
    void queued(Backend& backend, const Treatment& treatment, bool accepted)
    {
        const bool question = backend.tool != nullptr && asks(treatment.plan.command);
        Treatments& queue = question ? backend.questions : backend.actions;
        const int limit = std::max(256, backend.channels.value_or(0));
        m_journal.require(
            accepted == (static_cast<int>(queue.size()) < limit),
            "a queue of %1 treatments, of %2 at most, answers wrongly"_s.arg(static_cast<int>(queue.size()))
                .arg(limit));
        if (accepted) {
            queue.push_back(treatment);
        } else {
            ++refusals;
        }
    }

    /// The treatment that a new order of the backend carries out.
    const Treatment& orderMade(Backend& backend) const
    {
        m_journal.require(backend.running == nullptr, "two treatments run at a time"_s);
        m_journal.require(!turn(backend).empty(), "an order is made for no treatment"_s);
        m_journal.require(backend.tool != nullptr && backend.tool->device != nullptr &&
                              backend.tool->device->connected,
                          "a treatment runs without a device"_s);
        backend.runningAsks = backend.actions.empty();
        return turn(backend).front();
    }

    void replied(Backend& backend, int id, const QString& name)
    {
        requireFirst(backend, id, name);
        const bool succeeded =
            backend.running != nullptr && backend.running->decided && !backend.running->outcomes.front();
        m_journal.require(succeeded && !backend.replied, "results of a treatment that has none to tell"_s);
        backend.replied = true;
    }

    void released(Backend& backend, int id, const QString& name, bool success)
    {
        ++releases;
        requireFirst(backend, id, name);
        if (backend.running != nullptr) {
            m_journal.require(backend.running->decided, "a treatment is released while it runs"_s);
            m_journal.require(success == !backend.running->outcomes.front(),
                              "a treatment is released with another outcome"_s);
        } else {
            const bool refused = turn(backend).front().plan.deed == InvocationPlan::Deed::RefusedByHost;
            const bool reachable =
                backend.tool != nullptr && backend.tool->device != nullptr && backend.tool->device->connected;
            m_journal.require(refused || !reachable, "a treatment is released without having run"_s);
            m_journal.require(!success, "a treatment succeeds without having run"_s);
        }
        m_journal.require(success == backend.replied, "a treatment's results were not told"_s);
        turn(backend).pop_front();
        backend.running = nullptr;
        backend.replied = false;
    }

    void check(const Backend& backend) const
    {
        const bool waits = !backend.actions.empty() || !backend.questions.empty();
        m_journal.require(!waits || (backend.running != nullptr && backend.running->isRunning()),
                          "treatments wait for nothing"_s);
    }

    quint64 releases = 0;
    quint64 refusals = 0; ///< by a full queue

private:
    void bind(Backend& backend) const
    {
        const auto found = std::find_if(m_tools.cbegin(), m_tools.cend(), [&backend](const auto& tool) {
            return tool->name == backend.toolName &&
                   tool->channels == backend.channels.value_or(tool->channels);
        });
        backend.tool = found != m_tools.cend() ? *found : nullptr;
        if (backend.tool != nullptr) {
            backend.channels = backend.tool->channels;
        }
    }

    /// The one that runs; else the one whose turn it is.
    static Treatments& turn(Backend& backend)
    {
        const bool question = backend.running != nullptr ? backend.runningAsks : backend.actions.empty();
        return question ? backend.questions : backend.actions;
    }

    void requireFirst(Backend& backend, int id, const QString& name) const
    {
        const Treatments& queue = turn(backend);
        const bool first = !queue.empty() && queue.front().id == id && queue.front().plan.command == name;
        m_journal.require(first, "treatment %1 (%2) out of turn"_s.arg(id).arg(name));
    }

    const Journal& m_journal;
    std::vector<std::shared_ptr<Backend>> m_backends;
    std::vector<std::shared_ptr<Tool>> m_tools; ///< in the order of their making
};
