#include "bench_configuration.h"

#include "board_configuration.h"
#include "gpio_configuration.h"
#include "rig_configuration.h"
#include "tool_configuration.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

constexpr int c_largestFile = 64 << 20;

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
        problem->text = wording("cannot be read: %1").arg(DWording::told(file.errorString()));
        return std::nullopt;
    }
    if (text.size() > c_largestFile) {
        problem->text = wording("expected at most %1 bytes").arg(c_largestFile);
        return std::nullopt;
    }
    return text;
}

QVector<DLine> linesOf(const SimulatedBoardSetup& board)
{
    return SimulatedBoard::linesOf(board);
}

QVector<DLine> linesOf(const GpioChipSetup& chips)
{
    return GpioChipDevice::linesOf(chips);
}

QVector<DLine> linesOf(const RigDeviceSetup& rig)
{
    return rigLines(rig);
}

/// The bench that text describes; nothing, after a problem, when not even the kind of the device is known.
std::optional<BenchConfiguration> readBench(const QByteArray& text, const QString& folder,
                                            ConfigProblems* problems)
{
    QVector<JsonMistake> mistakes;
    const std::optional<JsonNode> json = readJson(text, &mistakes);
    for (const JsonMistake& mistake : qAsConst(mistakes)) {
        problems->add(QString(), mistake.offset, mistake.text);
    }
    if (!json) {
        return std::nullopt;
    }
    if (json->type != JsonNode::Type::Object) {
        problems->add(QString(), json->offset, wording("expected an object"));
        return std::nullopt;
    }
    const ConfigObject root(*json, QString(), problems);
    const QString schema = QStringLiteral("$schema"); // for editors
    root.allowOnly({QStringLiteral("device"), QStringLiteral("tools"), schema});
    root.textOr(schema, QString());
    const int before = problems->all().size();
    const ConfigObject device = root.object(QStringLiteral("device"));
    const bool hasDevice = problems->all().size() == before;
    const QStringList types = {QStringLiteral("simulated"), QStringLiteral("gpiochip"),
                               QStringLiteral("rig")};
    const int type = hasDevice ? device.choice(QStringLiteral("type"), types) : -1;
    if (type < 0) {
        return std::nullopt;
    }
    BenchConfiguration configuration;
    if (type == 0) {
        configuration.device = readBoard(device);
    } else if (type == 1) {
        configuration.device = readGpioLines(device);
    } else {
        configuration.device = readRigLines(device, folder);
    }
    std::optional<QVector<DLine>> lines;
    if (problems->all().isEmpty()) {
        lines = std::visit([](const auto& setup) { return linesOf(setup); }, configuration.device);
    }
    configuration.tools = readTools(root, lines, type == 1 ? LineKinds::DigitalOnly : LineKinds::Any, folder);
    return configuration;
}

} // namespace

std::optional<BenchConfiguration> readConfiguration(const QString& file, QVector<Problem>* problems)
{
    Problem unreadable;
    unreadable.file = file;
    const std::optional<QByteArray> text = readText(file, &unreadable);
    if (!text) {
        *problems = {unreadable};
        return std::nullopt;
    }
    ConfigProblems found(file, *text);
    std::optional<BenchConfiguration> configuration =
        readBench(*text, QFileInfo(file).absolutePath(), &found);
    *problems = found.all();
    return problems->isEmpty() ? std::move(configuration) : std::nullopt;
}

std::optional<BenchConfiguration> readRigDescription(const QByteArray& description,
                                                     const BrokerAddress& address, const BrokerAccess& access,
                                                     QVector<Problem>* problems)
{
    const QString tools = QStringLiteral("tools");
    const QString lines = QStringLiteral("lines");
    const QJsonObject described = QJsonDocument::fromJson(description).object();
    QJsonArray configuredLines;
    const QJsonArray describedLines = described.value(lines).toArray();
    for (const QJsonValue& line : describedLines) {
        QJsonObject configured = line.toObject();
        configured.remove(QStringLiteral("index"));
        configuredLines.append(configured);
    }
    QJsonArray configuredTools;
    const QJsonArray describedTools = described.value(tools).toArray();
    for (const QJsonValue& tool : describedTools) {
        QJsonObject configured = tool.toObject();
        const QString plugin = QStringLiteral("plugin");
        configured.remove(QStringLiteral("commands"));
        // What another machine says is no file of this one.
        configured.insert(plugin, QFileInfo(configured.value(plugin).toString()).baseName());
        configuredTools.append(configured);
    }
    const QJsonObject device = {{QStringLiteral("type"), QStringLiteral("rig")},
                                {QStringLiteral("broker"), address.text()},
                                {QStringLiteral("rig"), address.rig},
                                {lines, configuredLines}};
    const QByteArray text =
        QJsonDocument({{QStringLiteral("device"), device}, {tools, configuredTools}}).toJson();
    ConfigProblems found(address.text() + QLatin1Char('/') + address.rig, text);
    std::optional<BenchConfiguration> configuration = readBench(text, QString(), &found);
    *problems = found.all();
    if (!problems->isEmpty()) {
        return std::nullopt;
    }
    std::get<RigDeviceSetup>(configuration->device).access = access;
    return configuration;
}
