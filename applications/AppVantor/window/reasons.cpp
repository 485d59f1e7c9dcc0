#include "reasons.h"

#include "texts.h"

#include <QRegularExpression>

#include <vector>

namespace {

/// Those of the reasons that name something; the others are their own pattern. Each is the id of its text,
/// and where two fit, the first one holds.
constexpr const char* c_patterns[] = {
    "the command waits for nothing more, without having reported %1",
    "no reply to %1 within %2 ms",
    "unknown command \"%1\"; the tool has: %2",
    R"(unknown parameter "%1" of command "%2"; it takes: %3)",
    R"(parameter "%1" of command "%2" cannot hold "%3"; expected %4)",
    "a whole number from %1 to %2",
    "unknown channel \"%1\"",
    "channel \"%1\" is an input and cannot be written",
    "\"listenToAll\" tells %1 binary lines at most, the device has %2",
    "line \"%1\" blinks no more: %2",
    R"(the board refuses "%1" of channel "%2")",
    "the board refuses \"%1\"",
    "the chip %1 is gone; plug it in or load its driver, and the bench goes on",
    "the chip %1 cannot be opened: %2; \"appvantor discover\" lists those of this machine",
    "the chip %1: permission denied; %2",
    "join its group with \"sudo usermod -aG %1 $USER\", and log in again",
    "%1 is busy: another program or driver holds it; end that, and the bench goes on",
    "%1 is busy: %2 holds it; end that, and the bench goes on",
    "%1 does not answer: %2; the kernel's log (\"sudo dmesg\") may tell why",
    "%1: %2 edges came faster than they could be read, and are lost",
    "%1: %2 edges of lines that are still now came faster than they could be read, and are lost",
    "there is no rig \"%1\" on %2",
    "the rig \"%1\" is offline",
    "the rig \"%1\" is lost",
    "the rig \"%1\" does not answer",
    "the rig \"%1\" does not say why",
    R"(line "%1": the rig "%2" has no line "%3")",
    "%1: it does not answer",
    "%1: it refuses: %2",
    "%1: its certificate is refused: %2",
    "%1: it ended the connection: %2",
};

struct Pattern
{
    QRegularExpression expression;
    const char* id;
};

std::vector<Pattern> makePatterns()
{
    std::vector<Pattern> patterns;
    for (const char* id : c_patterns) {
        QString expression = QRegularExpression::escape(QString::fromUtf8(id));
        expression.replace(QRegularExpression(QStringLiteral("\\\\%\\d")), QStringLiteral("(.+)"));
        patterns.push_back({QRegularExpression(QRegularExpression::anchoredPattern(expression)), id});
    }
    return patterns;
}

/// What is named stays as it is; what comes last may be a reason in turn.
QString filled(const QString& text, const QRegularExpressionMatch& match)
{
    QString result;
    for (int place = 0; place < text.size(); ++place) {
        if (text.at(place) != QLatin1Char('%') || place + 1 == text.size()) {
            result += text.at(place);
            continue;
        }
        const int number = text.at(++place).digitValue();
        const QString named = match.captured(number);
        result += match.capturedEnd(number) == match.capturedEnd() ? reasonText(named) : named;
    }
    return result;
}

} // namespace

QString reasonText(const QString& reason)
{
    static const std::vector<Pattern> patterns = makePatterns();
    QString whole = textOr(reason, QString());
    if (!whole.isEmpty()) {
        return whole;
    }
    for (const Pattern& pattern : patterns) {
        const QRegularExpressionMatch match = pattern.expression.match(reason);
        const QString text = match.hasMatch() ? textOr(QString::fromUtf8(pattern.id), QString()) : QString();
        if (!text.isEmpty()) {
            return filled(text, match);
        }
    }
    return reason;
}
