import QtQuick 2.15
import QtTest 1.15
import "../../applications/AppVantor/gui/widgets"

Item {
    id: scene

    width: 400
    height: 200

    UiCheckBox {
        id: attached
        checked: source.value
    }

    UiCheckBox {
        id: detached
        x: 50
        checked: source.value
        detachChangingOnClick: true
    }

    QtObject {
        id: source
        property bool value: false
    }

    UiLedIndicator {
        id: lamp
        x: 100
        width: 40
        height: 40
    }

    UiGlyph {
        id: glyph
        x: 150
        name: "icon-analoginput"
    }

    UiLabel {
        id: label
        x: 200
        width: 60
        text: "a text that is much longer than its place"
    }

    TestCase {
        name: "Widgets"
        when: windowShown

        SignalSpy {
            id: attachedClicks
            target: attached
            signalName: "clicked"
        }

        SignalSpy {
            id: detachedClicks
            target: detached
            signalName: "clicked"
        }

        function init() {
            source.value = false
            attachedClicks.clear()
            detachedClicks.clear()
        }

        // The click takes the box from its binding for good.
        function test_aClickChecksTheBoxItself() {
            mouseClick(attached)
            compare(attachedClicks.count, 1)
            compare(attached.checked, true)
            keyClick(Qt.Key_Space)
            compare(attached.checked, false)
        }

        function test_aClickOnADetachedBoxOnlyTells() {
            mouseClick(detached)
            compare(detachedClicks.count, 1)
            compare(detached.checked, false)
            source.value = true
            compare(detached.checked, true)
            mouseClick(detached)
            compare(detached.checked, true)
            source.value = false
            compare(detached.checked, false)
        }

        function test_aKeyThatIsHeldClicksOnce() {
            detached.forceActiveFocus()
            keyPress(Qt.Key_Space)
            keyRelease(Qt.Key_Space)
            compare(detachedClicks.count, 1)
        }

        function test_aLampIsLitByAnyColourButTheInactiveOne() {
            lamp.statusColor = Style.toolStatusInactive
            compare(lamp.lit, false)
            lamp.statusColor = Style.toolStatusIn
            compare(lamp.lit, true)
        }

        function test_aTextThatIsCutShowsWholeUnderThePointer() {
            compare(label.truncated, true)
            compare(label.elide, Text.ElideMiddle) // the ends of names differ
            mouseMove(label, 10, 10)
            tryVerify(() => findTip(label) !== null)
            compare(findTip(label).text, label.text)
            mouseMove(scene, 300, 150)
            tryVerify(() => findTip(label) === null)
        }

        function findTip(item) {
            for (let number = 0; number < item.children.length; ++number) {
                const child = item.children[number]
                if (child.sourceComponent && child.item) {
                    return child.item
                }
            }
            return null
        }

        function luminance(colour) {
            const part = value => value <= 0.03928 ? value / 12.92 : Math.pow((value + 0.055) / 1.055, 2.4)
            return 0.2126 * part(colour.r) + 0.7152 * part(colour.g) + 0.0722 * part(colour.b)
        }

        function contrast(one, other) {
            const first = luminance(one)
            const second = luminance(other)
            return (Math.max(first, second) + 0.05) / (Math.min(first, second) + 0.05)
        }

        function test_textsCanBeReadInBothThemes_data() {
            const surfaces = ["background", "surface", "surfaceRaised"]
            const rows = [{tag: "on accent", dark: false, text: "accentText", surface: "accent", least: 4.5},
                          {tag: "on accent, dark", dark: true, text: "accentText", surface: "accent", least: 4.5}]
            for (const dark of [false, true]) {
                for (const surface of surfaces) {
                    for (const text of ["text", "textSecondary", "error"]) {
                        rows.push({tag: `${text} on ${surface}, dark ${dark}`, dark: dark, text: text,
                                   surface: surface, least: 4.5})
                    }
                    for (const part of ["controlBorder", "accent"]) {
                        rows.push({tag: `${part} on ${surface}, dark ${dark}`, dark: dark, text: part,
                                   surface: surface, least: 3})
                    }
                }
            }
            return rows
        }

        function test_textsCanBeReadInBothThemes(row) {
            Style.dark = row.dark
            const ratio = contrast(Style[row.text], Style[row.surface])
            verify(ratio >= row.least, `contrast ${ratio.toFixed(2)}`)
            Style.dark = false
        }
    }
}
