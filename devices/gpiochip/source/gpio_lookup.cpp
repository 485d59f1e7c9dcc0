#include "gpio_lookup.h"

#include <devices/gpio_messages.h>

#include <algorithm>
#include <cerrno>

namespace {

/// The files that a chip may have by what it is called; with a label, the files of all chips.
QStringList filesFor(const QString& chip, const QStringList& all, bool* isFile)
{
    const QString file = chip.contains(QLatin1Char('/')) ? chip : QStringLiteral("/dev/") + chip;
    *isFile = !chip.isEmpty() && (file == chip || all.contains(file));
    return *isFile ? QStringList{file} : all;
}

} // namespace

GpioLookup::Place GpioLookup::find(const QString& name, const QString& chip, const QString& wanted,
                                   DWording* problem)
{
    bool isFile = false;
    const QStringList files = filesFor(chip, GpioChip::files(), &isFile);
    QVector<Place> places;
    DWording refused; // a chip that cannot be opened may be the one
    QString nameOfChip;
    for (const QString& file : files) {
        Known& known = open(file);
        if (known.chip == nullptr) {
            refused = refused.isEmpty() ? known.problem : refused;
        } else if (isFile || chip.isEmpty() || known.chip->label() == chip) {
            nameOfChip = known.chip->name();
            const auto offsets = offsetsOf(&known, wanted);
            for (const int offset : offsets) {
                places.append({known.chip, offset});
            }
        }
    }
    m_missing = false;
    if (places.size() == 1) {
        return places.constFirst();
    }
    if (places.size() > 1) {
        QVector<DWording> texts;
        for (const Place& place : qAsConst(places)) {
            texts.append(GpioMessages::placeText(place.offset, place.chip->name()));
        }
        *problem = GpioMessages::lineTwice(name, wanted, texts);
    } else if (!nameOfChip.isEmpty() && !chip.isEmpty()) {
        *problem = GpioMessages::noSuchLine(name, nameOfChip, wanted);
    } else if (!refused.isEmpty()) {
        *problem = refused;
    } else {
        m_missing = true;
        *problem = chip.isEmpty() ? GpioMessages::noLineOfName(name, wanted)
                                  : GpioMessages::lineWithoutChip(name, chip);
    }
    return {};
}

GpioLookup::Known& GpioLookup::open(const QString& file)
{
    const auto [place, isNew] = m_chips.try_emplace(file);
    Known& known = place->second;
    if (!isNew) {
        return known;
    }
    int error = 0;
    known.chip = GpioChip::open(file, &error);
    if (known.chip != nullptr) {
        return known;
    }
    if (error != ENOENT && error != ENODEV && error != ENXIO) {
        known.problem = GpioMessages::chipRefused(file, error);
    }
    return known;
}

QList<int> GpioLookup::offsetsOf(Known* known, const QString& wanted) const
{
    bool isNumber = false;
    const int number = wanted.toInt(&isNumber);
    const int count = known->chip->lineCount();
    if (isNumber) {
        return number >= 0 && number < count ? QList<int>{number} : QList<int>();
    }
    if (!known->named) {
        known->named = true;
        for (int offset = 0; offset < count; ++offset) {
            if (const std::optional<GpioLineInfo> info = known->chip->line(offset)) {
                known->offsets.insert(info->name, offset);
            }
        }
    }
    QList<int> offsets = known->offsets.values(wanted);
    std::sort(offsets.begin(), offsets.end());
    return offsets;
}
