#include "bench_configuration.h"

#include "board_configuration.h"
#include "gpio_configuration.h"
#include "tool_configuration.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

constexpr int c_largestFile = 64 << 20;

/// Line and column of a position in text, both from 1.
QString placeAt(const QByteArray& text, int offset)
{
    const QByteArray before = text.left(offset);
    const int line = before.count('\n') + 1;
    const int column = before.size() - (before.lastIndexOf('\n') + 1) + 1;
    return QStringLiteral("line %1, column %2 (offset %3)").arg(line).arg(column).arg(offset);
}

/// Reads a file, or a pipe or device, which may have no end.
std::optional<QByteArray> readText(const QString& fileName, QString* problem)
{
    constexpr int chunkSize = 1 << 16;
    QFile file(fileName);
    QByteArray text;
    if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        QByteArray chunk;
        do {
            chunk = file.read(chunkSize);
            text += chunk;
        } while (!chunk.isEmpty() && text.size() <= c_largestFile);
    }
    if (file.error() != QFileDevice::NoError) {
        *problem = QStringLiteral("%1: cannot be read: %2").arg(fileName, file.errorString());
        return std::nullopt;
    }
    if (text.size() > c_largestFile) {
        *problem =
            QStringLiteral("%1: expected at most %2 bytes").arg(fileName, QString::number(c_largestFile));
        return std::nullopt;
    }
    return text;
}

std::optional<QJsonObject> readJson(const QString& fileName, QString* problem)
{
    const std::optional<QByteArray> text = readText(fileName, problem);
    if (!text) {
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(*text, &error);
    if (document.isNull()) {
        *problem = QStringLiteral("%1: %2: expected JSON: %3")
                       .arg(fileName, placeAt(*text, error.offset), error.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        *problem = QStringLiteral("%1: %2: expected an object").arg(fileName, placeAt(*text, 0));
        return std::nullopt;
    }
    return document.object();
}

QVector<DLine> linesOf(const SimulatedBoardSetup& board)
{
    return SimulatedBoard::linesOf(board);
}

QVector<DLine> linesOf(const GpioChipSetup& chips)
{
    return GpioChipDevice::linesOf(chips);
}

} // namespace

std::optional<BenchConfiguration> readConfiguration(const QString& file, QString* problem)
{
    const std::optional<QJsonObject> json = readJson(file, problem);
    if (!json) {
        return std::nullopt;
    }
    ConfigProblems problems(file);
    const ConfigObject root(*json, QString(), &problems);
    root.allowOnly({QStringLiteral("device"), QStringLiteral("tools")});
    const ConfigObject device = root.object(QStringLiteral("device"));
    device.text(QStringLiteral("type"));
    const int type =
        device.choiceOr(QStringLiteral("type"), {QStringLiteral("simulated"), QStringLiteral("gpiochip")}, 0);
    BenchConfiguration configuration;
    if (type == 0) {
        configuration.device = readBoard(device);
    } else {
        configuration.device = readGpioLines(device);
    }
    const QVector<DLine> lines =
        std::visit([](const auto& setup) { return linesOf(setup); }, configuration.device);
    configuration.tools = readTools(root, lines, type == 0 ? LineKinds::Any : LineKinds::DigitalOnly,
                                    QFileInfo(file).absolutePath());
    if (!problems.isEmpty()) {
        *problem = problems.text();
        return std::nullopt;
    }
    return configuration;
}
