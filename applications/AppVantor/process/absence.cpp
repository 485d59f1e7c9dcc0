#include "absence.h"

#include "diagnostics.h"

#include <utility>

std::optional<QString> Absence::begin(const DWording& why)
{
    if (std::exchange(m_why, why.english()) == why.english()) {
        return std::nullopt;
    }
    return QStringLiteral("%1: %2").arg(m_name, m_why);
}

void Absence::end()
{
    if (!std::exchange(m_why, QString()).isEmpty()) {
        diagnostic(QStringLiteral("%1 is there again").arg(m_name));
    }
}
