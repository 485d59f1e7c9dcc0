#include "common_scripts.h"
#include "rows.h"
#include "workbench.h"

#include <utilities/d_timer.h>

#include <utility>

Q_DECLARE_METATYPE(std::shared_ptr<int>)

namespace {

const QVariantMap c_reply{{"value"_s, 1}};

void fillTwoListeners(CommandScript& script)
{
    fillListener(script);
    script.execute = sends({"listenEvents"_s, "listenToAll"_s});
}

} // namespace

/// Whoever hears of an order may stop it, destroy it, its tool or its device there and then.
class TestOrderLifetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOrderMayBeStoppedWhereItsResultIsHeard()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        QStringList heard;
        connect(order.get(), &DOrder::resultUpdated, this, [&] {
            heard.append("result"_s);
            order->stop();
        });
        connect(order.get(), &DOrder::eventReceived, this, [&] { heard.append("event"_s); });
        connect(order.get(), &DOrder::finished, this, [&] { heard.append("finished"_s); });
        order->start();
        bench.answer(c_reply);
        QCOMPARE(heard, (QStringList{"result"_s, "finished"_s}));
        QVERIFY(order->isSuccessful());
        QCOMPARE(bench.script->finishes, 1);
        QCOMPARE(bench.workingCommands(), 0);
    }

    void whoeverHearsOfAnOrderMayEndItThere_data()
    {
        const Rows<bool, bool, bool, QString, QString> columns("listens", "whole", "fails", "place", "deed");
        const auto addRows = [](bool listens, bool whole, bool fails, const QStringList& places) {
            for (const QString& place : places) {
                for (const char* deed : {"stop", "destroy order", "close tool", "destroy device"}) {
                    const bool insideDevice = place == "sending"_s || place == "cancelling"_s;
                    if (insideDevice && QLatin1String(deed) == QLatin1String("destroy device")) {
                        continue; // no device survives its own end
                    }
                    QTest::addRow("%s, %s, %s: %s, %s", listens ? "listening" : "one-shot",
                                  whole ? "whole reply" : "single result", fails ? "refused" : "replied",
                                  qPrintable(place), deed)
                        << listens << whole << fails << place << QString::fromLatin1(deed);
                }
            }
        };
        const QStringList ends = {"sending"_s, "finishing"_s, "command's end"_s, "finished"_s};
        const QStringList heard = {"result"_s, "event"_s};
        addRows(true, false, false, ends + heard + QStringList{"cancelling"_s});
        addRows(true, true, false, heard);
        addRows(true, false, true, ends + QStringList{"cancelling"_s});
        addRows(false, false, false, ends + QStringList{"result"_s});
        addRows(false, true, false, heard);
        addRows(false, false, true, ends);
    }
    void whoeverHearsOfAnOrderMayEndItThere()
    {
        QFETCH(bool, listens);
        QFETCH(bool, whole);
        QFETCH(bool, fails);
        QFETCH(QString, place);
        QFETCH(QString, deed);
        Workbench bench(listens ? fillTwoListeners : fillReader);
        if (whole) {
            bench.script->onReply = takeWhole;
        }
        auto token = std::make_shared<int>();
        const std::weak_ptr<int> leftover = token;
        auto order = bench.order({{"token"_s, QVariant::fromValue(std::exchange(token, nullptr))}});
        bool done = false;
        m_onSignal = [&] {
            if (std::exchange(done, true)) {
                return;
            }
            if (deed == "stop"_s) {
                order->stop();
            } else if (deed == "destroy order"_s) {
                order.reset();
            } else if (deed == "close tool"_s) {
                bench.tool.reset();
            } else {
                bench.device.reset();
            }
        };
        const QMap<QString, const char*> signalsOfOrder = {
            {"result"_s, SIGNAL(resultUpdated(QString, QVariant))},
            {"event"_s, SIGNAL(eventReceived(QVariantMap, qint64))},
            {"finished"_s, SIGNAL(finished(bool))}};
        if (signalsOfOrder.contains(place)) {
            QVERIFY(connect(order.get(), signalsOfOrder.value(place), this, SLOT(onSignal())));
        } else if (place == "sending"_s) {
            bench.device->onRequest = [this](const auto&) { onSignal(); };
        } else if (place == "cancelling"_s) {
            bench.device->onCancel = [this](quint64) { onSignal(); };
        } else if (place == "finishing"_s) {
            bench.script->onFinish = [this](ScriptedCommand&) { onSignal(); };
        }
        order->start();
        if (place == "command's end"_s) {
            QVERIFY(connect(bench.script->latest, SIGNAL(sigCommandFinished(bool)), this, SLOT(onSignal())));
        }
        if (fails) {
            bench.device->refuse(bench.device->lastId(), "burnt"_s);
        } else {
            bench.device->reply(bench.device->lastId(), c_reply);
        }
        deliver();
        if (order != nullptr) {
            order->stop();
        }
        deliver();
        QVERIFY(done);
        QVERIFY(order == nullptr || order->state() == DOrder::State::Finished);
        QCOMPARE(bench.script->finishes, 1);
        QCOMPARE(bench.workingCommands(), 0);
        QVERIFY(bench.device == nullptr || bench.device->pendingRequests() == 0);
        order.reset();
        QVERIFY(leftover.expired());
    }

    void anOrderMayBeDestroyedFromTheTimerOfItsCommand()
    {
        Workbench bench(fillReader);
        bench.script->execute = [](ScriptedCommand& command) {
            command.send("setValues"_s);
            auto* timer = new DTimer(&command);
            connect(timer, &QTimer::timeout, &command, [&command] {
                command.commandUpdateResult("value"_s, 1);
                command.commandUpdateResult("value"_s, 2);
            });
            timer->start(1);
            return true;
        };
        auto order = bench.start();
        connect(order.get(), &DOrder::resultUpdated, this, [&order] { order.reset(); });
        QTRY_VERIFY(order == nullptr);
        QTRY_COMPARE(bench.workingCommands(), 0);
    }

    void theCommandOutlivesANestedEventLoopBelowItsOwnCode_data()
    {
        const Rows<bool> row("fromTimer");
        row("a delegate", false);
        row("a timer", true);
    }
    void theCommandOutlivesANestedEventLoopBelowItsOwnCode()
    {
        QFETCH(bool, fromTimer);
        bool aliveAfterwards = false;
        const auto report = [&](ScriptedCommand& command) {
            const QPointer<ScriptedCommand> self(&command);
            command.commandUpdateResult("value"_s, 1);
            aliveAfterwards = !self.isNull();
        };
        Workbench bench(fillListener);
        bench.script->onReply = [&](ScriptedCommand& command, quint64, const QVariantMap&) {
            report(command);
            return true;
        };
        auto order = bench.start();
        connect(order.get(), &DOrder::resultUpdated, this, [&] {
            order.reset();
            QEventLoop loop;
            QTimer::singleShot(0, &loop, &QEventLoop::quit);
            loop.exec();
            if (!fromTimer) {
                deliver();
            }
        });
        if (fromTimer) {
            ScriptedCommand* command = bench.script->latest;
            QTimer::singleShot(0, command, [&report, command] { report(*command); });
            QTRY_VERIFY(order == nullptr);
        } else {
            bench.answer(c_reply);
        }
        QVERIFY(aliveAfterwards);
        QTRY_COMPARE(bench.workingCommands(), 0);
    }

    void aCommandWhoseOrderIsGoneCanDoNothingMore()
    {
        QVector<bool> stored;
        quint64 sent = 1;
        QString link = "line0"_s;
        bool valid = true;
        Workbench bench(fillListener);
        bench.script->onReply = [&](ScriptedCommand& command, quint64 id, const QVariantMap&) {
            stored.append(command.commandUpdateResult("value"_s, 1));
            stored.append(command.commandUpdateResult("value"_s, 2));
            sent = command.send("getValue"_s);
            link = command.getLinkedChannel("LAMP"_s);
            valid = command.isValid() || command.getOrderId() != 0;
            command.stopTheInstruction(id);
            command.commandSetReply({{"value"_s, 3}});
            return true;
        };
        auto order = bench.start();
        connect(order.get(), &DOrder::resultUpdated, this, [&order] { order.reset(); });
        bench.answer(c_reply);
        QCOMPARE(stored, (QVector<bool>{true, false}));
        QCOMPARE(sent, quint64{0});
        QCOMPARE(link, QString());
        QVERIFY(!valid);
        QCOMPARE(bench.device->requests.size(), 1);
    }

    void repliesGoOnInANestedEventLoop()
    {
        Workbench bench(fillListener);
        const auto order = bench.order();
        QVariantList seen;
        connect(order.get(), &DOrder::eventReceived, this, [&](const QVariantMap& event) {
            seen.append(event.value("value"_s));
            if (seen.size() == 1) {
                deliver();
                QCOMPARE(seen.size(), 3);
            }
        });
        order->start();
        for (const int level : {1, 2, 3}) {
            bench.device->reply(bench.device->lastId(), {{"value"_s, level}});
        }
        deliver();
        QCOMPARE(seen, (QVariantList{1, 2, 3}));
        order->stop();
        QVERIFY(order->isSuccessful());
    }

    void closingTheToolEndsItsOrdersAsTheyWereMade()
    {
        Workbench bench(fillListener);
        QVector<quint64> made;
        QVector<quint64> ended;
        std::vector<std::unique_ptr<DOrder>> orders;
        for (int i = 0; i < 20; ++i) {
            orders.push_back(bench.start());
            DOrder* order = orders.back().get();
            made.append(order->id());
            connect(order, &DOrder::finished, this, [&ended, order] { ended.append(order->id()); });
        }
        const auto waiting = bench.order();
        bench.tool.reset();
        QCOMPARE(ended, made);
        QCOMPARE(orders.back()->failure().text.english(), "the tool was closed"_s);
        QVERIFY(orders.back()->tool() == nullptr);
        QCOMPARE(bench.script->alive, 0);
        QCOMPARE(bench.device->pendingRequests(), 0);
        waiting->start();
        QCOMPARE(waiting->failure().text.english(), "the tool was closed"_s);
    }

    void ordersMayBeDestroyedWhereTheClosingOfTheirToolIsHeard()
    {
        Workbench bench(fillListener);
        auto first = bench.start();
        auto second = bench.start();
        const auto destroyBoth = [&] {
            first.reset();
            second.reset();
        };
        connect(first.get(), &DOrder::finished, this, destroyBoth);
        connect(second.get(), &DOrder::finished, this, destroyBoth);
        bench.tool.reset();
        QVERIFY(first == nullptr);
        QVERIFY(second == nullptr);
        QCOMPARE(bench.script->alive, 0);
    }

    void anOrderStartedWhereTheClosingOfItsToolIsHeardFails()
    {
        Workbench bench(fillListener);
        const auto first = bench.start();
        const auto second = bench.order();
        connect(first.get(), &DOrder::finished, second.get(), &DOrder::start);
        bench.tool.reset();
        QCOMPARE(second->failure().text.english(), "the tool was closed"_s);
        QCOMPARE(bench.device->requests.size(), 1);
    }

    void anOrderMayBeStoppedWhereItsCommandFinishesItselfFromATimer()
    {
        Workbench bench(fillListener);
        const auto order = bench.start();
        ScriptedCommand* command = bench.script->latest;
        QTimer::singleShot(0, command, [command] {
            bool ok = true;
            command->commandFinish(ok);
        });
        m_onSignal = [&order] { order->stop(); };
        connect(command, SIGNAL(sigCommandFinished(bool)), this, SLOT(onSignal()));
        QTRY_COMPARE(bench.ended.size(), 1);
        QTRY_COMPARE(bench.workingCommands(), 0);
        QCOMPARE(bench.script->finishes, 1);
    }

public Q_SLOTS:
    void onSignal() { m_onSignal(); }

private:
    std::function<void()> m_onSignal;
};

QTEST_GUILESS_MAIN(TestOrderLifetime)
#include "test_order_lifetime.moc"
