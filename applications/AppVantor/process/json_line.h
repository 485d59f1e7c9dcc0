#pragma once

#include <QString>
#include <QVariant>

#include <nlohmann/json.hpp>

/// A JSON object that keeps the order of its keys and its whole numbers exact.
using Json = nlohmann::ordered_json;

/// The JSON value of a variant: what JSON cannot hold becomes its text, and without one null.
Json toJson(const QVariant& value);
Json toJson(const QString& text);
