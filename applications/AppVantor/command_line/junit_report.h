#pragma once

#include "script.h"

#include <QSaveFile>

#include <vector>

class Shell;

/// What became of the expectations of scripts, in JUnit's form: a suite for each file, a case for each
/// expectation, and one with an error for each other line that failed.
class JUnitReport
{
public:
    JUnitReport() = default;
    Q_DISABLE_COPY(JUnitReport)

    /// Begins a report in file, which is there once it is written. Returns an empty text, or why it cannot
    /// be.
    QString begin(const QString& file);
    /// Notes what shell tells.
    void follow(const Shell& shell);
    /// Returns an empty text, or why the report cannot be written.
    QString write();

private:
    struct Case
    {
        ScriptLine line;
        double seconds = 0;
        QString failure = {}; ///< of an expectation
        QString error = {};   ///< of any other line
    };
    struct Suite
    {
        QString file;
        std::vector<Case> cases;
    };

    void add(const Case& done);

    QSaveFile m_file;
    std::vector<Suite> m_suites; ///< in the order in which they began
    QString m_began;
};
