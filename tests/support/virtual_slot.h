#pragma once

#include <QtGlobal>

#include <cstring>

/// The number of a virtual member function's slot in the virtual table, counted from 0; -1 for a function
/// that is not virtual. The Itanium C++ ABI keeps one more than the slot's offset in a pointer to the member.
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
    constexpr qptrdiff slotSize = sizeof(void*);
    const bool isVirtual = representation.pointer % slotSize == 1;
    return isVirtual ? static_cast<int>(representation.pointer / slotSize) : -1;
}
