#include "page_source.h"

#include <QFile>

namespace {

/// text as it may stand between the quotes of a QML string literal.
QString escaped(const QString& text)
{
    QString literal;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        const bool special = character == QLatin1Char('"') || character == QLatin1Char('\'') ||
                             character == QLatin1Char('\\') || code < 0x20 || code == 0x7F ||
                             code == 0x2028 || code == 0x2029;
        if (special) {
            literal += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        } else {
            literal += character;
        }
    }
    return literal;
}

} // namespace

QByteArray pageSource(const QUuid& pluginUuid, const QString& toolName, const QString& toolId)
{
    QFile page(QStringLiteral(":/%1/maintenance_panel.qml").arg(pluginUuid.toString()));
    if (!page.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    return filledPage(page.readAll(), toolName, toolId);
}

QByteArray filledPage(const QByteArray& page, const QString& toolName, const QString& toolId)
{
    const QByteArray namePlaceholder = QByteArrayLiteral("{OBJECT_NAME}");
    const QByteArray idPlaceholder = QByteArrayLiteral("{OBJECT_ID}");
    const QByteArray name = escaped(toolName).toUtf8();
    const QByteArray id = escaped(toolId).toUtf8();
    QByteArray filled;
    int position = 0;
    while (position < page.size()) {
        const int brace = page.indexOf('{', position);
        filled += page.mid(position, brace < 0 ? -1 : brace - position);
        if (brace < 0) {
            break;
        }
        if (page.mid(brace, namePlaceholder.size()) == namePlaceholder) {
            filled += name;
            position = brace + namePlaceholder.size();
        } else if (page.mid(brace, idPlaceholder.size()) == idPlaceholder) {
            filled += id;
            position = brace + idPlaceholder.size();
        } else {
            filled += '{';
            position = brace + 1;
        }
    }
    return filled;
}
