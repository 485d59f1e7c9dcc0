#pragma once

#include <QString>
#include <QVariant>

#include <nlohmann/json.hpp>

#include <string>

/// A JSON object that keeps the order of its keys and its whole numbers exact.
using Json = nlohmann::ordered_json;

/// The JSON value of a variant: what JSON cannot hold becomes its text, and without one null. Beside a whole
/// number of a map that is beyond 2^53 stands its text, called as the number with "Text" behind it.
Json toJson(const QVariant& value);
Json toJson(const QString& text);

/// A JSON value in one line. What holds half a surrogate pair, from outside, has it replaced.
std::string lineOf(const Json& value);
