#include "small_host.h"

Object::Object(const char* name)
    : m_name(name)
{}

Object::~Object()
{
    m_name = nullptr;
}

void Object::wake() {}

Worker::Worker()
    : Object("worker")
{}

Worker::~Worker() = default;

#ifdef OVERRIDDEN
void Worker::wake() {}
#endif

#if defined(ONE_MORE_IN_FRONT) || defined(ONE_MORE_AT_THE_END)
void Worker::added() {}
#endif

int Worker::rest(int hours)
{
    return m_hours -= hours;
}

int Worker::plan()
{
    return m_hours;
}

int Worker::report()
{
    return -m_hours;
}

bool Worker::hear(int event)
{
    return event == m_hours;
}

void Worker::forget() {}

#ifdef CHANGED_ARGUMENT
long hoursOf(const Worker* worker, long first)
{
    return worker == nullptr ? 0 : first;
}
#elif !defined(MISSING)
long hoursOf(const Worker* worker, int first)
{
    return worker == nullptr ? 0 : first;
}
#endif
