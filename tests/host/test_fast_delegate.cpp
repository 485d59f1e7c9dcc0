#include <plugin_management/fast_delegate.h>

#include <QTest>

#include <cstdlib>
#include <new>
#include <type_traits>

namespace {
int allocations = 0;
} // namespace

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using Delegate = fastdelegate::FastDelegate2<int, const int&, int>;

struct Adder
{
    explicit Adder(int start = 0)
        : base(start)
    {}
    virtual ~Adder() = default;

    int base;

    int add(int first, const int& second) { return base += first + second; }
    int other(int first, const int& second) { return base -= first + second; }
    int sum(int first, const int& second) const { return base + first + second; }
    int quiet(int first, const int& second) noexcept { return base + first * second; }
};

struct Left
{
    virtual ~Left() = default;
    int left = 100;
};

struct Right
{
    virtual ~Right() = default;
    int right = 200;

    int fromRight(int first, const int& second) { return right + first + second; }
    virtual int overridden(int first, const int& second) { return first - second; }
};

struct Both : Left, Right
{
    int both = 300;

    int fromBoth(int first, const int& second) { return left + right + both + first + second; }
    int overridden(int first, const int& second) override { return both + first * second; }
};

struct Top
{
    virtual ~Top() = default;
    int top = 1000;

    int fromTop(int first, const int& second) { return top + first + second; }
};

struct Virtually : Left, virtual Top
{
    int fromVirtually(int first, const int& second) { return top + left + first + second; }
};

} // namespace

class TestFastDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDelegateOfNothingIsEmptyAndAnswersTheDefault()
    {
        const Delegate delegate;
        QVERIFY(delegate.empty());
        QCOMPARE(delegate(1, 2), 0);
        QVERIFY(!(fastdelegate::FastDelegate2<int, int, bool>()(1, 2)));
        fastdelegate::FastDelegate2<int, int, void>()(1, 2);
    }

    void aBoundDelegateCallsItsObject()
    {
        Adder adder;
        const Delegate delegate(&adder, &Adder::add);
        QVERIFY(!delegate.empty());
        QCOMPARE(delegate(1, 2), 3);
        QCOMPARE(delegate(1, 2), 6);
        QCOMPARE(adder.base, 6);
    }

    void constMembersAreBoundToConstAndOtherObjects()
    {
        const Adder constant{10};
        Adder variable{20};
        QCOMPARE(Delegate(&constant, &Adder::sum)(1, 2), 13);
        QCOMPARE(Delegate(&variable, &Adder::sum)(1, 2), 23);
    }

    void membersThatThrowNothingAreBound()
    {
        Adder adder{5};
        QCOMPARE(Delegate(&adder, &Adder::quiet)(3, 4), 17);
    }

    void membersOfASecondBaseSeeTheirOwnObject()
    {
        Both both;
        QCOMPARE(Delegate(&both, &Both::fromRight)(1, 2), 203);
        QCOMPARE(Delegate(&both, &Right::fromRight)(1, 2), 203);
        QCOMPARE(Delegate(&both, &Both::fromBoth)(1, 2), 603);
    }

    void virtualMembersAreCalledVirtually()
    {
        Both both;
        Right plain;
        QCOMPARE(Delegate(&both, &Right::overridden)(3, 4), 312);
        QCOMPARE(Delegate(&both, &Both::overridden)(3, 4), 312);
        QCOMPARE(Delegate(&plain, &Right::overridden)(3, 4), -1);
    }

    void membersOfAVirtualBaseSeeTheirOwnObject()
    {
        Virtually object;
        QCOMPARE(Delegate(&object, &Virtually::fromVirtually)(1, 2), 1103);
        QCOMPARE(Delegate(static_cast<Top*>(&object), &Top::fromTop)(1, 2), 1003);
        QCOMPARE(Delegate(&object, &Top::fromTop)(1, 2), 1003);
    }

    void delegatesAreEqualForTheSameMemberOfTheSameObject()
    {
        Adder one;
        Adder two;
        const Delegate delegate(&one, &Adder::add);
        QVERIFY(delegate == Delegate(&one, &Adder::add));
        QVERIFY(delegate != Delegate(&one, &Adder::other));
        QVERIFY(delegate != Delegate(&two, &Adder::add));
        QVERIFY(delegate != Delegate());
        QVERIFY(Delegate() == Delegate());
        QVERIFY(!(delegate != delegate));
    }

    void copiesAreEqualAndCallTheSameObject()
    {
        Adder adder;
        const Delegate delegate(&adder, &Adder::add);
        Delegate copy;
        copy = delegate;
        QVERIFY(copy == delegate);
        QCOMPARE(copy(2, 3), 5);
        QCOMPARE(adder.base, 5);
    }

    void aDelegateIsAPlainValueWithoutHeapMemory()
    {
        QVERIFY(std::is_trivially_copyable_v<Delegate>);
        Both both;
        const int before = allocations;
        const Delegate delegate(&both, &Both::fromBoth);
        const Delegate copy(delegate);
        const int result = copy(1, 2);
        QCOMPARE(allocations, before);
        QCOMPARE(result, 603);
    }
};

QTEST_GUILESS_MAIN(TestFastDelegate)
#include "test_fast_delegate.moc"
