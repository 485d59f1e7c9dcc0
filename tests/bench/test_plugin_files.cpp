#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QFile>
#include <QtTest>

namespace {

QByteArray pluginLibrary()
{
    return contentOf(QStringLiteral(PLUGIN_FILE));
}

/// Runs words, a subcommand with its arguments, with this plugin.
BenchRun runWithPlugin(const QString& plugin, const QStringList& words = {"commands"_s})
{
    return runBench(
        QStringList{"--config"_s, boardFile(R"("lines": [ {"name": "a"} ])", {}, plugin.toUtf8())} + words);
}

QString testPlugin(const char* name)
{
    return "%1/lib%2_plugin.so"_s.arg(QStringLiteral(LOADER_PLUGINS), QLatin1String(name));
}

QString fileOf(const QByteArray& library)
{
    return temporaryFile(library, "so"_s);
}

/// The plugin's library with a text in it replaced by another of the same length.
QString libraryWith(const QByteArray& text, const QByteArray& replacement)
{
    return fileOf(pluginLibrary().replace(text, replacement));
}

/// The plugin's library with one byte of the head of its metadata changed: its format (0), Qt's major (1) and
/// minor version (2), or whether it is a debug build (3).
QString libraryWithHead(int position, char value)
{
    QByteArray library = pluginLibrary();
    const QByteArray mark = "QTMETADATA !";
    const int head = library.indexOf(mark) + mark.size();
    library[head + position] = value;
    return fileOf(library);
}

} // namespace

/// The bench with plugin libraries that are broken, or not what it takes.
class TestPluginFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLibraryThatCannotBeUsedIsToldWithItsFile_data()
    {
        const Rows<QString, QByteArray> row("file", "message");
        row("empty", fileOf({}),
            "not a plugin for this version of Qt ('%1' is not an ELF object (file too small))");
        row("a text", fileOf(QByteArray(100, 'x')),
            "not a plugin for this version of Qt ('%1' is not an ELF object)");
        row("an older Qt", libraryWithHead(1, 4), "The plugin '%1' uses incompatible Qt library. (4.15.0)");
        row("a newer Qt", libraryWithHead(2, 99), "The plugin '%1' uses incompatible Qt library. (5.99.0)");
        row("metadata of another format", libraryWithHead(0, 9),
            "not a plugin for this version of Qt (Failed to extract plugin meta data from '%1')");
        row("metadata that is none", libraryWithHead(4, '\xff'),
            "not a plugin for this version of Qt (Failed to extract plugin meta data from '%1')");
        row("no metadata", libraryWith("QTMETADATA !", "QTMETEDETE !"),
            "not a plugin for this version of Qt (Failed to extract plugin meta data from '%1')");
        row("another interface", libraryWith("fr.velt.rd.tav.PToolGpio", "fr.velt.rd.tav.PToolGpia"),
            "interface identifier \"fr.velt.rd.tav.PToolGpia\", expected \"fr.velt.rd.tav.PToolGpio\"");
        row("no entry points", libraryWith("qt_plugin_instance", "qt_plugin_instants"),
            "it has no function \"qt_plugin_instance\"\n");
        row("a library that is missing", libraryWith("libutilities.so", "libutilitiez.so"),
            "Cannot load library %1: (libutilitiez.so: cannot open shared object file: No such file or "
            "directory)");
        row("a function that is missing", libraryWith("_Z17versionFromString", "_Z17versionFromStrong"),
            "Cannot load library %1: (%1: undefined symbol: _Z17versionFromStrong");
        for (const char* file : {"/usr", "/dev/zero", "/dev/null"}) {
            row(file, file, "not a plugin for this version of Qt (The shared library was not found.)\n");
        }
        row("foreign interface", testPlugin("foreign"), "interface identifier \"org.example.ForeignPlugin\"");
        row("instance that throws", testPlugin("throwing"), "its instance could not be made: out of magic\n");
        row("instance that throws a number", testPlugin("hurling"),
            "its instance could not be made: it threw something unknown\n");
        row("no instance", testPlugin("null"), "it gave no instance\n");
        row("instance of another host", testPlugin("plain_object"),
            "its instance is no plugin of this host\n");
        row("no instance for a tool", testPlugin("hollow"),
            "it made no instance that this host can use for the tool \"T\"\n");
    }

    void aLibraryThatCannotBeUsedIsToldWithItsFile()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, message);
        const BenchRun run = runWithPlugin(file);
        QCOMPARE(run, (BenchRun{2, "", run.errors}));
        const QByteArray expected =
            "appvantor: " + file.toUtf8() + ": " + message.replace("%1", file.toUtf8());
        QVERIFY2(run.errors.contains(expected), run.errors.constData());
    }

    void aLibraryThatIsCutOffIsToldWithItsFile()
    {
        const QByteArray library = pluginLibrary();
        constexpr int cuts = 24;
        for (int cut = 0; cut < cuts; ++cut) {
            const QString file = fileOf(library.left(library.size() / cuts * cut));
            const BenchRun run = runWithPlugin(file);
            QCOMPARE(run.status, 2);
            QVERIFY2(run.errors.startsWith("appvantor: " + file.toUtf8() +
                                           ": not a plugin for this version of Qt ("),
                     run.errors.constData());
            QVERIFY(QFile::remove(file));
        }
    }

    void anUnreadableLibraryIsTold()
    {
        const BenchRun run =
            runScript("cp \"%1\" p.so; chmod 000 p.so\n"
                      "sed 's#\"p_tool_gpio\"#\"./p.so\"#' \"$EXAMPLES/traffic_light.json\" >c\n"
                      "unprivileged \"$BENCH\" --config c commands"_s.arg(QStringLiteral(PLUGIN_FILE)));
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.startsWith("appvantor: ") && run.errors.contains("/p.so: not a plugin") &&
                     run.errors.contains("Permission denied"),
                 run.errors.constData());
    }

    void aCommandThatCannotBeMadeIsTold()
    {
        QCOMPARE(runWithPlugin(testPlugin("barren"), "run work"_words),
                 (BenchRun{1, "", "appvantor: [1] work failed: the plugin made no command \"work\"\n"}));
    }

    /// Qt on Linux lets them.
    void debugAndReleaseBuildsMix()
    {
        for (const char debug : {'\0', '\1'}) {
            const BenchRun run = runWithPlugin(libraryWithHead(3, debug));
            QCOMPARE(run, (BenchRun{0, run.output}));
            QVERIFY(run.output.startsWith("setValue: "));
        }
    }
};

QTEST_GUILESS_MAIN(TestPluginFiles)
#include "test_plugin_files.moc"
