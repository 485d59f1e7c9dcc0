// All that is asked of the kernel about GPIO lines, by the second edition of its interface.

#include <devices/gpio_chip.h>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/gpio.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using Settings = GpioLineSettings;

constexpr quint64 c_hardwareEngineClock = quint64{1} << 12U; // headers of early kernels do not name it

/// A name of the kernel; it may fill its field without an end.
template <std::size_t Size>
QString textOf(const char (&field)[Size])
{
    return QString::fromUtf8(field, static_cast<int>(strnlen(field, Size)));
}

quint64 flagsOf(const Settings& settings)
{
    constexpr std::array<quint64, 4> biases = {
        0, GPIO_V2_LINE_FLAG_BIAS_PULL_UP, GPIO_V2_LINE_FLAG_BIAS_PULL_DOWN, GPIO_V2_LINE_FLAG_BIAS_DISABLED};
    constexpr std::array<quint64, 3> drives = {0, GPIO_V2_LINE_FLAG_OPEN_DRAIN,
                                               GPIO_V2_LINE_FLAG_OPEN_SOURCE};
    constexpr std::array<quint64, 3> clocks = {0, GPIO_V2_LINE_FLAG_EVENT_CLOCK_REALTIME,
                                               c_hardwareEngineClock};
    const quint64 polarity = settings.activeLow ? GPIO_V2_LINE_FLAG_ACTIVE_LOW : 0;
    const quint64 bias = biases.at(static_cast<std::size_t>(settings.bias));
    if (settings.output) {
        return GPIO_V2_LINE_FLAG_OUTPUT | polarity | bias |
               drives.at(static_cast<std::size_t>(settings.drive));
    }
    return GPIO_V2_LINE_FLAG_INPUT | GPIO_V2_LINE_FLAG_EDGE_RISING | GPIO_V2_LINE_FLAG_EDGE_FALLING |
           polarity | bias | clocks.at(static_cast<std::size_t>(settings.clock));
}

/// Of an output whose level is not touched.
quint64 flagsAsIs(const Settings& settings)
{
    return settings.activeLow ? GPIO_V2_LINE_FLAG_ACTIVE_LOW : 0;
}

bool areSame(const gpio_v2_line_attribute& one, const gpio_v2_line_attribute& other)
{
    return one.id == other.id &&
           (one.id == GPIO_V2_LINE_ATTR_ID_DEBOUNCE ? one.debounce_period_us == other.debounce_period_us
                                                    : one.flags == other.flags);
}

/// Adds a line to those that share an attribute; false when there is no room for another attribute.
bool share(gpio_v2_line_config* config, int position, const gpio_v2_line_attribute& attribute)
{
    for (quint32 index = 0; index < config->num_attrs; ++index) {
        gpio_v2_line_config_attribute& shared = config->attrs[index];
        if (areSame(shared.attr, attribute)) {
            shared.mask |= GpioRequest::bitOf(position);
            return true;
        }
    }
    if (config->num_attrs == GPIO_V2_LINE_NUM_ATTRS_MAX) {
        return false;
    }
    config->attrs[config->num_attrs++] = {attribute, GpioRequest::bitOf(position)};
    return true;
}

gpio_v2_line_attribute flagsAttribute(quint64 flags)
{
    gpio_v2_line_attribute attribute = {};
    attribute.id = GPIO_V2_LINE_ATTR_ID_FLAGS;
    attribute.flags = flags;
    return attribute;
}

gpio_v2_line_attribute debounceAttribute(int debounceUs)
{
    gpio_v2_line_attribute attribute = {};
    attribute.id = GPIO_V2_LINE_ATTR_ID_DEBOUNCE;
    attribute.debounce_period_us = static_cast<quint32>(debounceUs);
    return attribute;
}

/// Adds a line to a configuration; false when there is no room for what is special about it.
bool addLine(gpio_v2_line_config* config, int position, const Settings& settings, quint64 flags)
{
    gpio_v2_line_config larger = *config;
    if (position == 0) {
        larger.flags = flags;
    }
    if ((flags != larger.flags && !share(&larger, position, flagsAttribute(flags))) ||
        (settings.debounceUs > 0 && !share(&larger, position, debounceAttribute(settings.debounceUs)))) {
        return false;
    }
    *config = larger;
    return true;
}

