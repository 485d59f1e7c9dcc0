#pragma once

#include <QLocale>
#include <QSize>
#include <QString>

#include <cmath>
#include <functional>
#include <optional>

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
    /// Is told what is wrong with that picture.
    std::function<void(const QString& problem)> tellProblem;
    /// The configuration file that is shown; empty for the built-in one.
    QString configuration;
    /// The rig that is shown in the place of a configuration; empty for none.
    QString rig;
    /// Size of the window or the picture in pixels of the screen or the picture.
    QSize size = QSize(1280, 800);
    /// True when that was asked for; else a window takes the size that it had before.
    bool sizeGiven = false;
    Theme theme = Theme::System;
    /// Scale of all sizes, 2 for 200 %; 0 for that of the screen.
    qreal scale = 0;
    /// How long the bench runs before the window closes or the picture is taken, in milliseconds; without it
    /// the window stays until it is closed, and a picture is taken at once.
    std::optional<int> runMs;
    /// True when what the tools drive is switched off as a bench is left.
    bool offAtEnd = false;
    /// Language of the texts.
    QLocale locale;

    /// The size in units that Qt counts in, where one is ratio pixels.
    QSize logicalSize(qreal ratio) const
    {
        return {static_cast<int>(std::ceil(size.width() / ratio)),
                static_cast<int>(std::ceil(size.height() / ratio))};
    }
};
