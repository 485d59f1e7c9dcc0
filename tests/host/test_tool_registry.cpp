#include "rows.h"
#include "workbench.h"

#include <plugin_management/d_tool_registry.h>

class TestToolRegistry : public QObject
{
    Q_OBJECT

    static std::unique_ptr<DTool> makeTool(const QString& name, const QString& id)
    {
        return std::make_unique<DTool>(QVariantMap{{"name"_s, name}, {"id"_s, id}}, ScriptedPlugin(),
                                       nullptr);
    }

    static DToolRegistry& registry() { return DToolRegistry::instance(); }

private Q_SLOTS:
    void toolsAreListedWhileTheyLive()
    {
        QVERIFY(registry().tools().isEmpty());
        const auto first = makeTool("A"_s, "1"_s);
        auto second = makeTool("B"_s, "2"_s);
        const auto third = makeTool("C"_s, "3"_s);
        QCOMPARE(registry().tools(), (QVector<DTool*>{first.get(), second.get(), third.get()}));
        second.reset();
        QCOMPARE(registry().tools(), (QVector<DTool*>{first.get(), third.get()}));
    }

    void comingAndGoingAreAnnounced()
    {
        QVector<DTool*> added;
        QVector<DTool*> removed;
        bool stillListed = true;
        QObject context;
        connect(&registry(), &DToolRegistry::toolAdded, &context, [&](DTool* tool) {
            added.append(tool);
            QCOMPARE(tool->objectName(), "A"_s);
            QVERIFY(registry().tools().contains(tool));
        });
        connect(&registry(), &DToolRegistry::toolRemoved, &context, [&](DTool* tool) {
            removed.append(tool);
            stillListed = registry().tools().contains(tool);
            QCOMPARE(tool->id(), "1"_s);
        });
        auto tool = makeTool("A"_s, "1"_s);
        DTool* const address = tool.get();
        QCOMPARE(added, QVector<DTool*>{address});
        QVERIFY(removed.isEmpty());
        tool.reset();
        QCOMPARE(removed, QVector<DTool*>{address});
        QVERIFY(!stillListed);
    }

    void aToolIsFoundByNameAndIdentifier_data()
    {
        const Rows<QString, QString, int> row("name", "id", "found");
        row("both", "A", "2", 1);
        row("the name alone finds the first", "A", QString(), 0);
        row("the identifier alone", QString(), "3", 2);
        row("neither", QString(), QString(), -1);
        row("another name", "C", "1", -1);
        row("another identifier", "A", "3", -1);
        row("another case", "a", QString(), -1);
    }
    void aToolIsFoundByNameAndIdentifier()
    {
        const auto [name, id, found] = Rows<QString, QString, int>::values();
        const auto first = makeTool("A"_s, "1"_s);
        const auto second = makeTool("A"_s, "2"_s);
        const auto third = makeTool("B"_s, "3"_s);
        const QVector<DTool*> tools{first.get(), second.get(), third.get()};
        QCOMPARE(registry().find(name, id), found < 0 ? nullptr : tools.at(found));
        QCOMPARE(registry().find("A"_s, QString(), QVariantMap()), nullptr);
        QCOMPARE(registry().find(name, QString(), second->toolConfiguration),
                 name == "A"_s ? tools.at(1) : nullptr);
    }
};

QTEST_GUILESS_MAIN(TestToolRegistry)
#include "test_tool_registry.moc"
