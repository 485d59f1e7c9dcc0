#include "texts.h"

#include <QCoreApplication>
#include <QTranslator>

/// Outside of any namespace, as the macro requires.
void initializeGuiResources()
{
    Q_INIT_RESOURCE(appvantor_gui);
    Q_INIT_RESOURCE(appvantor_texts);
}

void installTexts(const QLocale& locale)
{
    static const QString name = QStringLiteral("appvantor_gui_texts");
    initializeGuiResources();
    delete QCoreApplication::instance()->findChild<QTranslator*>(name);
    auto* translator = new QTranslator(QCoreApplication::instance());
    translator->setObjectName(name);
    const QString folder = QStringLiteral(":/applications/AppVantor/translations");
    if (!translator->load(locale, QStringLiteral("appvantor"), QStringLiteral("_"), folder)) {
        translator->load(QStringLiteral("appvantor_en"), folder);
    }
    QCoreApplication::installTranslator(translator);
    QLocale::setDefault(QLocale(translator->language()));
}

QString textOr(const QString& id, const QString& fallback)
{
    const QString text = qtTrId(id.toUtf8().constData());
    return text == id ? fallback : text;
}

QString failureText(const QString& kind, const DWording& reason)
{
    const QString known = textOr(QStringLiteral("failure_") + kind, QString());
    return known.isEmpty() ? worded(reason) : known.arg(worded(reason));
}

QString worded(const DWording& wording)
{
    return wording.in([](const QString& source) { return textOr(source, source); });
}
