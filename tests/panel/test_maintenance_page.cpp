#include "message_log.h"
#include "panel_fixture.h"

#include <QQmlExpression>
#include <QQmlProperty>
#include <QtTest>

namespace {

const QString c_root = "maintenance_panel_tool_gpio"_s;
const QString c_columns = c_root + ".idColumn.idColumnsRow"_s;
const QString c_inputs = c_columns + ".idInputsColumn"_s;
const QString c_outputs = c_columns + ".idOutputsColumn"_s;

const QString c_checkBox = ".idIndicator.idDigitalOutput"_s;
const QString c_led = ".idIndicator.idDigitalInput"_s;
const QString c_glyph = ".idIndicator.idAnalogInput"_s;
const QString c_value = ".idValueRectangle"_s;

QVariantMap toolOfAllTypes()
{
    return toolEntry({
        channelEntry("BI"_s, "digitalInput"_s, "out"_s, "dout"_s),
        channelEntry("BO"_s, "digitalOutput"_s, "in"_s, "din"_s),
        channelEntry("AI"_s, "analogInput"_s, "out"_s, "aout"_s),
        channelEntry("AO"_s, "analogOutput"_s, "in"_s, "ain"_s),
        channelEntry("UN"_s, "no such type"_s, "in"_s, "din"_s),
        channelEntry("HIDDEN"_s, "digitalInput"_s, "out"_s, "dout"_s, "private"_s),
    });
}

qreal style(PanelFixture& fixture, const char* member)
{
    QQmlExpression expression(qmlContext(fixture.page()), fixture.page(), "Style."_s + QLatin1String(member));
    return expression.evaluate().toReal();
}

QColor styleColor(PanelFixture& fixture, const char* member)
{
    QQmlExpression expression(qmlContext(fixture.page()), fixture.page(), "Style."_s + QLatin1String(member));
    return expression.evaluate().value<QColor>();
}

/// Stores a value in the channel of a row as the backend does with a reply.
void setChannelValue(PanelFixture& fixture, int row, const QVariant& value)
{
    fixture.backend()->applyTreatmentReply(row, "getValue"_s, {{"value"_s, value}});
}

} // namespace

