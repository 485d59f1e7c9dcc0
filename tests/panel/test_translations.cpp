#include "literals.h"
#include "rows.h"

#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

/// The window in another language: every text that can stand in it has one there.
class TestTranslations : public QObject
{
    Q_OBJECT

    /// The form for one may do without it.
    const QSet<QString> c_number = {"%Ln"_s};

    using Texts = QHash<QString, QStringList>; ///< by their ids, each in its plural forms

    /// The texts of a catalogue that are finished.
    static Texts translated(const QString& language)
    {
        QFile file(
            QStringLiteral(SOURCE_DIR "/applications/AppVantor/translations/appvantor_%1.ts").arg(language));
        Texts texts;
        if (!file.open(QIODevice::ReadOnly)) {
            return texts;
        }
        QXmlStreamReader xml(&file);
        QString id;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == "message"_s) {
                id = xml.attributes().value("id"_s).toString();
            } else if (xml.isStartElement() && xml.name() == "translation"_s) {
                const bool isFinished = !xml.attributes().hasAttribute("type"_s);
                const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
                if (isFinished && !text.isEmpty()) {
                    texts[id] += text.split(QRegularExpression("\\n\\s+"_s));
                }
            }
        }
        return texts;
    }

    /// The ids that the sources of the window, and of all that is shown in it, take texts by: literals in
    /// qtTrId, qsTrId and wording.
    static QSet<QString> idsInSources()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("found.ts"_s);
        QProcess collector;
        collector.setWorkingDirectory(QStringLiteral(SOURCE_DIR));
        collector.start(QStringLiteral(LUPDATE),
                        {"-silent"_s, "-locations"_s, "none"_s, "-tr-function-alias"_s, "qtTrId+=wording"_s,
                         "-extensions"_s, "cpp,h,qml"_s, "host"_s, "devices"_s, "applications"_s, "-ts"_s,
                         file});
        QFile found(file);
        if (!collector.waitForFinished(60000) || !found.open(QIODevice::ReadOnly)) {
            return {};
        }
        // It leaves quotes in ids as they are: this is no XML.
        static const QRegularExpression message(R"(^ *<message id=.(.*?).(?: numerus=.yes.)?>$)"_s,
                                                QRegularExpression::MultilineOption);
        QSet<QString> ids;
        auto match = message.globalMatch(QString::fromUtf8(found.readAll()));
        while (match.hasNext()) {
            ids.insert(match.next().captured(1));
        }
        return ids;
    }

    static QSet<QString> placesIn(const QString& text)
    {
        static const QRegularExpression place("%L?[1-9n]"_s);
        QSet<QString> places;
        auto match = place.globalMatch(text);
        while (match.hasNext()) {
            places.insert(match.next().captured());
        }
        return places;
    }

private Q_SLOTS:
    /// A wording is its own English text; other texts have theirs in the English catalogue.
    void everyTextIsThereInFrench()
    {
        const Texts english = translated("en"_s);
        const Texts french = translated("fr"_s);
        QSet<QString> ids = idsInSources();
        QVERIFY(ids.contains("tools_title"_s) && ids.contains("expected \"%1\""_s));
        for (auto text = english.cbegin(); text != english.cend(); ++text) {
            ids.insert(text.key()); // some are put together: "board_" and the state
        }
        QStringList wrong;
        for (const QString& id : qAsConst(ids)) {
            const QStringList texts = french.value(id);
            if (texts.isEmpty()) {
                wrong.append("no text: "_s + id);
            }
            const QSet<QString> places = placesIn(english.value(id, {id}).constLast());
            for (auto text = texts.crbegin(); text != texts.crend(); ++text) {
                if (placesIn(*text) - c_number != places - c_number ||
                    (text == texts.crbegin() && placesIn(*text) != places)) {
                    wrong.append("other places: "_s + id);
                }
            }
        }
        wrong.sort();
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n"_s)));
    }

    /// What stands alone there, and what a line must not begin with, hangs on by a no-break space.
    void frenchIsPunctuatedAsInFrance()
    {
        static const QRegularExpression wrong("\u00ab[^\u00a0]|[^\u00a0]\u00bb| [:;?!%]( |$)|%[1-9] ms"_s);
        const Texts french = translated("fr"_s);
        QStringList found;
        for (auto text = french.cbegin(); text != french.cend(); ++text) {
            found += text->filter(wrong);
        }
        QVERIFY2(found.isEmpty(), qPrintable(found.join("\n"_s)));
    }

    void noWordingIsTranslatedThatNobodySays()
    {
        const QSet<QString> found = idsInSources();
        const Texts french = translated("fr"_s);
        QStringList idle;
        for (auto text = french.cbegin(); text != french.cend(); ++text) {
            if (text.key().contains("%1"_s) && !found.contains(text.key())) {
                idle.append(text.key());
            }
        }
        QVERIFY2(idle.isEmpty(), qPrintable(idle.join("\n"_s)));
    }
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "test_translations.moc"
