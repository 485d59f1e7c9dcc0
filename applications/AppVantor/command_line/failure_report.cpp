#include "failure_report.h"

#include <process/diagnostics.h>

void addPlace(const Problem& problem, Json* json)
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
    if (!place.empty()) {
        (*json)["place"] = place;
    }
}

void reportFailure(const char* kind, const Problem& problem, Output* output)
{
    diagnostic(problem.toString());
    output->json([&] {
        Json json = {{"type", "failure"}, {"kind", kind}, {"reason", toJson(problem.text.english())}};
        addPlace(problem, &json);
        return json;
    });
}

void reportFailure(const char* kind, const QString& text, Output* output)
{
    reportFailure(kind, Problem{DWording::told(text)}, output);
}
