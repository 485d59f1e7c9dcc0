#pragma once

#include <QLocale>
#include <QSize>
#include <QString>

/// How the bench window, or a panel alone, is shown.
struct WindowOptions
{
    enum class Theme
    {
        System,
        Light,
        Dark
    };

    /// PNG file that a picture is written to instead of opening a window; empty for a window.
    QString screenshotFile;
    /// Size of the window or the picture in pixels of the screen or the picture.
    QSize size = QSize(1280, 800);
    Theme theme = Theme::System;
    /// Scale of all sizes, 2 for 200 %; 0 for that of the screen.
    qreal scale = 0;
    /// How long the board runs before the picture is taken, in milliseconds.
    int runMs = 0;
    /// Language of the texts.
    QLocale locale;
};
