// All that is asked of libgpiod 1.6.

#include <devices/gpio_chip.h>

#include <QCollator>
#include <QDir>

#include <algorithm>
#include <cerrno>
#include <gpiod.h>

namespace {

using Bias = GpioLineSettings::Bias;
using Drive = GpioLineSettings::Drive;

int flagsOf(const GpioLineSettings& settings)
{
    int flags = settings.activeLow ? GPIOD_LINE_REQUEST_FLAG_ACTIVE_LOW : 0;
    switch (settings.bias) {
    case Bias::AsIs:
        break;
    case Bias::PullUp:
        flags |= GPIOD_LINE_REQUEST_FLAG_BIAS_PULL_UP;
        break;
    case Bias::PullDown:
        flags |= GPIOD_LINE_REQUEST_FLAG_BIAS_PULL_DOWN;
        break;
    case Bias::None:
        flags |= GPIOD_LINE_REQUEST_FLAG_BIAS_DISABLE;
        break;
    }
    if (settings.drive == Drive::OpenDrain) {
        flags |= GPIOD_LINE_REQUEST_FLAG_OPEN_DRAIN;
    } else if (settings.drive == Drive::OpenSource) {
        flags |= GPIOD_LINE_REQUEST_FLAG_OPEN_SOURCE;
    }
    return flags;
}

QStringList flagsOf(gpiod_line* line)
{
    QStringList flags;
    if (gpiod_line_active_state(line) == GPIOD_LINE_ACTIVE_STATE_LOW) {
        flags.append(QStringLiteral("active-low"));
    }
    if (gpiod_line_is_open_drain(line)) {
        flags.append(QStringLiteral("open-drain"));
    }
    if (gpiod_line_is_open_source(line)) {
        flags.append(QStringLiteral("open-source"));
    }
    switch (gpiod_line_bias(line)) {
    case GPIOD_LINE_BIAS_PULL_UP:
        flags.append(QStringLiteral("pull-up"));
        break;
    case GPIOD_LINE_BIAS_PULL_DOWN:
        flags.append(QStringLiteral("pull-down"));
        break;
    case GPIOD_LINE_BIAS_DISABLE:
        flags.append(QStringLiteral("no-bias"));
        break;
    default:
        break;
    }
    return flags;
}

class Output : public GpioOutput
{
public:
    Output(std::shared_ptr<gpiod_chip> chip, gpiod_line* line)
        : m_chip(std::move(chip))
        , m_line(line)
    {}
    ~Output() override { gpiod_line_release(m_line); }
    Q_DISABLE_COPY(Output)

    int setLevel(int level) override { return gpiod_line_set_value(m_line, level) == 0 ? 0 : errno; }

private:
    std::shared_ptr<gpiod_chip> m_chip; // which the line is a part of
    gpiod_line* m_line;
};

class Chip : public GpioChip
{
public:
    explicit Chip(gpiod_chip* chip)
        : m_chip(chip, &gpiod_chip_close)
    {}

    QString name() const override { return QString::fromUtf8(gpiod_chip_name(m_chip.get())); }
    QString label() const override { return QString::fromUtf8(gpiod_chip_label(m_chip.get())); }
    int lineCount() const override { return static_cast<int>(gpiod_chip_num_lines(m_chip.get())); }

    std::optional<GpioLineInfo> line(int offset) const override
    {
        gpiod_line* line = gpiod_chip_get_line(m_chip.get(), static_cast<unsigned>(offset));
        if (line == nullptr || gpiod_line_update(line) != 0) {
            return std::nullopt;
        }
        GpioLineInfo info;
        info.offset = offset;
        info.name = QString::fromUtf8(gpiod_line_name(line));
        info.consumer = QString::fromUtf8(gpiod_line_consumer(line));
        info.used = gpiod_line_is_used(line);
        info.output = gpiod_line_direction(line) == GPIOD_LINE_DIRECTION_OUTPUT;
        info.flags = flagsOf(line);
        return info;
    }

    std::unique_ptr<GpioOutput> requestOutput(int offset, const GpioLineSettings& settings,
                                              int* error) const override
    {
        gpiod_line* line = gpiod_chip_get_line(m_chip.get(), static_cast<unsigned>(offset));
        if (line == nullptr ||
            gpiod_line_request_output_flags(line, "appvantor", flagsOf(settings), settings.level) != 0) {
            *error = errno;
            return nullptr;
        }
        return std::make_unique<Output>(m_chip, line);
    }

private:
    std::shared_ptr<gpiod_chip> m_chip;
};

} // namespace

QStringList GpioChip::files()
{
    QStringList names = QDir(QStringLiteral("/dev")).entryList({QStringLiteral("gpiochip*")}, QDir::System);
    QCollator order;
    order.setNumericMode(true);
    std::sort(names.begin(), names.end(), order);
    for (QString& name : names) {
        name.prepend(QStringLiteral("/dev/"));
    }
    return names;
}

std::unique_ptr<GpioChip> GpioChip::open(const QString& file, int* error)
{
    gpiod_chip* chip = gpiod_chip_open(QFile::encodeName(file).constData());
    if (chip == nullptr) {
        *error = errno;
        return nullptr;
    }
    return std::make_unique<Chip>(chip);
}
