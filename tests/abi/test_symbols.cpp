#include "literals.h"
#include "run_program.h"

#include <QtTest>

class TestSymbols : public QObject
{
    Q_OBJECT

    static inline const QString c_pluginFile = QStringLiteral(PLUGIN_FILE);

    /// Names of the symbols of a library, sorted and each once. The arguments go to nm.
    static QStringList symbolsOf(const QString& file, const QStringList& arguments)
    {
        QByteArray output;
        if (runProgram(QStringList{QStringLiteral(NM_PROGRAM), "--format=posix"_s} + arguments +
                           QStringList(file),
                       &output) != 0) {
            return {"nm failed"_s};
        }
        QStringList symbols;
        for (const QString& line : QString::fromUtf8(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            // "name type [value size]", where a demangled name has blanks of its own.
            static const QRegularExpression afterName(" [A-Za-z]( [0-9a-f]*)*$"_s);
            symbols.append(line.left(line.indexOf(afterName)));
        }
        symbols.removeDuplicates();
        symbols.sort();
        return symbols;
    }

    static QStringList dynamicSymbols(const QString& file, const QStringList& arguments)
    {
        return symbolsOf(file, QStringList("-D"_s) + arguments);
    }

    static QStringList linesOf(const QString& name)
    {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        lines.sort();
        return lines;
    }

    static QStringList difference(const QStringList& list, const QStringList& other)
    {
        const QSet<QString> others(other.cbegin(), other.cend());
        QStringList rest;
        for (const QString& element : list) {
            if (!others.contains(element)) {
                rest.append(element);
            }
        }
        return rest;
    }

private Q_SLOTS:
    void libraryShowsItsTwoEntryPointsOnly()
    {
        QCOMPARE(dynamicSymbols(c_pluginFile, {"--defined-only"_s}),
                 QStringList({"qt_plugin_instance"_s, "qt_plugin_query_metadata"_s}));
    }

    void libraryTakesTheseSymbolsFromTheHost()
    {
        const QStringList defined =
            dynamicSymbols(QStringLiteral(UTILITIES_FILE), {"-C"_s, "--defined-only"_s}) +
            dynamicSymbols(QStringLiteral(PLUGIN_MANAGEMENT_FILE), {"-C"_s, "--defined-only"_s});
        const QStringList undefined = dynamicSymbols(c_pluginFile, {"-C"_s, "--undefined-only"_s});
        const QStringList taken = difference(undefined, difference(undefined, defined));
        const QStringList expected = linesOf(QStringLiteral(IMPORTED_SYMBOLS_FILE));
        QVERIFY(!expected.isEmpty());
        QCOMPARE(difference(taken, expected), QStringList());
        QCOMPARE(difference(expected, taken), QStringList());
    }

    void onlyTheInstanceIsAGuardedStatic()
    {
        const QStringList guards = symbolsOf(c_pluginFile, {"-C"_s}).filter("guard variable"_s);
        QCOMPARE(guards, QStringList("guard variable for qt_plugin_instance::_instance"_s));
    }
};

QTEST_GUILESS_MAIN(TestSymbols)
#include "test_symbols.moc"
