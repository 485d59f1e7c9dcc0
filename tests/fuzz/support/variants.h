#pragma once

#include <QStringList>
#include <QVariant>

#include <fuzzer/FuzzedDataProvider.h>

/// Makes values of all kinds out of a fuzzer's bytes.
class Variants
{
public:
    /// words are the texts and keys that the code under test knows; about half of all texts are among them.
    Variants(FuzzedDataProvider* bytes, const QStringList& words);

    QString text();
    /// Anything that a variant can be, with up to depth levels of lists and maps.
    QVariant value(int depth = 3);
    QVariantList list(int depth);
    QVariantMap map(int depth);

private:
    double number();

    FuzzedDataProvider* m_bytes;
    QStringList m_words;
};
