#pragma once

#include <QMetaObject>

#include <utility>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

/// How one thread hands something to another: as an event, which carries values and ends with its receiver.
///
/// Qt's own library, where events pass from thread to thread, is not built with the thread sanitizer. What
/// Qt's locks order is told here to a build with it; in any other, nothing is left of that.
namespace handover {

#ifdef __SANITIZE_THREAD__
/// A call on its way: it is written before it is made, and made before it is thrown away, by whichever thread
/// lets go of it last.
template <typename Call>
class Handed
{
public:
    explicit Handed(Call call)
        : m_call(std::move(call))
    {}
    Handed(Handed&& other) noexcept
        : m_call(std::move(other.m_call))
    {
        __tsan_release(this);
    }
    ~Handed() { __tsan_acquire(this); }
    Q_DISABLE_COPY(Handed)

    void operator()()
    {
        __tsan_acquire(this);
        m_call();
        __tsan_release(this);
    }

private:
    Call m_call;
};

/// Apart from post(), so that post() stands in reports of what Qt does here: a report names the functions of
/// this build that have called another of it.
template <typename Call>
[[gnu::noinline]] void send(QObject* receiver, Handed<Call> call)
{
    QMetaObject::invokeMethod(receiver, std::move(call), Qt::QueuedConnection);
}
#endif

/// Makes the call in the thread of receiver, from its event loop.
template <typename Call>
[[gnu::noinline]] void post(QObject* receiver, Call call)
{
#ifdef __SANITIZE_THREAD__
    send(receiver, Handed<Call>(std::move(call)));
#else
    QMetaObject::invokeMethod(receiver, std::move(call), Qt::QueuedConnection);
#endif
}

/// The last that a thread does. What it has done is there for who joins it at the same place.
inline void leave([[maybe_unused]] void* place)
{
#ifdef __SANITIZE_THREAD__
    __tsan_release(place);
#endif
}

/// Called where the end of a thread has been waited for.
inline void join([[maybe_unused]] void* place)
{
#ifdef __SANITIZE_THREAD__
    __tsan_acquire(place);
#endif
}

} // namespace handover
