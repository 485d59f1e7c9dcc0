#include "literals.h"

#include <QDir>
#include <QtTest>

namespace {

struct Enumeration
{
    QString name;
    QStringList enumerators;
};

/// The enumerations of all sources of the plugin, each enumerator as "name = value".
QVector<Enumeration> enumerations()
{
    static const QRegularExpression comments("//.*$"_s, QRegularExpression::MultilineOption);
    static const QRegularExpression enumeration("\\benum (?:class |struct )?(\\w*)[^;{]*{([^}]*)}"_s);
    QVector<Enumeration> found;
    const QDir folder(QStringLiteral(PLUGIN_SOURCE_DIR));
    const QStringList names = folder.entryList({"*.h"_s, "*.cpp"_s});
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            return {};
        }
        const QString code = QString::fromUtf8(file.readAll()).remove(comments);
        auto matches = enumeration.globalMatch(code);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            QStringList enumerators;
            for (const QString& enumerator : match.captured(2).split(QLatin1Char(','))) {
                if (!enumerator.trimmed().isEmpty()) {
                    enumerators.append(enumerator.simplified());
                }
            }
            found.append({match.captured(1), enumerators});
        }
    }
    return found;
}

} // namespace

class TestEnumerations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pluginHasThese()
    {
        QStringList names;
        for (const Enumeration& enumeration : enumerations()) {
            names.append(enumeration.name);
        }
        names.sort();
        QCOMPARE(names, QStringList({"EnChannelType"_s, "EnEdgeMode"_s, "EnState"_s}));
    }

    void eachCountsFromZeroAndEndsWithItsCount()
    {
        static const QRegularExpression prefix("^(Ce[A-Z][a-z])[A-Z]"_s);
        for (const Enumeration& enumeration : enumerations()) {
            const QStringList& enumerators = enumeration.enumerators;
            const QString abbreviation = prefix.match(enumerators.first()).captured(1);
            QVERIFY2(!abbreviation.isEmpty(), qPrintable(enumeration.name));
            const int count = enumerators.size() - 1;
            for (int i = 0; i < count; ++i) {
                QVERIFY2(enumerators.at(i).startsWith(abbreviation), qPrintable(enumerators.at(i)));
                QVERIFY2(enumerators.at(i).endsWith(" = %1"_s.arg(i)), qPrintable(enumerators.at(i)));
            }
            QCOMPARE(enumerators.last(), "_%1Nbr = %2"_s.arg(abbreviation).arg(count));
        }
    }
};

QTEST_GUILESS_MAIN(TestEnumerations)
#include "test_enumerations.moc"