/// The configuration of the first lines, as many as there is room for; one attribute is left for the levels
/// of outputs. asIs leaves the outputs alone whose level is not given.
gpio_v2_line_config configurationOf(const QVector<GpioWish>& lines, bool asIs, int* count)
{
    gpio_v2_line_config config = {};
    config.attrs[0].attr.id = GPIO_V2_LINE_ATTR_ID_OUTPUT_VALUES;
    config.num_attrs = 1;
    const int most = std::min(lines.size(), *count);
    for (*count = 0; *count < most; ++*count) {
        const Settings& settings = lines.at(*count).settings;
        const bool leaves = asIs && settings.output && !settings.level;
        if (!addLine(&config, *count, settings, leaves ? flagsAsIs(settings) : flagsOf(settings))) {
            break;
        }
        if (settings.output) {
            config.attrs[0].mask |= GpioRequest::bitOf(*count);
            config.attrs[0].attr.values |= settings.level.value_or(0) != 0 ? GpioRequest::bitOf(*count) : 0;
        }
    }
    return config;
}

GpioLineInfo infoOf(const gpio_v2_line_info& info)
{
    GpioLineInfo line;
    line.offset = static_cast<int>(info.offset);
    line.name = textOf(info.name);
    line.consumer = textOf(info.consumer);
    line.used = (info.flags & GPIO_V2_LINE_FLAG_USED) != 0;
    line.output = (info.flags & GPIO_V2_LINE_FLAG_OUTPUT) != 0;
    constexpr std::array<std::pair<quint64, const char*>, 8> names = {
        {{GPIO_V2_LINE_FLAG_ACTIVE_LOW, "active-low"},
         {GPIO_V2_LINE_FLAG_OPEN_DRAIN, "open-drain"},
         {GPIO_V2_LINE_FLAG_OPEN_SOURCE, "open-source"},
         {GPIO_V2_LINE_FLAG_BIAS_PULL_UP, "pull-up"},
         {GPIO_V2_LINE_FLAG_BIAS_PULL_DOWN, "pull-down"},
         {GPIO_V2_LINE_FLAG_BIAS_DISABLED, "no-bias"},
         {GPIO_V2_LINE_FLAG_EVENT_CLOCK_REALTIME, "clock-realtime"},
         {c_hardwareEngineClock, "clock-hte"}}};
    for (const auto& [flag, name] : names) {
        if ((info.flags & flag) != 0) {
            line.flags.append(QLatin1String(name));
        }
    }
    for (quint32 index = 0; index < std::min<quint32>(info.num_attrs, GPIO_V2_LINE_NUM_ATTRS_MAX); ++index) {
        if (info.attrs[index].id == GPIO_V2_LINE_ATTR_ID_DEBOUNCE) {
            line.flags.append(QStringLiteral("debounce=%1us").arg(info.attrs[index].debounce_period_us));
        }
    }
    return line;
}

std::optional<GpioLineInfo> askLine(int descriptor, unsigned long how, int offset)
{
    gpio_v2_line_info info = {};
    info.offset = static_cast<quint32>(offset);
    return ioctl(descriptor, how, &info) == 0 ? std::optional<GpioLineInfo>(infoOf(info)) : std::nullopt;
}

/// Reads all that there is, without waiting. Returns 0, or what errno says.
template <typename Record, typename Use>
int readRecords(int descriptor, Use use)
{
    std::array<Record, 64> records = {};
    for (;;) {
        const ssize_t size = read(descriptor, records.data(), sizeof records);
        if (size < 0 && errno != EINTR) {
            return errno == EAGAIN ? 0 : errno;
        }
        const auto count = size > 0 ? static_cast<std::size_t>(size) / sizeof(Record) : 0;
        std::for_each_n(records.cbegin(), count, use);
        if (size >= 0 && count < records.size()) {
            return 0;
        }
    }
}

bool makeNonBlocking(int descriptor)
{
    return fcntl(descriptor, F_SETFL, O_NONBLOCK) == 0;
}

} // namespace

GpioRequest::GpioRequest(int descriptor, const QVector<GpioWish>& lines)
    : m_descriptor(descriptor)
    , m_lineCount(lines.size())
{
    for (int position = 0; position < lines.size(); ++position) {
        const int offset = lines.at(position).offset;
        while (m_positions.size() <= offset) {
            m_positions.append(-1);
        }
        m_positions[offset] = position;
    }
}

GpioRequest::~GpioRequest()
{
    close(m_descriptor);
}

int GpioRequest::readLevels(quint64 mask, quint64* levels) const
{
    gpio_v2_line_values values = {0, mask};
    const int error = ioctl(m_descriptor, GPIO_V2_LINE_GET_VALUES_IOCTL, &values) == 0 ? 0 : errno;
    *levels = values.bits;
    return error;
}

int GpioRequest::writeLevels(quint64 mask, quint64 levels)
{
    gpio_v2_line_values values = {levels, mask};
    return ioctl(m_descriptor, GPIO_V2_LINE_SET_VALUES_IOCTL, &values) == 0 ? 0 : errno;
}

