#pragma once

#include <process/json_line.h>

#include <functional>

class DOrder;
class DTool;
struct DCommandDescription;

/// How the command line writes what a rig tells in the same form.
struct RigForms
{
    using Write = std::function<void(const Json& object)>;

    /// A command of a tool.
    std::function<Json(const DTool& tool, const DCommandDescription& command)> command;
    /// Writes each object of an order that was started, its end last; number is what it is called.
    std::function<void(DOrder* order, int number, const Write& write)> follow;
};
