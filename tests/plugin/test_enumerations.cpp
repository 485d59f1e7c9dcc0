#include "literals.h"

#include <QtTest>

class TestEnumerations : public QObject
{
    Q_OBJECT

    /// The enumerations of all sources of the plugin: the name of each, and its enumerators as "name =
    /// value".
    static QMap<QString, QStringList> enumerations()
    {
        static const QRegularExpression comments("//.*$"_s, QRegularExpression::MultilineOption);
        static const QRegularExpression enumeration("\\benum (?:class |struct )?(\\w*)[^;{]*{([^}]*)}"_s);
        QMap<QString, QStringList> found;
        const QDir folder(QStringLiteral(PLUGIN_SOURCE_DIR));
        for (const QString& name : folder.entryList({"*.h"_s, "*.cpp"_s})) {
            QFile file(folder.filePath(name));
            const QString code = file.open(QIODevice::ReadOnly)
                                     ? QString::fromUtf8(file.readAll()).remove(comments)
                                     : QString();
            auto matches = enumeration.globalMatch(code);
            while (matches.hasNext()) {
                const QRegularExpressionMatch match = matches.next();
                for (const QString& enumerator : match.captured(2).simplified().split(QLatin1Char(','))) {
                    if (!enumerator.trimmed().isEmpty()) {
                        found[match.captured(1)].append(enumerator.trimmed());
                    }
                }
            }
        }
        return found;
    }

private Q_SLOTS:
    void pluginHasThese()
    {
        QCOMPARE(enumerations().keys(), QStringList({"EnChannelType"_s, "EnEdgeMode"_s, "EnState"_s}));
    }

    void eachCountsFromZeroAndEndsWithItsCount()
    {
        static const QRegularExpression prefix("^(Ce[A-Z][a-z])[A-Z]"_s);
        for (const QStringList& enumerators : enumerations()) {
            const QString abbreviation = prefix.match(enumerators.first()).captured(1);
            QVERIFY2(!abbreviation.isEmpty(), qPrintable(enumerators.first()));
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
