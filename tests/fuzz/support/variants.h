#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QUuid>
#include <QVariant>
#include <QVector>

#include <cstring>
#include <functional>
#include <limits>

/// Makes values of all kinds out of a fuzzer's bytes.
class Variants
{
public:
    /// words are the texts and keys that the code under test knows; about half of all texts are among them.
    Variants(FuzzedDataProvider* bytes, const QStringList& words)
        : m_bytes(bytes)
        , m_words(words)
    {}

    QString text()
    {
        if (m_bytes->ConsumeBool()) {
            return m_words.at(m_bytes->ConsumeIntegralInRange(0, m_words.size() - 1));
        }
        const std::string bytes = m_bytes->ConsumeRandomLengthString(c_longestText);
        if (m_bytes->ConsumeBool()) {
            return QString::fromStdString(bytes);
        }
        QString units(static_cast<int>(bytes.size() / sizeof(ushort)), Qt::Uninitialized);
        std::memcpy(units.data(), bytes.data(), static_cast<std::size_t>(units.size()) * sizeof(ushort));
        return units;
    }

    /// Anything that a variant can be, with up to depth levels of lists and maps.
    QVariant value(int depth = 3)
    {
        const std::function<QVariant()> kinds[] = {
            // Those that hold others come first.
            [&] { return list(depth - 1); },
            [&] { return map(depth - 1); },
            [&] {
                return QStringList{text(), text()};
            },
            [&] {
                return QVariantHash{{text(), value(depth - 1)}};
            },
            [] { return QVariant(); },
            [&] {
                return QVariant(static_cast<QVariant::Type>(
                    m_bytes->ConsumeIntegralInRange<int>(1, QVariant::UserType - 1)));
            },
            [&] { return m_bytes->ConsumeBool(); },
            [&] { return m_bytes->ConsumeIntegralInRange(-2, 3); },
            [&] { return m_bytes->ConsumeIntegral<int>(); },
            [&] { return m_bytes->ConsumeIntegral<uint>(); },
            [&] { return m_bytes->ConsumeIntegral<qlonglong>(); },
            [&] { return m_bytes->ConsumeIntegral<qulonglong>(); },
            [&] { return number(); },
            [&] { return m_bytes->ConsumeFloatingPoint<float>(); },
            [&] { return text(); },
            [&] { return text(); },
            [&] { return text().toUtf8(); },
            [&] { return QChar(m_bytes->ConsumeIntegral<ushort>()); },
            [&] { return QDateTime::fromMSecsSinceEpoch(m_bytes->ConsumeIntegral<qint32>(), Qt::UTC); },
            [&] { return QUuid(text()); },
            [] { return QVariant::fromValue<QObject*>(nullptr); }};
        constexpr int firstFlat = 4;
        constexpr int last = static_cast<int>(std::size(kinds)) - 1;
        return kinds[m_bytes->ConsumeIntegralInRange(depth > 0 ? 0 : firstFlat, last)]();
    }

    QVariantList list(int depth)
    {
        QVariantList elements;
        const int count = m_bytes->ConsumeIntegralInRange(0, c_mostElements);
        for (int element = 0; element < count; ++element) {
            elements.append(value(depth));
        }
        return elements;
    }

    QVariantMap map(int depth)
    {
        QVariantMap entries;
        const int count = m_bytes->ConsumeIntegralInRange(0, c_mostElements);
        for (int entry = 0; entry < count; ++entry) {
            const QString key = text();
            entries.insert(key, value(depth));
        }
        return entries;
    }

private:
    static constexpr int c_mostElements = 6;
    static constexpr std::size_t c_longestText = 80;

    double number()
    {
        using Limits = std::numeric_limits<double>;
        static const QVector<double> special =
            QVector<double>{0.0,     -0.0,         0.5,          1.0,          65535.0,
                            65536.0, 2147483647.0, 2147483648.0, 4294967296.0, 9007199254740993.0,
                            9.3e18,  -9.3e18} +
            QVector<double>{Limits::max(),       Limits::min(),       Limits::infinity(),
                            -Limits::infinity(), Limits::quiet_NaN(), Limits::denorm_min()};
        if (m_bytes->ConsumeBool()) {
            return special.at(m_bytes->ConsumeIntegralInRange(0, special.size() - 1));
        }
        const auto bits = m_bytes->ConsumeIntegral<quint64>();
        double any = 0.0;
        std::memcpy(&any, &bits, sizeof(any));
        return any;
    }

    FuzzedDataProvider* m_bytes;
    QStringList m_words;
};
