#pragma once

#include <QVariant>

/// A configured tool, of which a backend needs the configuration only.
struct DBoundTool
{
    QVariantMap toolConfiguration;
};
