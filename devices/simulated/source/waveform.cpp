#include <devices/waveform.h>

#include <cmath>
#include <random>

namespace {

double noise(quint32 seed, qint64 sample)
{
    std::seed_seq sequence{seed, static_cast<quint32>(sample & 0xFFFFFFFF),
                           static_cast<quint32>(sample >> 32)};
    std::mt19937 generator(sequence);
    return static_cast<double>(generator()) / static_cast<double>(std::mt19937::max());
}

} // namespace

int Waveform::level(qint64 timeUs) const
{
    constexpr double fullTurn = 6.283185307179586;
    const double phase = static_cast<double>(timeUs % periodUs) / static_cast<double>(periodUs);
    double share = 1.0;
    switch (shape) {
    case Shape::Constant:
        break;
    case Shape::Ramp:
        share = phase;
        break;
    case Shape::Sine:
        share = (1.0 + std::sin(phase * fullTurn)) / 2.0;
        break;
    case Shape::Noise:
        share = noise(seed, timeUs / intervalUs);
        break;
    }
    return low + static_cast<int>(std::lround(share * (high - low)));
}
