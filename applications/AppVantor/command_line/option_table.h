#pragma once

#include "options.h"

#include <functional>
#include <vector>

/// A text of the tables.
struct TableText : QString
{
    TableText(const char* utf8)
        : QString(QString::fromUtf8(utf8))
    {}
};

/// A subcommand as it is written and explained.
struct SubcommandRow
{
    Options::Subcommand subcommand;
    TableText name;
    /// What follows the name; in brackets where it may be left out, empty where nothing follows.
    TableText words;
    TableText summary;
    /// Further sentences, or nothing.
    TableText details;
    /// Names of the options that it takes beside the global ones, between blanks.
    TableText options;
};

/// All subcommands, in the order of the help.
const std::vector<SubcommandRow>& subcommandRows();

/// An option as it is written, explained and taken.
struct OptionRow
{
    class Taker
    {
    public:
        template <typename Take>
        Taker(Take take, const QStringList& all = {})
            : values(all)
            , m_take(take)
        {}

        /// Takes the value that the option was given. Returns what was expected instead, or an empty text.
        QString operator()(const QString& given) const { return m_take(given); }

        /// All that it takes; empty where that cannot be listed.
        const QStringList values;

    private:
        std::function<QString(const QString& value)> m_take;
    };

    TableText name;
    /// What its value is called; empty for one that takes none.
    TableText value;
    TableText help;
    Taker take;
    bool isGlobal = false;
};

/// All options, in the order of the help. What they are given goes to options.
std::vector<OptionRow> optionRows(Options* options);

/// True for an option that goes with the subcommand.
bool takesOption(const SubcommandRow& subcommand, const OptionRow& option);
