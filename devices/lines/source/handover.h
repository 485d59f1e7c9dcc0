#pragma once

#include <QMetaObject>

#include <utility>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

/// How one thread hands something to another: as an event, which carries values and ends with its receiver.
namespace handover {

#ifdef __SANITIZE_THREAD__
// Qt's own library, where events pass from thread to thread, is not built with the sanitizer: what orders the
// two sides must be told.
inline char place = 0;
inline void give()
{
    __tsan_release(&place);
}
inline void take()
{
    __tsan_acquire(&place);
}
#else
inline void give() {}
inline void take() {}
#endif

/// Makes the call in the thread of receiver, from its event loop.
template <typename Call>
void post(QObject* receiver, Call call)
{
    give();
    QMetaObject::invokeMethod(
        receiver,
        [call = std::move(call)] {
            take();
            call();
        },
        Qt::QueuedConnection);
}

} // namespace handover
