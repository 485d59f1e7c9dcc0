#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// What the headers of another host may hold: each function uses what one of our own definitions forbids.
inline QString hostTextFromAscii()
{
    return "text";
}

inline QByteArray hostTextToAscii()
{
    return QByteArray().append(QString());
}

inline bool hostIteratorsOfTwoKinds(QMap<int, int>& numbers)
{
    const QMap<int, int>::const_iterator found = numbers.find(1);
    return found == numbers.end();
}
