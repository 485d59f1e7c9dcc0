#include "bench_process.h"
#include "literals.h"

#include <QFile>
#include <QtTest>

namespace {

QByteArray pluginLibrary()
{
    QFile file(QStringLiteral(PLUGIN_FILE));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Runs words, a subcommand with its arguments, with this plugin.
BenchRun runWithPlugin(const QString& plugin, const QStringList& words = {"commands"_s})
{
    const QByteArray configuration = R"({"device": {"type": "simulated", "lines": [ {"name": "a"} ]},
      "tools": [ {"name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "%1"} ] })";
    const QString file = temporaryFile(QString::fromUtf8(configuration).arg(plugin).toUtf8());
    return runBench(QStringList{"--config"_s, file} + words);
}

QString testPlugin(const QString& name)
{
    return "%1/lib%2_plugin.so"_s.arg(QStringLiteral(LOADER_PLUGINS), name);
}

/// The plugin's library with a text in it replaced by another of the same length.
QByteArray libraryWith(const QByteArray& text, const QByteArray& replacement)
{
    QByteArray library = pluginLibrary();
    return library.replace(text, replacement);
}

/// The plugin's library with one byte of the head of its metadata changed: its format (0), Qt's major (1) and
/// minor version (2), or whether it is a debug build (3).
QByteArray libraryWithHead(int position, char value)
{
    QByteArray library = pluginLibrary();
    const QByteArray mark = "QTMETADATA !";
    const int head = library.indexOf(mark) + mark.size();
    library[head + position] = value;
    return library;
}

} // namespace

/// The bench with plugin libraries that are broken, or not what it takes.
class TestPluginFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLibraryThatCannotBeUsedIsToldWithItsFile_data();
    void aLibraryThatCannotBeUsedIsToldWithItsFile();
    void aLibraryThatIsCutOffIsToldWithItsFile();
    void whatIsNoFileIsToldWithItsName_data();
    void whatIsNoFileIsToldWithItsName();
    void anUnreadableLibraryIsTold();
    void aPluginOfAnotherKindIsToldWithItsFile_data();
    void aPluginOfAnotherKindIsToldWithItsFile();
    void aCommandThatCannotBeMadeIsTold();
    void debugAndReleaseBuildsMix();
};

void TestPluginFiles::aLibraryThatCannotBeUsedIsToldWithItsFile_data()
{
    QTest::addColumn<QByteArray>("library");
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("empty") << QByteArray()
                           << QByteArray(
                                  "not a plugin for this version of Qt ('%1' is not an ELF object (file "
                                  "too small))");
    QTest::newRow("a text") << QByteArray(100, 'x')
                            << QByteArray("not a plugin for this version of Qt ('%1' is not an ELF object)");
    QTest::newRow("an older Qt") << libraryWithHead(1, 4)
                                 << QByteArray("The plugin '%1' uses incompatible Qt library. (4.15.0)");
    QTest::newRow("a newer Qt") << libraryWithHead(2, 99)
                                << QByteArray("The plugin '%1' uses incompatible Qt library. (5.99.0)");
    QTest::newRow("metadata of another format")
        << libraryWithHead(0, 9)
        << QByteArray("not a plugin for this version of Qt (Failed to extract plugin meta data from '%1')");
    QTest::newRow("metadata that is none")
        << libraryWithHead(4, '\xff')
        << QByteArray("not a plugin for this version of Qt (Failed to extract plugin meta data from '%1')");
    QTest::newRow("no metadata")
        << libraryWith("QTMETADATA !", "QTMETEDETE !")
        << QByteArray("not a plugin for this version of Qt (Failed to extract plugin meta data from '%1')");
    QTest::newRow("another interface")
        << libraryWith("fr.velt.rd.tav.PToolGpio", "fr.velt.rd.tav.PToolGpia")
        << QByteArray("interface identifier \"fr.velt.rd.tav.PToolGpia\", expected "
                      "\"fr.velt.rd.tav.PToolGpio\"");
    QTest::newRow("no entry points") << libraryWith("qt_plugin_instance", "qt_plugin_instants")
                                     << QByteArray("it has no function \"qt_plugin_instance\"\n");
    QTest::newRow("a library that is missing")
        << libraryWith("libutilities.so", "libutilitiez.so")
        << QByteArray(
               "Cannot load library %1: (libutilitiez.so: cannot open shared object file: No such file "
               "or directory)");
    QTest::newRow("a function that is missing")
        << libraryWith("_Z17versionFromString", "_Z17versionFromStrong")
        << QByteArray("Cannot load library %1: (%1: undefined symbol: _Z17versionFromStrong");
}

void TestPluginFiles::aLibraryThatCannotBeUsedIsToldWithItsFile()
{
    QFETCH(QByteArray, library);
    QFETCH(QByteArray, message);
    const QString file = temporaryFile(library, "so"_s);
    const BenchRun run = runWithPlugin(file);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QByteArray());
    const QByteArray expected = "appvantor: " + file.toUtf8() + ": " + message.replace("%1", file.toUtf8());
    QVERIFY2(run.errors.contains(expected), run.errors.constData());
}

void TestPluginFiles::aLibraryThatIsCutOffIsToldWithItsFile()
{
    const QByteArray library = pluginLibrary();
    constexpr int cuts = 24;
    for (int cut = 0; cut < cuts; ++cut) {
        const QString file = temporaryFile(library.left(library.size() / cuts * cut), "so"_s);
        const BenchRun run = runWithPlugin(file);
        QCOMPARE(run.status, 2);
        QVERIFY2(
            run.errors.startsWith("appvantor: " + file.toUtf8() + ": not a plugin for this version of Qt ("),
            run.errors.constData());
        QVERIFY(QFile::remove(file));
    }
}

void TestPluginFiles::whatIsNoFileIsToldWithItsName_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("a folder") << "/usr"_s;
    QTest::newRow("an endless device") << "/dev/zero"_s;
    QTest::newRow("an empty device") << "/dev/null"_s;
}

