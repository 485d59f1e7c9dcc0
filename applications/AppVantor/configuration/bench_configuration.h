#pragma once

#include "problem.h"

#include <devices/gpio_chip_device.h>
#include <devices/rig_device.h>
#include <devices/simulated_board.h>

#include <QString>
#include <QVariantMap>
#include <QVector>

#include <optional>
#include <variant>

/// What a configuration file describes.
struct BenchConfiguration
{
    struct Tool
    {
        /// The tool's entry, exactly as it was read.
        QVariantMap entry;
        /// The plugin's library file.
        QString pluginFile;
    };

    std::variant<SimulatedBoardSetup, GpioChipSetup, RigDeviceSetup> device;
    QVector<Tool> tools;
};

/// Reads the configuration file. Returns nothing after mistakes; problems then tells each of them: the file,
/// the place, and what was expected there.
std::optional<BenchConfiguration> readConfiguration(const QString& file, QVector<Problem>* problems);

/// Reads the bench that the description of a rig on a broker stands for: its tools, and all of its lines by
/// way of the broker. Problems are told as those of a file.
std::optional<BenchConfiguration> readRigDescription(const QByteArray& description,
                                                     const BrokerAddress& address, const BrokerAccess& access,
                                                     QVector<Problem>* problems);
