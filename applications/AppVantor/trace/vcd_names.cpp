#include "vcd_names.h"

#include <QRegularExpression>

std::string vcdCode(int number)
{
    constexpr int first = '!';
    constexpr int count = '~' - '!' + 1;
    std::string code;
    for (int rest = number; code.empty() || rest > 0; rest /= count) {
        code += static_cast<char>(first + rest % count);
    }
    return code;
}

QString vcdName(const QString& text, QSet<QString>* taken)
{
    QString name = text.isEmpty() ? QStringLiteral("_") : text;
    name.replace(QRegularExpression(QStringLiteral("[\\s$]")), QStringLiteral("_"));
    while (taken->contains(name)) {
        name += QLatin1Char('_');
    }
    taken->insert(name);
    return name;
}
