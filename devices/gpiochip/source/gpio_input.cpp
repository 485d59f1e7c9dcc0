#include "gpio_input.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/gpio.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr quint32 c_keptEdges = 1024; // the most that the kernel keeps for one line

quint64 flagsOf(const GpioLineSettings& settings)
{
    quint64 flags = GPIO_V2_LINE_FLAG_INPUT | GPIO_V2_LINE_FLAG_EDGE_RISING | GPIO_V2_LINE_FLAG_EDGE_FALLING;
    if (settings.activeLow) {
        flags |= GPIO_V2_LINE_FLAG_ACTIVE_LOW;
    }
    switch (settings.bias) {
    case GpioLineSettings::Bias::AsIs:
        break;
    case GpioLineSettings::Bias::PullUp:
        flags |= GPIO_V2_LINE_FLAG_BIAS_PULL_UP;
        break;
    case GpioLineSettings::Bias::PullDown:
        flags |= GPIO_V2_LINE_FLAG_BIAS_PULL_DOWN;
        break;
    case GpioLineSettings::Bias::None:
        flags |= GPIO_V2_LINE_FLAG_BIAS_DISABLED;
        break;
    }
    return flags;
}

gpio_v2_line_request requestOf(int offset, const GpioLineSettings& settings)
{
    gpio_v2_line_request request = {};
    request.offsets[0] = static_cast<quint32>(offset);
    request.num_lines = 1;
    request.event_buffer_size = c_keptEdges;
    std::strncpy(request.consumer, "appvantor", sizeof request.consumer - 1);
    request.config.flags = flagsOf(settings);
    if (settings.debounceUs > 0) {
        request.config.num_attrs = 1;
        request.config.attrs[0].mask = 1;
        request.config.attrs[0].attr.id = GPIO_V2_LINE_ATTR_ID_DEBOUNCE;
        request.config.attrs[0].attr.debounce_period_us = static_cast<quint32>(settings.debounceUs);
    }
    return request;
}

} // namespace

std::unique_ptr<GpioInput> GpioInput::request(const QString& file, int offset,
                                              const GpioLineSettings& settings, int* error)
{
    const int chip = open(QFile::encodeName(file).constData(), O_RDWR | O_CLOEXEC);
    if (chip < 0) {
        *error = errno;
        return nullptr;
    }
    gpio_v2_line_request request = requestOf(offset, settings);
    const bool taken = ioctl(chip, GPIO_V2_GET_LINE_IOCTL, &request) == 0;
    *error = taken ? 0 : errno;
    close(chip);
    if (!taken) {
        return nullptr;
    }
    std::unique_ptr<GpioInput> input(new GpioInput(request.fd));
    if (fcntl(request.fd, F_SETFL, O_NONBLOCK) != 0) {
        *error = errno;
        return nullptr;
    }
    return input;
}

GpioInput::~GpioInput()
{
    close(m_descriptor);
}

int GpioInput::level() const
{
    gpio_v2_line_values values = {};
    values.mask = 1;
    return ioctl(m_descriptor, GPIO_V2_LINE_GET_VALUES_IOCTL, &values) == 0
               ? static_cast<int>(values.bits & 1U)
               : -1;
}

int GpioInput::readEdges(QVector<GpioEdge>* edges, quint32* lost)
{
    std::array<gpio_v2_line_event, 64> events = {};
    for (;;) {
        const ssize_t size = read(m_descriptor, events.data(), sizeof events);
        if (size < 0 && errno != EINTR) {
            return errno == EAGAIN ? 0 : errno;
        }
        const auto count = size > 0 ? static_cast<std::size_t>(size) / sizeof events[0] : 0;
        for (std::size_t index = 0; index < count; ++index) {
            const gpio_v2_line_event& event = events.at(index);
            *lost += event.line_seqno - m_lastNumber - 1;
            m_lastNumber = event.line_seqno;
            edges->append({static_cast<qint64>(event.timestamp_ns),
                           event.id == GPIO_V2_LINE_EVENT_RISING_EDGE ? 1 : 0});
        }
        if (size >= 0 && count < events.size()) {
            return 0;
        }
    }
}
