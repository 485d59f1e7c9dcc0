#include "invocation.h"

#include <configuration/json_text.h>

namespace {

bool looksLikeJson(const QString& text)
{
    return text.startsWith(QLatin1Char('[')) || text.startsWith(QLatin1Char('{')) ||
           text.startsWith(QLatin1Char('"'));
}

QVariant readValue(const QString& text, DWording* problem)
{
    if (!looksLikeJson(text)) {
        return text;
    }
    QVector<JsonMistake> mistakes;
    const QByteArray json = text.toUtf8();
    const std::optional<JsonNode> node = readJson(json, &mistakes);
    if (!mistakes.isEmpty()) {
        const int character = QString::fromUtf8(json.left(mistakes.first().offset)).size() + 1;
        *problem = wording("%1 (character %2 of %3)").arg(mistakes.first().text, character, text);
        return QVariant();
    }
    return node->toVariant();
}

} // namespace

QStringList splitLine(const QString& line, DWording* problem)
{
    QStringList words;
    QString word;
    bool inWord = false;
    QChar quote;
    bool quoteIsJson = false;
    int depth = 0;
    for (int i = 0; i < line.size(); ++i) {
        const QChar character = line.at(i);
        const bool json = depth > 0 || (!quote.isNull() && quoteIsJson);
        if (character == QLatin1Char('\\') && i + 1 < line.size()) {
            word += json ? QString(character) + line.at(i + 1) : QString(line.at(i + 1));
            ++i;
            inWord = true;
        } else if (!quote.isNull()) {
            if (character != quote || json) {
                word += character;
            }
            quote = character == quote ? QChar() : quote;
        } else if (character == QLatin1Char('"') || (character == QLatin1Char('\'') && !json)) {
            quote = character;
            quoteIsJson = character == QLatin1Char('"') && word.endsWith(QLatin1Char('='));
            inWord = true;
            if (json || quoteIsJson) {
                word += character;
            }
        } else if (character.isSpace() && depth == 0) {
            if (inWord) {
                words.append(word);
            }
            word.clear();
            inWord = false;
        } else {
            const bool opens = character == QLatin1Char('[') || character == QLatin1Char('{');
            const bool closes = character == QLatin1Char(']') || character == QLatin1Char('}');
            depth = qMax(0, depth + (opens ? 1 : 0) - (closes ? 1 : 0));
            word += character;
            inWord = true;
        }
    }
    if (inWord) {
        words.append(word);
    }
    if (!quote.isNull()) {
        *problem = wording("expected a closing %1").arg(QString(quote));
    } else if (depth > 0) {
        *problem = wording("expected a closing bracket");
    }
    return words;
}

Invocation readInvocation(const QStringList& words, DWording* problem)
{
    Invocation invocation;
    invocation.command = words.first();
    const QStringList assignments = words.mid(1);
    for (const QString& word : assignments) {
        const int equals = word.indexOf(QLatin1Char('='));
        if (equals <= 0) {
            *problem = wording(R"(expected NAME=VALUE, found "%1")").arg(word);
            return invocation;
        }
        const QString name = word.left(equals);
        if (invocation.arguments.contains(name)) {
            *problem = wording(R"(parameter "%1" is given twice)").arg(name);
            return invocation;
        }
        const QVariant value = readValue(word.mid(equals + 1), problem);
        if (!problem->isEmpty()) {
            *problem = wording(R"(parameter "%1": %2)").arg(name, *problem);
            return invocation;
        }
        invocation.arguments.insert(name, value);
    }
    return invocation;
}
