#pragma once

#include <configuration/problem.h>
#include <process/output.h>

/// Adds the "place" of problem to the object of a failure, as far as it is known.
void addPlace(const Problem& problem, Json* json);

/// Tells a failure that belongs to no order: people on standard error, programs as an object in output. kind
/// is one of "usage", "configuration", "syntax", "timeIsUp" and the names of DFailure's kinds.
void reportFailure(const char* kind, const Problem& problem, Output* output);
void reportFailure(const char* kind, const QString& text, Output* output);
