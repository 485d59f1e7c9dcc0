#pragma once

#include <QCommandLineParser>
#include <QString>

#include <cstdio>
#include <cstdlib>

/// Reads the arguments of this process, which may be options only; ends it with status 2 otherwise.
inline void readOptions(QCommandLineParser* parser)
{
    parser->addHelpOption();
    parser->process(QCoreApplication::arguments());
    const QStringList others = parser->positionalArguments();
    if (!others.isEmpty()) {
        std::fprintf(stderr, "unexpected argument \"%s\"\n", qPrintable(others.constFirst()));
        std::exit(2);
    }
}

/// The value of an option as a whole number from lowest to highest; another value ends the process with
/// status 2.
inline quint64 wholeNumber(const QCommandLineParser& parser, const QString& option, quint64 lowest,
                           quint64 highest)
{
    bool ok = false;
    const quint64 number = parser.value(option).toULongLong(&ok);
    if (!ok || number < lowest || number > highest) {
        std::fprintf(stderr, "--%s: expected a whole number from %llu to %llu, got \"%s\"\n",
                     qPrintable(option), lowest, highest, qPrintable(parser.value(option)));
        std::exit(2);
    }
    return number;
}
