#include "command_line_numbers.h"

#include <QCommandLineParser>

#include <cstdio>
#include <cstdlib>

namespace {
constexpr int c_usageError = 2;
}

void readOptions(QCommandLineParser* parser)
{
    parser->addHelpOption();
    parser->process(QCoreApplication::arguments());
    const QStringList others = parser->positionalArguments();
    if (!others.isEmpty()) {
        std::fprintf(stderr, "unexpected argument \"%s\"\n", qPrintable(others.constFirst()));
        std::exit(c_usageError);
    }
}

quint64 wholeNumber(const QCommandLineParser& parser, const QString& option, quint64 lowest, quint64 highest)
{
    bool ok = false;
    const quint64 number = parser.value(option).toULongLong(&ok);
    if (!ok || number < lowest || number > highest) {
        std::fprintf(stderr, "--%s: expected a whole number from %llu to %llu, got \"%s\"\n",
                     qPrintable(option), lowest, highest, qPrintable(parser.value(option)));
        std::exit(c_usageError);
    }
    return number;
}
