#pragma once

#include "exact_compare.h"
#include "literals.h"
#include "quiet_test.h"
#include "records.h"
#include "report_check.h"

#include <plugin_management/d_abstract_command.h>

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <limits>

constexpr int c_highestInt = std::numeric_limits<int>::max();
constexpr int c_lowestInt = std::numeric_limits<int>::min();

inline QVariantMap onChannel(const QString& toolChannel)
{
    return {{"channel"_s, toolChannel}};
}

/// The tool channel "START" of a command's tool: its device channel and its direction.
inline void linkStart(CommandRecord& record, const QString& deviceChannel, const QVariant& direction)
{
    record.channels.insert("START"_s, {deviceChannel, {{"direction"_s, direction}}});
}

/// A command of an invocation, by default one on the tool channel "START", an output linked to the device
/// channel "line0"; with the record of what it asks of its base from now on.
template <typename Command>
class RecordedCommand
{
public:
    explicit RecordedCommand(const QVariantMap& arguments = onChannel("START"_s))
        : command(arguments, nullptr)
        , record(recordOf(command))
    {
        record.calls.clear();
        linkStart(record, "line0"_s, "out"_s);
    }

    /// Hands reply to the delegate of the instruction sent as number index, under that instruction's
    /// identifier.
    bool reply(int index, const QVariantMap& reply)
    {
        return replyAs(record.instructions.at(index).id, index, reply);
    }
    /// The same under another identifier.
    bool replyAs(quint64 id, int index, const QVariantMap& reply)
    {
        const auto onReply = record.instructions.at(index).onReply;
        return onReply(id, reply);
    }

    Command command;
    CommandRecord& record;
};

/// One that has been executed.
template <typename Command>
class ExecutedCommand : public RecordedCommand<Command>
{
public:
    explicit ExecutedCommand(const QVariantMap& arguments = onChannel("START"_s))
        : RecordedCommand<Command>(arguments)
    {
        this->command.commandExecute();
    }
};

/// A device request: its instruction and its arguments.
using Request = QPair<QString, QVariantMap>;
/// A result that a command updated.
using Result = QPair<QString, QVariant>;

/// What distinguishes the instructions sent from requests to the device with a time limit of 4000 ms.
inline QString requestProblem(const QVector<CommandRecord::Instruction>& sent,
                              const QVector<Request>& expected)
{
    return differenceOfLists(sent, expected, [](const auto& is, const Request& should) {
        return is.target == "device"_s && is.timeoutMs == 4000 && is.name == should.first
                   ? difference(is.arguments, should.second)
                   : "%1 to %2 within %3 ms"_s.arg(is.name, is.target).arg(is.timeoutMs);
    });
}

inline QString resultProblem(const QVector<CommandRecord::Result>& updated, const QVector<Result>& expected)
{
    return differenceOfLists(updated, expected, [](const auto& is, const Result& should) {
        return is.name == should.first ? difference(is.value, should.second) : is.name;
    });
}

/// Fails the test unless these are all requests that the record's command has sent; a Request each.
#define COMPARE_REQUESTS(record, ...) REQUIRE_NO_PROBLEM(requestProblem((record).instructions, __VA_ARGS__))
/// Fails the test unless these are all updates of results that the record's command has made; a Result each.
#define COMPARE_RESULTS(record, ...) REQUIRE_NO_PROBLEM(resultProblem((record).updatedResults, __VA_ARGS__))
