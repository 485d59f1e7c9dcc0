#pragma once

#include "json_line.h"

#include <QString>

/// Standard output and standard error of the bench. With JSON, standard output carries one JSON object a line
/// and nothing else.
class Output
{
public:
    explicit Output(bool json)
        : m_json(json)
    {}

    bool isJson() const { return m_json; }

    /// Writes the JSON form or the text form of one piece of output, whichever was asked for.
    void write(const Json& json, const QString& text);
    /// Writes a line for people; with JSON nothing.
    void text(const QString& text);
    /// Writes a diagnostic to standard error, "appvantor: TEXT".
    static void diagnostic(const QString& text);

    /// True once standard output could not be written to; said once on standard error.
    bool hasFailed() const { return m_failed; }

private:
    void line(const std::string& line);

    bool m_json;
    bool m_failed = false;
};
