#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace fastdelegate {

/// A call of one member function of one object, with two arguments: a plain value without heap memory.
/// It holds the object by address only: who calls it answers for the object's life.
template <typename Param1, typename Param2, typename Result>
class FastDelegate2
{
public:
    /// Makes an empty delegate, bound to nothing.
    FastDelegate2() = default;

    /// Binds object and one of its member functions (of its class or of a base).
    template <typename Object, typename Class>
    FastDelegate2(Object* object, Result (Class::*function)(Param1, Param2))
    {
        bind<Class>(static_cast<Class*>(object), function);
    }

    /// Binds object and one of its const member functions.
    template <typename Object, typename Class>
    FastDelegate2(const Object* object, Result (Class::*function)(Param1, Param2) const)
    {
        bind<const Class>(static_cast<const Class*>(object), function);
    }

    /// True when nothing is bound.
    bool empty() const { return m_call == nullptr; }

    /// Calls the bound function and returns its result; an empty delegate returns Result().
    Result operator()(Param1 first, Param2 second) const
    {
        return m_call != nullptr ? m_call(*this, first, second) : Result();
    }

    /// Two delegates are equal when both are empty or both bind the same function of the same object.
    friend bool operator==(const FastDelegate2& left, const FastDelegate2& right)
    {
        return left.m_object == right.m_object && left.m_call == right.m_call &&
               std::memcmp(left.m_function, right.m_function, c_functionSize) == 0;
    }
    friend bool operator!=(const FastDelegate2& left, const FastDelegate2& right) { return !(left == right); }

private:
    class AnyClass;
    static constexpr std::size_t c_functionSize = sizeof(void(AnyClass::*)());

    template <typename Class, typename Function>
    void bind(Class* object, Function function)
    {
        static_assert(sizeof(function) <= c_functionSize,
                      "member function pointers of this class do not fit");
        m_object = object;
        m_call = &FastDelegate2::template call<Class, Function>;
        std::memcpy(m_function, &function, sizeof(function));
    }

    template <typename Class, typename Function>
    static Result call(const FastDelegate2& self, Param1 first, Param2 second)
    {
        Function function;
        std::memcpy(&function, self.m_function, sizeof(function));
        auto* object = static_cast<Class*>(const_cast<void*>(self.m_object));
        return (object->*function)(first, second);
    }

    const void* m_object = nullptr;
    Result (*m_call)(const FastDelegate2&, Param1, Param2) = nullptr;
    alignas(void*) unsigned char m_function[c_functionSize] = {};
};

} // namespace fastdelegate