void TestPluginFiles::whatIsNoFileIsToldWithItsName()
{
    QFETCH(QString, file);
    const BenchRun run = runWithPlugin(file);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors, "appvantor: " + file.toUtf8() +
                             ": not a plugin for this version of Qt (The shared library was not found.)\n");
}

void TestPluginFiles::anUnreadableLibraryIsTold()
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

void TestPluginFiles::aPluginOfAnotherKindIsToldWithItsFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("foreign interface")
        << "foreign"_s << QByteArray("interface identifier \"org.example.ForeignPlugin\"");
    QTest::newRow("instance that throws")
        << "throwing"_s << QByteArray("its instance could not be made: out of magic\n");
    QTest::newRow("instance that throws a number")
        << "hurling"_s << QByteArray("its instance could not be made: it threw something unknown\n");
    QTest::newRow("no instance") << "null"_s << QByteArray("it gave no instance\n");
    QTest::newRow("instance of another host")
        << "plain_object"_s << QByteArray("its instance is no plugin of this host\n");
    QTest::newRow("no instance for a tool")
        << "hollow"_s << QByteArray("it made no instance that this host can use for the tool \"T\"\n");
}

void TestPluginFiles::aPluginOfAnotherKindIsToldWithItsFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, message);
    const QString file = testPlugin(name);
    const BenchRun run = runWithPlugin(file);
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.startsWith("appvantor: " + file.toUtf8() + ": " + message), run.errors.constData());
}

void TestPluginFiles::aCommandThatCannotBeMadeIsTold()
{
    const BenchRun run = runWithPlugin(testPlugin("barren"_s), {"run"_s, "work"_s});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QByteArray("appvantor: [1] work failed: the plugin made no command \"work\"\n"));
}

/// Qt on Linux lets them.
void TestPluginFiles::debugAndReleaseBuildsMix()
{
    for (const char debug : {'\0', '\1'}) {
        const BenchRun run = runWithPlugin(temporaryFile(libraryWithHead(3, debug), "so"_s));
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.startsWith("setValue: "));
    }
}

QTEST_GUILESS_MAIN(TestPluginFiles)
#include "test_plugin_files.moc"
