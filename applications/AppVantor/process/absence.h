#pragma once

#include <plugin_management/d_wording.h>

#include <QString>

#include <optional>

/// The absence of something that is tried again and again, as people are told of it: once for each reason,
/// and when it is there again.
class Absence
{
public:
    /// Of what is called name, which is there.
    explicit Absence(const QString& name)
        : m_name(name)
    {}

    /// It is away. Returns what is to be told of that, "NAME: WHY"; nothing when it has been told.
    std::optional<QString> begin(const DWording& why);
    /// It is there; told on standard error where it was away.
    void end();

private:
    const QString m_name;
    QString m_why; ///< empty while it is there
};
