#include "bench_configuration.h"

#include "board_configuration.h"
#include "gpio_configuration.h"
#include "tool_configuration.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

constexpr int c_largestFile = 64 << 20;

/// Sets the line and the column of problem to those of a position in text.
void setPlace(const QByteArray& text, int offset, Problem* problem)
{
    const QByteArray before = text.left(offset);
    problem->line = before.count('\n') + 1;
    problem->column = before.size() - (before.lastIndexOf('\n') + 1) + 1;
}

/// Reads a file, or a pipe or device, which may have no end.
std::optional<QByteArray> readText(const QString& fileName, Problem* problem)
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
        problem->text = QStringLiteral("cannot be read: %1").arg(file.errorString());
        return std::nullopt;
    }
    if (text.size() > c_largestFile) {
        problem->text = QStringLiteral("expected at most %1 bytes").arg(c_largestFile);
        return std::nullopt;
    }
    return text;
}

std::optional<QJsonObject> readJson(const QString& fileName, Problem* problem)
{
    const std::optional<QByteArray> text = readText(fileName, problem);
    if (!text) {
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(*text, &error);
    if (document.isNull()) {
        setPlace(*text, error.offset, problem);
        problem->text = QStringLiteral("expected JSON: %1").arg(error.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        setPlace(*text, 0, problem);
        problem->text = QStringLiteral("expected an object");
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

std::optional<BenchConfiguration> readConfiguration(const QString& file, QVector<Problem>* problems)
{
    Problem problem;
    problem.file = file;
    const std::optional<QJsonObject> json = readJson(file, &problem);
    if (!json) {
        *problems = {problem};
        return std::nullopt;
    }
    ConfigProblems found(file);
    const ConfigObject root(*json, QString(), &found);
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
    if (!found.all().isEmpty()) {
        *problems = found.all();
        return std::nullopt;
    }
    return configuration;
}
