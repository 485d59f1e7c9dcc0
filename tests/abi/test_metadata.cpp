#include "literals.h"
#include "run_program.h"

#include <QtTest>

namespace {

/// The metadata of the plugin, byte by byte.
QByteArray expectedMetadata()
{
    QByteArray bytes = "QTMETADATA !";
    bytes.append('\0');
    bytes.append(static_cast<char>(QT_VERSION_MAJOR));
    bytes.append(static_cast<char>(QT_VERSION_MINOR));
#ifdef QT_NO_DEBUG
    bytes.append('\0');
#else
    bytes.append('\1');
#endif
    bytes.append("\xBF", 1);
    bytes.append("\x02\x78\x18"
                 "fr.velt.rd.tav.PToolGpio",
                 3 + 24);
    bytes.append("\x03\x69"
                 "PToolGpio",
                 2 + 9);
    bytes.append("\xFF", 1);
    return bytes;
}

} // namespace

class TestMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entryPointGivesTheMetadata()
    {
        QLibrary library(QStringLiteral(PLUGIN_FILE));
        using Query = const char* (*)();
        const auto query = reinterpret_cast<Query>(library.resolve("qt_plugin_query_metadata"));
        QVERIFY2(query != nullptr, qPrintable(library.errorString()));
        const QByteArray expected = expectedMetadata();
        QCOMPARE(QByteArray(query(), expected.size()).toHex(' '), expected.toHex(' '));
    }

    void sectionHoldsTheMetadataAndNothingElse()
    {
        const QTemporaryDir directory;
        const QString sectionFile = directory.filePath("section"_s);
        QByteArray complaints;
        QCOMPARE(runProgram({QStringLiteral(OBJCOPY_PROGRAM), "-O"_s, "binary"_s,
                             "--only-section=.qtmetadata"_s, QStringLiteral(PLUGIN_FILE), sectionFile},
                            &complaints),
                 0);
        QFile section(sectionFile);
        QVERIFY(section.open(QIODevice::ReadOnly));
        QCOMPARE(section.readAll().toHex(' '), expectedMetadata().toHex(' '));
    }

    void loaderOfQtReadsTheIdentity()
    {
        const QJsonObject metadata = QPluginLoader(QStringLiteral(PLUGIN_FILE)).metaData();
        QCOMPARE(metadata.value("IID"_s).toString(), "fr.velt.rd.tav.PToolGpio"_s);
        QCOMPARE(metadata.value("className"_s).toString(), "PToolGpio"_s);
        QCOMPARE(metadata.value("version"_s).toInt(), QT_VERSION & 0xFFFF00);
        QVERIFY(!metadata.contains("MetaData"_s));
    }
};

QTEST_GUILESS_MAIN(TestMetadata)
#include "test_metadata.moc"
