#pragma once

#include <plugin_management/d_wording.h>

#include <QLocale>

/// Makes the resources of the window known: its pages, the host's components and the texts. The build puts
/// them into a static library, whose resources announce themselves to nobody.
void initializeGuiResources();

/// Installs the texts of locale's language for the whole application, replacing those installed before, with
/// the way in which that language writes numbers; English where there are none of it. Needs the application
/// object.
void installTexts(const QLocale& locale);

/// The text of this id in the language of the window; fallback where there is none.
QString textOr(const QString& id, const QString& fallback);

/// Why something failed, for people: what kind of failure it is, where the language has a text for that, and
/// the reason itself.
QString failureText(const QString& kind, const DWording& reason);

/// wording in the language of the window; English where that has no text for it.
QString worded(const DWording& wording);
