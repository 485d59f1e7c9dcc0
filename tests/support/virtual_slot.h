#pragma once

#include <QtGlobal>

#include <cstring>

/// The number of a virtual member function's slot in the virtual table, counted from 0; -1 for a function
/// that is not virtual. The C++ ABI keeps the slot's offset in a pointer to the member, and marks it as one:
/// with the lowest bit of that offset, or on ARM, where functions may stand at odd addresses, of the
/// adjustment.
template <typename Function>
int virtualSlotOf(Function function)
{
    struct
    {
        qptrdiff pointer;
        qptrdiff adjustment;
    } representation;
    static_assert(sizeof(representation) == sizeof(function));
    std::memcpy(&representation, &function, sizeof(function));
#ifdef Q_PROCESSOR_ARM
    const qptrdiff marked = representation.adjustment;
#else
    const qptrdiff marked = representation.pointer;
#endif
    constexpr qptrdiff slotSize = sizeof(void*);
    return marked % 2 != 0 ? static_cast<int>(representation.pointer / slotSize) : -1;
}
