#include <window/texts.h>

#include <QtQuickTest>

/// Installs the texts before the first test.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable() { installTexts(QLocale(QLocale::English)); }
};

QUICK_TEST_MAIN_WITH_SETUP(test_widgets, Setup)

#include "test_widgets.moc"
