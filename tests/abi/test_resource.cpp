#include "literals.h"

#include <QtTest>

#include <dlfcn.h>

namespace {

/// One call of Qt's registration of resource data, or of its reverse.
struct Registration
{
    int version;
    const unsigned char* tree;
    const unsigned char* names;
    const unsigned char* payload;

    bool operator==(const Registration& other) const
    {
        return version == other.version && tree == other.tree && names == other.names &&
               payload == other.payload;
    }
};

QVector<Registration> registrations;
QVector<Registration> unregistrations;

bool passOn(const char* function, const Registration& registration)
{
    using Function = bool (*)(int, const unsigned char*, const unsigned char*, const unsigned char*);
    const auto qts = reinterpret_cast<Function>(dlsym(RTLD_NEXT, function));
    return qts(registration.version, registration.tree, registration.names, registration.payload);
}

const QString c_directory = ":/{78c1adc4-57e9-4b97-bb64-a19f85c099a2}"_s;
const QString c_page = c_directory + "/maintenance_panel.qml"_s;

} // namespace

// These two stand before Qt's own, so that the plugin's calls can be seen; they pass them on.
Q_DECL_EXPORT bool qRegisterResourceData(int version, const unsigned char* tree, const unsigned char* names,
                                         const unsigned char* payload)
{
    registrations.append({version, tree, names, payload});
    return passOn("_Z21qRegisterResourceDataiPKhS0_S0_", registrations.last());
}

Q_DECL_EXPORT bool qUnregisterResourceData(int version, const unsigned char* tree, const unsigned char* names,
                                           const unsigned char* payload)
{
    unregistrations.append({version, tree, names, payload});
    return passOn("_Z23qUnregisterResourceDataiPKhS0_S0_", unregistrations.last());
}

class TestResource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        registrations.clear();
        unregistrations.clear();
        QVERIFY(!QFile::exists(c_page));
        QVERIFY2(m_library.load(), qPrintable(m_library.errorString()));
    }

    void cleanup()
    {
        if (m_library.isLoaded()) {
            QVERIFY(m_library.unload());
        }
    }

    void loadingRegistersFormatVersion3Once()
    {
        QCOMPARE(registrations.size(), 1);
        QCOMPARE(registrations.first().version, 3);
    }

    void unloadingUnregistersTheSame()
    {
        QVERIFY(m_library.unload());
        QCOMPARE(unregistrations, registrations);
        QVERIFY(!QFile::exists(c_page));
    }

    void pageIsTheOnlyFileOfItsDirectory()
    {
        QCOMPARE(QDir(c_directory).entryList(), QStringList({"maintenance_panel.qml"_s}));
    }

    void pageIsCompressedWithZlib()
    {
        const QResource page(c_page);
        QVERIFY(page.isValid());
        QCOMPARE(page.compressionAlgorithm(), QResource::ZlibCompression);
        QVERIFY(page.size() < page.uncompressedSize());
    }

    void pageIsTheSourcesTextByteByByte()
    {
        QFile source(QStringLiteral(PAGE_FILE));
        QVERIFY(source.open(QIODevice::ReadOnly));
        QFile page(c_page);
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QByteArray text = page.readAll();
        QVERIFY(!text.isEmpty());
        QCOMPARE(text, source.readAll());
        QCOMPARE(QResource(c_page).uncompressedData(), text);
    }

private:
    QLibrary m_library{QStringLiteral(PLUGIN_FILE)};
};

QTEST_GUILESS_MAIN(TestResource)
#include "test_resource.moc"