/// The page as it stands on the screen, in whatever host.
class MaintenancePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.emplace();
        m_fixture = std::make_unique<PanelFixture>(toolOfAllTypes());
        QVERIFY2(m_fixture->page() != nullptr, qPrintable(m_fixture->panel().problem()));
        QVERIFY(m_fixture->settle());
        m_fixture->setLive(false);
        QVERIFY(m_fixture->settle());
    }

    void cleanup()
    {
        m_fixture.reset();
        QCOMPARE(m_log->takeProblems(), QString());
    }

    void thePageIsTheOneThatTheLibraryCarries()
    {
        QCOMPARE(m_fixture->page()->objectName(), c_root);
        QCOMPARE(m_fixture->page()->property("name").toString(), "Tool under test"_s);
        QCOMPARE(m_fixture->backend()->objectId(), "{4b7a2f10-0000-4000-8000-000000000001}"_s);
        QVERIFY(m_fixture->page()->property("connected").toBool());
    }

    void everyElementHasItsName_data()
    {
        QTest::addColumn<QString>("name");
        const QString row = "idChannelRow"_s;
        const QStringList names = {
            c_root + ".idColumn"_s,
            c_columns,
            c_inputs,
            c_outputs,
            c_inputs + ".idInputsRepeater"_s,
            c_outputs + ".idOutputsRepeater"_s,
            row,
            row + ".idIndicator"_s,
            row + c_glyph,
            row + c_led,
            row + c_checkBox,
            row + ".idInformation"_s,
            row + ".idInformation.idChannelId"_s,
            row + ".idInformation.idChannelName"_s,
            row + c_value,
            row + c_value + ".idValue"_s,
        };
        for (const QString& name : names) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    void everyElementHasItsName()
    {
        QFETCH(QString, name);
        QVERIFY(itemNamed(m_fixture->page(), name) != nullptr);
    }

    void textsOfARowStandInItsMiddle_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* text :
             {"idInformation.idChannelId", "idInformation.idChannelName", "idValueRectangle.idValue"}) {
            QTest::newRow(text) << "idChannelRow."_s + QLatin1String(text);
        }
    }

    void textsOfARowStandInItsMiddle()
    {
        QFETCH(QString, name);
        const QQuickItem* text = itemNamed(m_fixture->page(), name);
        QVERIFY(text != nullptr);
        QCOMPARE(text->property("verticalAlignment").toInt(), static_cast<int>(Qt::AlignVCenter));
    }

    void textsOfARowShrinkToFit_data() { textsOfARowStandInItsMiddle_data(); }

    void textsOfARowShrinkToFit()
    {
        constexpr int fit = 3; // Text.Fit
        QFETCH(QString, name);
        QCOMPARE(itemNamed(m_fixture->page(), name)->property("fontSizeMode").toInt(), fit);
    }

    void onlyTheBenchCutsTextsOfARow_data() { textsOfARowStandInItsMiddle_data(); }

    void onlyTheBenchCutsTextsOfARow()
    {
        QFETCH(QString, name);
        QQuickItem* text = itemNamed(m_fixture->page(), name);
        text->setProperty("text", QString(500, QLatin1Char('W')));
        QCOMPARE(text->property("truncated").toBool(), !isBareHost());
        QCOMPARE(text->property("contentWidth").toReal() <= text->width(), !isBareHost());
    }

    void namesAreShownAsTheyAre()
    {
        const QString id = QStringLiteral("<b>K1</b> &amp; K2");
        m_fixture.reset(); // one tool of a name at a time
        m_fixture = std::make_unique<PanelFixture>(toolEntry(
            {channelEntry(id, QStringLiteral("analogOutput"), QStringLiteral("in"), QStringLiteral("ain"))}));
        QVERIFY(m_fixture->settle());
        m_fixture->setLive(false);
        QVERIFY(m_fixture->settle());
        setChannelValue(*m_fixture, 0, id);
        const QVector<QPair<QString, QString>> shown = {
            {QStringLiteral(".idInformation.idChannelId"), id},
            {QStringLiteral(".idInformation.idChannelName"), QStringLiteral("Name of ") + id},
            {QStringLiteral(".idValueRectangle.idValue"), id},
        };
        for (const auto& [name, text] : shown) {
            QQuickItem* item = m_fixture->part(id, name);
            QCOMPARE(item->property("text").toString(), text);
            const qreal width = item->property("contentWidth").toReal();
            item->setProperty("textFormat", Qt::PlainText);
            QCOMPARE(width, item->property("contentWidth").toReal());
        }
    }

    void theValueStandsInTheMiddleOfAnEmptyFrame()
    {
        const QQuickItem* frame = m_fixture->part("AO"_s, c_value);
        const QQuickItem* value = m_fixture->part("AO"_s, c_value + ".idValue"_s);
        QCOMPARE(frame->property("color").value<QColor>().alpha(), 0);
        QCOMPARE(value->property("horizontalAlignment").toInt(), static_cast<int>(Qt::AlignHCenter));
    }

    void idAndNameStandWithoutASpace()
    {
        const QQuickItem* information = m_fixture->part("AO"_s, ".idInformation"_s);
        QCOMPARE(information->property("spacing").toReal(), 0.0);
    }

    void everyRowKnowsItsPlaceInTheList()
    {
        const QStringList channels = {"BI"_s, "BO"_s, "AI"_s, "AO"_s};
        for (int index = 0; index < channels.size(); ++index) {
            QCOMPARE(m_fixture->row(channels.at(index))->property("channelIndex").toInt(), index);
        }
    }

    /// As it is between its making and the moment when it is given its channel.
    void aRowWithoutAChannelShowsNothing()
    {
        const QQuickItem* loader = m_fixture->row("BI"_s)->parentItem();
        auto* component = loader->property("sourceComponent").value<QQmlComponent*>();
        QVERIFY(component != nullptr);
        const std::unique_ptr<QObject> made(component->create(component->creationContext()));
        auto* row = qobject_cast<QQuickItem*>(made.get());
        QVERIFY(row != nullptr);
        QCOMPARE(row->property("channelIndex").toInt(), -1);
        QCOMPARE(row->width(), 0.0);
        QQuickItem place;
        place.setSize(QSizeF(300, 200));
        row->setParentItem(&place);
        QCOMPARE(row->width(), 300.0);
        for (const QString& name : {c_glyph, c_led, c_checkBox, c_value}) {
            QVERIFY2(!itemNamed(row, "idChannelRow"_s + name)->isVisible(), qPrintable(name));
        }
        const QQuickItem* box = itemNamed(row, "idChannelRow"_s + c_checkBox);
        QCOMPARE(box->property("checked"), QVariant(false));
        for (const char* text :
             {"idInformation.idChannelId", "idInformation.idChannelName", "idValueRectangle.idValue"}) {
            const QQuickItem* item = itemNamed(row, "idChannelRow."_s + QLatin1String(text));
            QCOMPARE(item->property("text").toString(), QString());
        }
    }

    void theGlyphIsThatOfAnAnalogueInput()
    {
        const QQuickItem* glyph = itemNamed(m_fixture->page(), "idChannelRow"_s + c_glyph);
        QVERIFY(glyph != nullptr);
        QCOMPARE(glyph->property("name").toString(), "icon-analoginput"_s);
    }

    void eachChannelStandsInItsColumn_data()
    {
        QTest::addColumn<QString>("channel");
        QTest::addColumn<QString>("column");
        QTest::newRow("binary input") << "BI"_s << c_inputs;
        QTest::newRow("analogue input") << "AI"_s << c_inputs;
        QTest::newRow("binary output") << "BO"_s << c_outputs;
        QTest::newRow("analogue output") << "AO"_s << c_outputs;
    }

    void eachChannelStandsInItsColumn()
    {
        QFETCH(QString, channel);
        QFETCH(QString, column);
        QQuickItem* row = m_fixture->row(channel);
        QVERIFY(row != nullptr);
        QCOMPARE(row->parentItem()->parentItem()->objectName(), column);
    }

    void noOtherChannelIsShown()
    {
        QCOMPARE(itemsNamed(m_fixture->page(), "idChannelRow"_s).size(), 4);
        QVERIFY(m_fixture->row("UN"_s) == nullptr);
        QVERIFY(m_fixture->row("HIDDEN"_s) == nullptr);
    }

    void withoutPublicChannelsTheTitlesStandAlone()
    {
        m_fixture.reset(); // one tool of a name at a time
        m_fixture = std::make_unique<PanelFixture>(
            toolEntry({channelEntry("SECRET"_s, "digitalInput"_s, "out"_s, "dout"_s, "private"_s)}));
        QVERIFY(m_fixture->settle());
        for (const QString& column : {c_inputs, c_outputs}) {
            int visible = 0;
            for (const QQuickItem* child : itemNamed(m_fixture->page(), column)->childItems()) {
                visible += child->width() > 0 && child->height() > 0 ? 1 : 0;
            }
            QCOMPARE(visible, 1);
        }
        QCOMPARE(itemsNamed(m_fixture->page(), "idChannelRow"_s).size(), 0);
    }

    void theTypeDecidesWhatIsVisible_data()
    {
        QTest::addColumn<QString>("channel");
        QTest::addColumn<QStringList>("visible");
        QTest::newRow("binary input") << "BI"_s << QStringList{c_checkBox};
        QTest::newRow("analogue input") << "AI"_s << QStringList{};
        QTest::newRow("binary output") << "BO"_s << QStringList{c_led};
        QTest::newRow("analogue output") << "AO"_s << QStringList{c_glyph, c_value};
    }

    void theTypeDecidesWhatIsVisible()
    {
        QFETCH(QString, channel);
        QFETCH(QStringList, visible);
        for (const QString& part : {c_checkBox, c_led, c_glyph, c_value}) {
            QQuickItem* item = m_fixture->part(channel, part);
            QVERIFY2(item != nullptr, qPrintable(part));
            QVERIFY2(item->isVisible() == visible.contains(part), qPrintable(part));
        }
    }

    void theColumnsShareTheWidth()
    {
        QQuickItem* page = m_fixture->page();
        QQuickItem* column = itemNamed(page, c_root + ".idColumn"_s);
        QQuickItem* row = itemNamed(page, c_columns);
        const qreal spacing = style(*m_fixture, "baseWidth") * 2;
        QCOMPARE(column->width(), page->width());
        QCOMPARE(column->property("spacing"), page->property("spacing"));
        QCOMPARE(row->width(), column->width());
        QCOMPARE(row->property("spacing").toReal(), spacing);
        for (const QString& name : {c_inputs, c_outputs}) {
            QQuickItem* channels = itemNamed(page, name);
            QCOMPARE(channels->width(), (row->width() - spacing) / 2);
            QCOMPARE(channels->property("spacing").toReal(), style(*m_fixture, "defSpacing"));
        }
    }

    void theRowsKeepTheirProportions_data()
    {
        QTest::addColumn<int>("pageWidth");
        QTest::newRow("narrow") << 480;
        QTest::newRow("usual") << 720;
        QTest::newRow("wide") << 1600;
    }

    void theRowsKeepTheirProportions()
    {
        QFETCH(int, pageWidth);
        m_fixture->panel().setWidth(pageWidth);
        QQuickItem* row = m_fixture->row("AO"_s);
        QQuickItem* column = itemNamed(m_fixture->page(), c_outputs);
        const auto part = [this](const QString& name) { return m_fixture->part("AO"_s, name); };
        const qreal baseHeight = style(*m_fixture, "baseHeight");
        const qreal spacing = style(*m_fixture, "baseWidth");
        QTRY_COMPARE(row->width(), column->width() - style(*m_fixture, "defSpacing"));
        QTRY_COMPARE(m_fixture->row("BI"_s)->width(), row->width());
        QCOMPARE(row->height(), baseHeight * 5);
        QCOMPARE(row->property("spacing").toReal(), spacing);
        QQuickItem* indicator = part(".idIndicator"_s);
        QCOMPARE(indicator->size(), QSizeF(row->height(), row->height()));
        QQuickItem* information = part(".idInformation"_s);
        QCOMPARE(information->size(), QSizeF(row->width() * 0.6, row->height()));
        for (const char* name : {".idInformation.idChannelId", ".idInformation.idChannelName"}) {
            QCOMPARE(part(QLatin1String(name))->size(), QSizeF(information->width(), row->height() / 2));
        }
        QQuickItem* frame = part(c_value);
        QCOMPARE(frame->height(), row->height());
        QCOMPARE(frame->width(), row->width() - indicator->width() - information->width() - 2 * spacing);
        QCOMPARE(QQmlProperty::read(frame, "border.width"_s).toReal(), baseHeight / 6);
        QCOMPARE(QQmlProperty::read(frame, "border.color"_s).value<QColor>(),
                 styleColor(*m_fixture, "widgetDisabledBorderColor"));
        QVERIFY(frame->clip());
        QQuickItem* value = part(c_value + ".idValue"_s);
        QCOMPARE(value->position(), QPointF(baseHeight / 2, baseHeight / 2));
        QCOMPARE(value->size(), QSizeF(frame->width() - baseHeight, frame->height() - baseHeight));
        QQuickItem* glyph = part(c_glyph);
        QCOMPARE(glyph->position(), QPointF(baseHeight, baseHeight));
        QCOMPARE(glyph->size(), QSizeF(row->height() - 2 * baseHeight, row->height() - 2 * baseHeight));
        for (const QString& name : {c_led, c_checkBox}) {
            QCOMPARE(part(name)->size(), indicator->size());
        }
        // From left to right; places are given when the row is drawn anew.
        QTRY_COMPARE(frame->x(), indicator->width() + information->width() + 2 * spacing);
        QCOMPARE(indicator->x(), 0.0);
        QCOMPARE(information->x(), indicator->width() + spacing);
    }

    void theTitlesAreTranslated_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("title");
        QTest::newRow("inputs") << c_inputs << "Inputs"_s;
        QTest::newRow("outputs") << c_outputs << "Outputs"_s;
    }

    void theTitlesAreTranslated()
    {
        QFETCH(QString, column);
        QFETCH(QString, title);
        QQuickItem* label = itemNamed(m_fixture->page(), column)->childItems().constFirst();
        QCOMPARE(label->property("text").toString(), title);
        QVERIFY(label->property("font").value<QFont>().bold());
        QVERIFY(label->property("isBigger").toBool());
    }

    void theIdStandsBoldAboveTheName()
    {
        QQuickItem* id = m_fixture->part("BI"_s, ".idInformation.idChannelId"_s);
        QQuickItem* name = m_fixture->part("BI"_s, ".idInformation.idChannelName"_s);
        QCOMPARE(id->property("text").toString(), "BI"_s);
        QVERIFY(id->property("font").value<QFont>().bold());
        QCOMPARE(name->property("text").toString(), "Name of BI"_s);
        QVERIFY(!name->property("font").value<QFont>().bold());
        QVERIFY(id->y() < name->y());
    }

    void onlyTheNumberOneIsOn_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("on");
        QTest::newRow("the number 1") << QVariant(1) << true;
        QTest::newRow("the real number 1") << QVariant(1.0) << true;
        QTest::newRow("the number 0") << QVariant(0) << false;
        QTest::newRow("the number 2") << QVariant(2) << false;
        QTest::newRow("true") << QVariant(true) << false;
        QTest::newRow("the text 1") << QVariant("1"_s) << false;
        QTest::newRow("no value") << QVariant() << false;
    }

    void onlyTheNumberOneIsOn()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, on);
        // A value between makes sure that each one is really a change: the channel takes equal values for
        // one.
        for (const int row : {0, 1}) {
            setChannelValue(*m_fixture, row, on ? QVariant(0) : QVariant(1));
            setChannelValue(*m_fixture, row, QVariant(5));
            setChannelValue(*m_fixture, row, value);
        }
        QCOMPARE(m_fixture->part("BI"_s, c_checkBox)->property("checked").toBool(), on);
        const QColor color = m_fixture->part("BO"_s, c_led)->property("statusColor").value<QColor>();
        QCOMPARE(color, styleColor(*m_fixture, on ? "toolStatusIn" : "toolStatusInactive"));
    }

    void anAnalogueOutputShowsItsValueAsText()
    {
        m_fixture->board().setInput(3, 51234);
        m_fixture->panel().refresh();
        QQuickItem* value = m_fixture->part("AO"_s, c_value + ".idValue"_s);
        QTRY_COMPARE(value->property("text").toString(), "51234"_s);
        QVERIFY(!value->property("truncated").toBool());
    }

    void eachRequestForDataReadsTheLines()
    {
        m_fixture->board().setInput(1, 1);
        QQuickItem* led = m_fixture->part("BO"_s, c_led);
        QCOMPARE(led->property("statusColor").value<QColor>(), styleColor(*m_fixture, "toolStatusInactive"));
        QVERIFY(QMetaObject::invokeMethod(m_fixture->page(), "updateData"));
        QTRY_COMPARE(led->property("statusColor").value<QColor>(), styleColor(*m_fixture, "toolStatusIn"));
    }

private:
    std::optional<MessageLog> m_log;
    std::unique_ptr<PanelFixture> m_fixture;
};

QTEST_MAIN(MaintenancePageTest)

#include "literals.h"
#include "test_maintenance_page.moc"
