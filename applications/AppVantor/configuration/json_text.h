#pragma once

#include <plugin_management/d_wording.h>

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>

#include <map>
#include <optional>
#include <vector>

/// A value of a JSON text, and where it begins.
struct Q_DECL_EXPORT JsonNode
{
    enum class Type
    {
        Scalar, ///< a text, a number, true, false or null
        List,
        Object
    };

    Type type = Type::Scalar;
    QVariant scalar;                     ///< invalid for null; whole numbers are exact up to 64 bits
    std::vector<JsonNode> elements;      ///< of a list
    std::map<QString, JsonNode> entries; ///< of an object
    int offset = 0;                      ///< in the text, in bytes; of an object's entry, that of its key

    /// The value without places: a QVariantList, a QVariantMap, or the scalar.
    QVariant toVariant() const;
};

/// A mistake in a JSON text, at so many bytes from its begin.
struct JsonMistake
{
    int offset = 0;
    DWording text;
};

/// Reads a JSON text in UTF-8. Returns nothing, and one mistake, for what is none, or is nested deeper than
/// 1024 levels. Of a key that stands twice in an object the first counts, and the second is a mistake.
Q_DECL_EXPORT std::optional<JsonNode> readJson(const QByteArray& text, QVector<JsonMistake>* mistakes);

/// Text from outside in one line that a terminal takes as text: control characters stand as JSON writes them.
QString inOneLine(const QString& text);
