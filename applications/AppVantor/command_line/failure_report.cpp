#include "failure_report.h"

#include <process/diagnostics.h>

namespace {

Json placeJson(const Problem& problem)
{
    Json place = Json::object();
    if (!problem.file.isEmpty()) {
        place["file"] = toJson(problem.file);
    }
    if (problem.line > 0) {
        place["line"] = problem.line;
    }
    if (problem.column > 0) {
        place["column"] = problem.column;
    }
    if (!problem.entry.isEmpty()) {
        place["entry"] = toJson(problem.entry);
    }
    return place;
}

} // namespace

void reportFailure(const char* kind, const Problem& problem, Output* output)
{
    diagnostic(problem.toString());
    output->json([&] {
        Json json = {{"type", "failure"}, {"kind", kind}, {"reason", toJson(problem.text)}};
        const Json place = placeJson(problem);
        if (!place.empty()) {
            json["place"] = place;
        }
        return json;
    });
}
