#pragma once

#include "option_table.h"

#include <QStringList>

class Bench;
class DTool;

/// A command line of the bench that is being typed in a shell.
class TypedLine
{
public:
    /// words stand behind the program's name; the last one is being typed.
    explicit TypedLine(const QStringList& words);
    Q_DISABLE_COPY(TypedLine)

    /// The bench's options that it has so far.
    const Options& options() const { return m_given; }
    /// True when what the last word may be completed to depends on the bench.
    bool needsBench() const;
    /// What the last word may be completed to; without bench, none of what depends on it. Where a file is
    /// expected, nothing: shells know files better.
    QStringList completions(const Bench* bench) const;

private:
    void take(const QString& word);
    const OptionRow* findOption(const QString& written) const;
    QStringList optionNames() const;
    QStringList argumentsOf(const DTool& tool) const;

    Options m_given;
    const std::vector<OptionRow> m_options;
    const SubcommandRow* m_subcommand = nullptr; ///< null before one is there
    QStringList m_arguments;                     ///< the words behind it, without options
    const OptionRow* m_expectsValue = nullptr;   ///< the option whose value comes next
    QString m_prefix;                            ///< of the value: "--theme=", where it stands in one word
    QString m_word;                              ///< that which is being typed
};