int GpioRequest::readEdges(std::vector<GpioEdge>* edges)
{
    return readRecords<gpio_v2_line_event>(m_descriptor, [this, edges](const gpio_v2_line_event& event) {
        edges->push_back({m_positions.value(static_cast<int>(event.offset)),
                          event.id == GPIO_V2_LINE_EVENT_RISING_EDGE ? 1 : 0, event.seqno, event.line_seqno,
                          static_cast<qint64>(event.timestamp_ns)});
    });
}

QStringList GpioChip::files()
{
    QStringList names = QDir(QStringLiteral("/dev")).entryList({QStringLiteral("gpiochip*")}, QDir::System);
    std::sort(names.begin(), names.end(), [](const QString& first, const QString& second) {
        return std::make_pair(first.size(), first) < std::make_pair(second.size(), second);
    });
    for (QString& name : names) {
        name.prepend(QStringLiteral("/dev/"));
    }
    return names;
}

std::unique_ptr<GpioChip> GpioChip::open(const QString& file, int* error)
{
    const int descriptor = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        *error = errno;
        return nullptr;
    }
    std::unique_ptr<GpioChip> chip(new GpioChip(file, descriptor));
    gpiochip_info info = {};
    if (ioctl(descriptor, GPIO_GET_CHIPINFO_IOCTL, &info) != 0) {
        *error = errno;
        return nullptr;
    }
    chip->m_name = textOf(info.name);
    chip->m_label = textOf(info.label);
    chip->m_lineCount = static_cast<int>(info.lines);
    return chip;
}

GpioChip::GpioChip(QString file, int descriptor)
    : m_file(std::move(file))
    , m_descriptor(descriptor)
{}

GpioChip::~GpioChip()
{
    close(m_descriptor);
}

bool GpioChip::isThere() const
{
    gpiochip_info info = {};
    return ioctl(m_descriptor, GPIO_GET_CHIPINFO_IOCTL, &info) == 0;
}

std::optional<GpioLineInfo> GpioChip::line(int offset) const
{
    return askLine(m_descriptor, GPIO_V2_GET_LINEINFO_IOCTL, offset);
}

std::unique_ptr<GpioRequest> GpioChip::request(const QVector<GpioWish>& lines, int* error) const
{
    int count = GPIO_V2_LINES_MAX;
    gpio_v2_line_request request = {};
    request.config = configurationOf(lines, true, &count);
    request.num_lines = static_cast<quint32>(count);
    request.event_buffer_size = GpioRequest::c_keptEdges;
    std::strncpy(request.consumer, "appvantor", sizeof request.consumer - 1);
    quint64 kept = 0;
    for (int position = 0; position < count; ++position) {
        const GpioWish& line = lines.at(position);
        request.offsets[position] = static_cast<quint32>(line.offset);
        kept |= line.settings.output && !line.settings.level ? GpioRequest::bitOf(position) : 0;
    }
    if (ioctl(m_descriptor, GPIO_V2_GET_LINE_IOCTL, &request) != 0) {
        *error = errno;
        return nullptr;
    }
    std::unique_ptr<GpioRequest> held(new GpioRequest(request.fd, lines.mid(0, count)));
    *error = makeNonBlocking(request.fd) ? 0 : errno;
    if (kept != 0 && *error == 0) { // such lines are held already: nobody else changes them meanwhile
        quint64 levels = 0;
        *error = held->readLevels(kept, &levels);
        gpio_v2_line_config config = configurationOf(lines, false, &count);
        config.attrs[0].attr.values |= levels & kept;
        if (*error == 0 && ioctl(request.fd, GPIO_V2_LINE_SET_CONFIG_IOCTL, &config) != 0) {
            *error = errno;
        }
    }
    return *error == 0 ? std::move(held) : nullptr;
}

std::optional<GpioLineInfo> GpioChip::watchLine(int offset)
{
    return askLine(m_descriptor, GPIO_V2_GET_LINEINFO_WATCH_IOCTL, offset);
}

std::vector<GpioLineChange> GpioChip::readChanges()
{
    std::vector<GpioLineChange> changes;
    readRecords<gpio_v2_line_info_changed>(m_descriptor, [&changes](const gpio_v2_line_info_changed& told) {
        const auto kind = told.event_type == GPIO_V2_LINE_CHANGED_REQUESTED ? GpioLineChange::Kind::Taken
                          : told.event_type == GPIO_V2_LINE_CHANGED_RELEASED
                              ? GpioLineChange::Kind::Released
                              : GpioLineChange::Kind::Configured;
        changes.push_back({infoOf(told.info), kind, static_cast<qint64>(told.timestamp_ns)});
    });
    return changes;
}
