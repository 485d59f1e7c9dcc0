#include "panel_fixture.h"

#include <QQmlProperty>

/// The page as it stands on the screen, in whatever host.
class TestMaintenancePage : public QuietTest
{
    Q_OBJECT

    static inline const QString c_root = "maintenance_panel_tool_gpio"_s;
    static inline const QString c_columns = c_root + ".idColumn.idColumnsRow"_s;
    static inline const QString c_inputs = c_columns + ".idInputsColumn"_s;
    static inline const QString c_outputs = c_columns + ".idOutputsColumn"_s;

    static inline const QString c_checkBox = ".idIndicator.idDigitalOutput"_s;
    static inline const QString c_led = ".idIndicator.idDigitalInput"_s;
    static inline const QString c_glyph = ".idIndicator.idAnalogInput"_s;
    static inline const QString c_value = ".idValueRectangle"_s;

    /// Stores a value in the channel of a row as the backend does with a reply.
    static void setChannelValue(PanelFixture& fixture, int row, const QVariant& value)
    {
        fixture.backend()->applyTreatmentReply(row, "getValue"_s, {{"value"_s, value}});
    }

protected:
    void setUp() override
    {
        showChannels({
            channelEntry("BI"_s, "digitalInput"_s, "out"_s, "dout"_s),
            channelEntry("BO"_s, "digitalOutput"_s, "in"_s, "din"_s),
            channelEntry("AI"_s, "analogInput"_s, "out"_s, "aout"_s),
            channelEntry("AO"_s, "analogOutput"_s, "in"_s, "ain"_s),
            channelEntry("UN"_s, "no such type"_s, "in"_s, "din"_s),
            channelEntry("HIDDEN"_s, "digitalInput"_s, "out"_s, "dout"_s, "private"_s),
        });
    }

private Q_SLOTS:
    void thePageIsTheOneThatTheLibraryCarries()
    {
        QCOMPARE(m_fixture->page()->objectName(), c_root);
        QCOMPARE(m_fixture->page()->property("name").toString(), "Tool under test"_s);
        QCOMPARE(m_fixture->backend()->objectId(), "{4b7a2f10-0000-4000-8000-000000000001}"_s);
        QVERIFY(m_fixture->page()->property("connected").toBool());
    }

    void theRepeatersHaveTheirNames()
    {
        for (const QString& name : {c_inputs + ".idInputsRepeater"_s, c_outputs + ".idOutputsRepeater"_s}) {
            QVERIFY2(itemNamed(m_fixture->page(), name) != nullptr, qPrintable(name));
        }
    }

    void textsOfARowShrinkToFitInItsMiddle_data()
    {
        const Rows<QString> row("name");
        for (const char* text :
             {"idInformation.idChannelId", "idInformation.idChannelName", "idValueRectangle.idValue"}) {
            row(text, "idChannelRow."_s + QLatin1String(text));
        }
    }
    void textsOfARowShrinkToFitInItsMiddle()
    {
        constexpr int fit = 3; // Text.Fit
        QFETCH(QString, name);
        const QQuickItem* text = itemNamed(m_fixture->page(), name);
        QCOMPARE(text->property("verticalAlignment").toInt(), static_cast<int>(Qt::AlignVCenter));
        QCOMPARE(text->property("fontSizeMode").toInt(), fit);
    }

    void onlyTheBenchCutsTextsOfARow_data() { textsOfARowShrinkToFitInItsMiddle_data(); }
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
        const QString id = "<b>K1</b> &amp; K2"_s;
        showChannels({channelEntry(id, "analogOutput"_s, "in"_s, "ain"_s)});
        setChannelValue(*m_fixture, 0, id);
        const QVector<QPair<QString, QString>> shown = {
            {".idInformation.idChannelId"_s, id},
            {".idInformation.idChannelName"_s, "Name of "_s + id},
            {".idValueRectangle.idValue"_s, id},
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
        QCOMPARE(m_fixture->part("AO"_s, c_glyph)->property("name").toString(), "icon-analoginput"_s);
    }

    void theTypeDecidesTheColumnAndWhatIsVisible_data()
    {
        const Rows<QString, QString, QStringList> row("channel", "column", "visible");
        row("binary input", "BI", c_inputs, {c_checkBox});
        row("analogue input", "AI", c_inputs, {});
        row("binary output", "BO", c_outputs, {c_led});
        row("analogue output", "AO", c_outputs, {c_glyph, c_value});
    }
    void theTypeDecidesTheColumnAndWhatIsVisible()
    {
        const auto [channel, column, visible] = Rows<QString, QString, QStringList>::values();
        QCOMPARE(m_fixture->row(channel)->parentItem()->parentItem()->objectName(), column);
        for (const QString& part : {c_checkBox, c_led, c_glyph, c_value}) {
            QVERIFY2(m_fixture->part(channel, part)->isVisible() == visible.contains(part), qPrintable(part));
        }
    }

    void noOtherChannelIsShown()
    {
        QCOMPARE(itemsNamed(m_fixture->page(), "idChannelRow"_s).size(), 4);
        QVERIFY(m_fixture->row("UN"_s) == nullptr);
        QVERIFY(m_fixture->row("HIDDEN"_s) == nullptr);
    }

