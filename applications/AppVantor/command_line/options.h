#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct Options
{
    enum class Subcommand
    {
        Window,
        Commands,
        Channels,
        Get,
        Set,
        Off,
        Watch,
        Run,
        Shell,
        Serve,
        Rigs,
        Lease,
        Release,
        Discover,
        Panel,
        Complete,
        About
    };

    Subcommand subcommand = Subcommand::Window;
    QString configuration;
    QString tool;
    QString trace;
    QString logLevel = QStringLiteral("info");
    bool json = false;
    bool realtime = false;
    QString broker;      ///< its address; empty for that of the environment
    QString rig;         ///< a name on the broker
    QString login;       ///< a file with user and password
    QString authorities; ///< a file with certificates
    QString certificate; ///< a file
    QString key;         ///< a file
    /// The words after the subcommand.
    QStringList words;

    std::optional<double> seconds; ///< of set, run, discover, window and panel
    std::optional<int> count;      ///< of watch and run
    QString edge;                  ///< of watch: "rising", "falling", or both with any other
    std::optional<double> timeout; ///< of watch, in seconds
    QString serve;                 ///< of window and shell: address of a broker
    bool readOnly = false;         ///< of serve, window and shell
    bool homeAssistant = false;    ///< of serve, window and shell
    bool offAtEnd = false;         ///< of all that can drive something
    QString configurationFor;      ///< of discover: file, name or label of a chip
    bool watch = false;            ///< of discover and rigs
    bool echo = false;             ///< of shell
    bool keepGoing = false;        ///< of shell: after a failure
    QString report;                ///< of shell: a file
    QString orders;                ///< of window: a file of lines that are carried out beside it
    QString screenshot;            ///< of window and panel
    QSize size;                    ///< of window and panel
    double scale = 0;              ///< of window and panel: 2 for 200 %, 0 for that of the screen
    QString theme;                 ///< of window and panel: "light", "dark", or empty for the desktop's
    QString language;              ///< of window and panel: a locale name, or empty for the user's
};

/// What parsing ends with: options to follow, or a text to write and a status to end with.
struct ParsedOptions
{
    std::optional<Options> options;
    QString text;
    int exitStatus = 0;
};

/// Reads the arguments of the process, its name first.
ParsedOptions parseOptions(const QStringList& arguments);
