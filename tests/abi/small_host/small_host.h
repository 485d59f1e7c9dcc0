#pragma once

// A host as small as one can be that gives a plugin what hosts give: functions, a class with a second base,
// functions that plugins override, inherit and must provide. Each macro makes it a host that has changed in
// one way.

class Object
{
public:
    explicit Object(const char* name);
    virtual ~Object();
    virtual void wake();

private:
    const char* m_name;
#ifdef LARGER_FIRST_BASE
protected:
    void* m_added[2] = {};
#endif
};

class Listener
{
public:
    virtual bool hear(int event) = 0;
    virtual void forget() = 0;
    virtual ~Listener() = default;
};

class Worker : public Object, public Listener
{
public:
    Worker();
    ~Worker() override;

#ifdef OVERRIDDEN
    void wake() override;
#endif
#ifdef ONE_MORE_IN_FRONT
    virtual void added();
#endif
#ifdef SWAPPED
    virtual int rest(int hours);
    virtual int work(int hours) = 0;
#else
    virtual int work(int hours) = 0;
    virtual int rest(int hours);
#endif
#ifdef OWN_SWAPPED
    virtual int report();
    virtual int plan();
#else
    virtual int plan();
    virtual int report();
#endif
    bool hear(int event) override;
    void forget() override;
#ifdef ONE_MORE_AT_THE_END
    virtual void added();
#endif

private:
    int m_hours = 0;
#ifdef LARGER
protected:
    void* m_added[2] = {};
#endif
};

#ifdef CHANGED_ARGUMENT
long hoursOf(const Worker* worker, long first);
#elif !defined(MISSING)
long hoursOf(const Worker* worker, int first);
#endif