    void withoutPublicChannelsTheTitlesStandAlone()
    {
        showChannels({channelEntry("SECRET"_s, "digitalInput"_s, "out"_s, "dout"_s, "private"_s)});
        for (const QString& column : {c_inputs, c_outputs}) {
            int visible = 0;
            for (const QQuickItem* child : itemNamed(m_fixture->page(), column)->childItems()) {
                visible += child->width() > 0 && child->height() > 0 ? 1 : 0;
            }
            QCOMPARE(visible, 1);
        }
        QCOMPARE(itemsNamed(m_fixture->page(), "idChannelRow"_s).size(), 0);
    }

    void theColumnsShareTheWidth()
    {
        QQuickItem* page = m_fixture->page();
        QQuickItem* column = itemNamed(page, c_root + ".idColumn"_s);
        QQuickItem* row = itemNamed(page, c_columns);
        const qreal spacing = m_fixture->style("baseWidth").toReal() * 2;
        QCOMPARE(column->width(), page->width());
        QCOMPARE(column->property("spacing"), page->property("spacing"));
        QCOMPARE(row->width(), column->width());
        QCOMPARE(row->property("spacing").toReal(), spacing);
        for (const QString& name : {c_inputs, c_outputs}) {
            QQuickItem* channels = itemNamed(page, name);
            QCOMPARE(channels->width(), (row->width() - spacing) / 2);
            QCOMPARE(channels->property("spacing").toReal(), m_fixture->style("defSpacing").toReal());
        }
    }

    void theRowsKeepTheirProportions_data()
    {
        const Rows<int> row("pageWidth");
        row("narrow", 480);
        row("usual", 720);
        row("wide", 1600);
    }
    void theRowsKeepTheirProportions()
    {
        QFETCH(int, pageWidth);
        m_fixture->panel().setWidth(pageWidth);
        QQuickItem* row = m_fixture->row("AO"_s);
        QQuickItem* column = itemNamed(m_fixture->page(), c_outputs);
        const auto part = [this](const QString& name) { return m_fixture->part("AO"_s, name); };
        const qreal baseHeight = m_fixture->style("baseHeight").toReal();
        const qreal spacing = m_fixture->style("baseWidth").toReal();
        QTRY_COMPARE(row->width(), column->width() - m_fixture->style("defSpacing").toReal());
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
        QCOMPARE(information->property("spacing").toReal(), 0.0);
        QQuickItem* frame = part(c_value);
        QCOMPARE(frame->height(), row->height());
        QCOMPARE(frame->width(), row->width() - indicator->width() - information->width() - 2 * spacing);
        QCOMPARE(QQmlProperty::read(frame, "border.width"_s).toReal(), baseHeight / 6);
        QCOMPARE(QQmlProperty::read(frame, "border.color"_s).value<QColor>(),
                 m_fixture->style("widgetDisabledBorderColor").value<QColor>());
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

    void theTitlesAreTranslated()
    {
        for (const auto& [column, title] :
             {qMakePair(c_inputs, "Inputs"_s), qMakePair(c_outputs, "Outputs"_s)}) {
            QQuickItem* label = itemNamed(m_fixture->page(), column)->childItems().constFirst();
            QCOMPARE(label->property("text").toString(), title);
            QVERIFY(label->property("font").value<QFont>().bold());
            QVERIFY(label->property("isBigger").toBool());
        }
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
        const Rows<QVariant, bool> row("value", "on");
        row("the number 1", QVariant(1), true);
        row("the real number 1", QVariant(1.0), true);
        row("the number 0", QVariant(0), false);
        row("the number 2", QVariant(2), false);
        row("true", QVariant(true), false);
        row("the text 1", QVariant("1"_s), false);
        row("no value", QVariant(), false);
    }
    void onlyTheNumberOneIsOn()
    {
        const auto [value, on] = Rows<QVariant, bool>::values();
        // A value between makes sure that each one is really a change: the channel takes equal values for
        // one.
        for (const int row : {0, 1}) {
            setChannelValue(*m_fixture, row, on ? QVariant(0) : QVariant(1));
            setChannelValue(*m_fixture, row, QVariant(5));
            setChannelValue(*m_fixture, row, value);
        }
        QCOMPARE(m_fixture->part("BI"_s, c_checkBox)->property("checked").toBool(), on);
        const QColor color = m_fixture->part("BO"_s, c_led)->property("statusColor").value<QColor>();
        QCOMPARE(color, m_fixture->style(on ? "toolStatusIn" : "toolStatusInactive").value<QColor>());
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
        QCOMPARE(led->property("statusColor").value<QColor>(),
                 m_fixture->style("toolStatusInactive").value<QColor>());
        QVERIFY(QMetaObject::invokeMethod(m_fixture->page(), "updateData"));
        QTRY_COMPARE(led->property("statusColor").value<QColor>(),
                     m_fixture->style("toolStatusIn").value<QColor>());
    }
};

QTEST_MAIN(TestMaintenancePage)
#include "test_maintenance_page.moc"
