#pragma once

#include <QString>

/// What host and device say of a failure, in the language of the window; as it is where that has no text for
/// it.
QString reasonText(const QString& reason);
