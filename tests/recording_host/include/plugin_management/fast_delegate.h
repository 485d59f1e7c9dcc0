#pragma once

#include <functional>

namespace fastdelegate {

/// A call of a member function of one object with two arguments.
template <typename Param1, typename Param2, typename Result>
class FastDelegate2
{
public:
    FastDelegate2() = default;

    template <typename Object, typename Class>
    FastDelegate2(Object* object, Result (Class::*function)(Param1, Param2))
        : m_call(
              [object, function](Param1 first, Param2 second) { return (object->*function)(first, second); })
    {}

    bool empty() const { return !m_call; }
    Result operator()(Param1 first, Param2 second) const { return m_call(first, second); }

private:
    std::function<Result(Param1, Param2)> m_call;
};

} // namespace fastdelegate
