#include "qml_types.h"

#include "files.h"
#include "lines_model.h"
#include "page_panel.h"
#include "page_texts.h"
#include "waveform_item.h"

#include <QtQml>

void registerQmlTypes()
{
    constexpr auto module = "AppVantor";
    qmlRegisterSingletonType<Files>(module, 1, 0, "Files",
                                    [](QQmlEngine*, QJSEngine*) -> QObject* { return new Files; });
    qmlRegisterType<PagePanel>(module, 1, 0, "PagePanel");
    qmlRegisterType<PageTexts>(module, 1, 0, "PageTexts");
    qmlRegisterType<WaveformItem>(module, 1, 0, "WaveformItem");
    qmlRegisterUncreatableType<CourseView>(module, 1, 0, "CourseView", QStringLiteral("made by the bench"));
    qmlRegisterUncreatableType<LinesModel>(module, 1, 0, "LinesModel", QStringLiteral("made by the bench"));
}
