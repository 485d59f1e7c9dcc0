#include "absence.h"

#include "diagnostics.h"

#include <utility>

std::optional<QString> Absence::begin(const DWording& why)
{
    const QString text = why.english();
    if (std::exchange(m_why, text) == text) {
        return std::nullopt;
    }
    return QStringLiteral("%1: %2").arg(m_name, text);
}

void Absence::end()
{
    if (!std::exchange(m_why, QString()).isEmpty()) {
        diagnostic(QStringLiteral("%1 is there again").arg(m_name));
    }
}
