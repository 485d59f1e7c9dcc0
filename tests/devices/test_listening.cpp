#include "board_bench.h"

#include <QTest>

class TestListening : public QObject
{
    Q_OBJECT

    static QVariantList levels(const QVector<int>& values)
    {
        QVariantList list;
        for (const int value : values) {
            list.append(QVariant(QVariantList{value}));
        }
        return list;
    }

    /// Counts the events by which a device delivers its answers.
    class AnswerCounter : public QObject
    {
    public:
        explicit AnswerCounter(QObject* device) { device->installEventFilter(this); }

        bool eventFilter(QObject* device, QEvent* event) override
        {
            count += event->type() >= QEvent::User ? 1 : 0;
            return QObject::eventFilter(device, event);
        }

        int count = 0;
    };

private Q_SLOTS:
    void eachChangeOfTheLineBringsOneReply()
    {
        BoardBench bench(boardOf({output("out"_s), output("other"_s)}));
        bench.listen("out"_s);
        for (const int level : {1, 1, 0, 5, 0}) {
            bench.write("out"_s, level);
            bench.write("other"_s, level);
        }
        bench.client.heard.clear();
        deliver();
        QCOMPARE(bench.client.replied("values"_s, 1), levels({0, 1, 0, 1, 0}));
    }

    void aListenerHearsThePresentLevelThenEachChangeAnalogueOnesToo()
    {
        BoardBench bench(boardOf({analogInput("adc"_s, 7)}));
        bench.listen("adc"_s);
        bench.board->setInput(0, 65535);
        deliver();
        QCOMPARE(bench.client.replied("values"_s), levels({7, 65535}));
        QCOMPARE(bench.board->pendingRequests(), 1);
    }

    void blinkingIsHeardPhaseByPhase()
    {
        BoardBench bench(boardOf({output("out"_s)}));
        bench.blink("out"_s, 10, 10);
        deliver();
        bench.client.heard.clear();
        bench.listen("out"_s);
        bench.advanceMs(35);
        QCOMPARE(bench.client.replied("values"_s), levels({1, 0, 1, 0}));
    }

    void severalListenersHearTheSame()
    {
        BoardBench bench(boardOf({input("in"_s)}));
        const quint64 first = bench.listen("in"_s);
        const quint64 second = bench.listen("in"_s);
        bench.board->setInput(0, 1);
        deliver();
        QCOMPARE(bench.client.ids(), (QVector<quint64>{first, second, first, second}));
        QCOMPARE(bench.client.replied("values"_s), levels({0, 0, 1, 1}));
    }

    void aCancelledListenerHearsNoMore()
    {
        BoardBench bench(boardOf({input("in"_s)}));
        const quint64 first = bench.listen("in"_s);
        const quint64 second = bench.listen("in"_s);
        deliver();
        bench.client.heard.clear();
        bench.board->cancel(first);
        bench.board->setInput(0, 1);
        deliver();
        QCOMPARE(bench.client.ids(), QVector<quint64>{second});
        QCOMPARE(bench.board->pendingRequests(), 1);
    }

    void allLinesAreOneNumberWithLineZeroLowest()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s, 1), output("c"_s)}));
        QCOMPARE(bench.ask("listenToAll"_s, {}), (QVariantMap{{"value"_s, quint64{2}}}));
        bench.client.heard.clear();
        bench.write("c"_s, 1);
        bench.write("a"_s, 1);
        bench.board->setInput(1, 0);
        bench.board->setInput(1, 0);
        deliver();
        QCOMPARE(bench.client.replied("value"_s, 1), (QVariantList{quint64{6}, quint64{7}, quint64{5}}));
    }

    void analogueLinesHaveNoPlaceInTheNumber()
    {
        BoardBench bench(boardOf({analogInput("adc"_s, 9), input("in"_s), analogInput("adc2"_s, 9)}));
        bench.send("listenToAll"_s, {});
        bench.board->setInput(0, 100);
        bench.board->setInput(1, 1);
        deliver();
        QCOMPARE(bench.client.replied("value"_s), (QVariantList{quint64{0}, quint64{1}}));
    }

    void sixtyFourLinesFillTheNumber()
    {
        BoardBench bench(digitalOutputs(64));
        for (int line = 0; line < 64; ++line) {
            bench.write("line%1"_s.arg(line), 1);
        }
        QCOMPARE(bench.ask("listenToAll"_s, {}), (QVariantMap{{"value"_s, ~quint64{0}}}));
        bench.client.heard.clear();
        bench.write("line63"_s, 0);
        bench.write("line0"_s, 0);
        deliver();
        QCOMPARE(bench.client.replied("value"_s),
                 (QVariantList{quint64{0x7FFFFFFFFFFFFFFF}, quint64{0x7FFFFFFFFFFFFFFE}}));
    }

    void moreLinesThanTheNumberHoldsAreRefused()
    {
        BoardBench bench(digitalOutputs(65));
        QCOMPARE(bench.ask("listenToAll"_s, {}).value("failure"_s),
                 QVariant("\"listenToAll\" tells 64 binary lines at most, the device has 65"_s));
        QCOMPARE(bench.board->pendingRequests(), 0);
        QCOMPARE(bench.ask("listenEvents"_s, {{"channel"_s, "line64"_s}}),
                 (QVariantMap{{"values"_s, QVariantList{0}}}));
    }

    void eachChangeIsTrueSinceTheBoardSawIt()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s)}, {{0, 1, 300, false}}));
        bench.advanceMs(5);
        bench.listen("b"_s);
        bench.send("listenToAll"_s, {});
        bench.write("a"_s, 1);
        bench.scheduler.advance(1000); // nothing is delivered meanwhile
        deliver();
        QVector<qint64> times;
        for (const auto& what : qAsConst(bench.client.heard)) {
            times.append(what.timeUs);
        }
        QCOMPARE(times, (QVector<qint64>{5000, 5000, 5000, 5000, 5300, 5300}));
    }

    void theBoardAnswersNobodyOnceItsListenersAreCancelled()
    {
        for (const QString& instruction : {"listenEvents"_s, "listenToAll"_s}) {
            BoardBench bench(boardOf({input("in"_s)}));
            const quint64 id = bench.send(instruction, {{"channel"_s, "in"_s}});
            deliver();
            AnswerCounter answers(bench.board.get());
            bench.board->setInput(0, 1);
            deliver();
            QCOMPARE(answers.count, 1);
            bench.board->cancel(id);
            bench.board->setInput(0, 0);
            deliver();
            QCOMPARE(answers.count, 1);
        }
    }

    void listeningToAllNeedsNoLine()
    {
        BoardBench bench(boardOf({}));
        QCOMPARE(bench.ask("listenToAll"_s, {}), (QVariantMap{{"value"_s, quint64{0}}}));
    }

    void tenThousandListenersComeAndGo()
    {
        constexpr int count = 10000;
        BoardBench bench(boardOf({input("in"_s)}));
        QVector<quint64> ids;
        for (int i = 0; i < count; ++i) {
            ids.append(bench.listen("in"_s));
        }
        bench.board->setInput(0, 1);
        deliver();
        for (const quint64 id : qAsConst(ids)) {
            bench.board->cancel(id);
        }
        QCOMPARE(bench.client.heard.size(), 2 * count);
        QCOMPARE(bench.board->pendingRequests(), 0);
    }
};

QTEST_GUILESS_MAIN(TestListening)
#include "test_listening.moc"
