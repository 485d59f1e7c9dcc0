import QtQuick 2.15

// A check box. With detachChangingOnClick a click only tells, and leaves checked and its binding alone: whoever
// owns the state changes it.
Item {
    id: root

    property bool checked: false
    property bool detachChangingOnClick: false

    signal clicked()

    function click() {
        if (!detachChangingOnClick) {
            checked = !checked
        }
        clicked()
    }

    // A box has no text: it goes by those that stand nearest to it.
    function nearestTexts() {
        for (let place = root; visible && place; place = place.parent) {
            const texts = textsOf(place)
            if (texts.length > 0) {
                return texts.join(" ").trim()
            }
        }
        return ""
    }

    function textsOf(item) {
        if (!item.visible) {
            return []
        }
        let texts = item instanceof Text ? [item.text] : []
        for (let number = 0; number < item.children.length; ++number) {
            texts = texts.concat(textsOf(item.children[number]))
        }
        return texts
    }

    implicitWidth: Style.controlHeight
    implicitHeight: Style.controlHeight
    activeFocusOnTab: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: nearestTexts()
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.focusable: true
    Accessible.onPressAction: click()
    Accessible.onToggleAction: click()

    Keys.onPressed: {
        if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            event.accepted = true
            if (!event.isAutoRepeat) {
                root.click()
            }
        }
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        onClicked: {
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.click()
        }
    }

    Loader {
        anchors.centerIn: parent
        active: root.visible
        sourceComponent: Rectangle {
            id: box

            width: Math.min(root.width, root.height) * 0.6
            height: width
            radius: Style.radius
            color: root.checked ? (mouse.pressed ? Qt.darker(Style.accent, 1.2) : Style.accent)
                                : (mouse.pressed ? Style.surfacePressed : Style.surface)
            border.color: root.checked || mouse.containsMouse ? Style.accent : Style.controlBorder
            border.width: 2

            Item {
                anchors.centerIn: parent
                anchors.verticalCenterOffset: -parent.height * 0.06
                width: parent.width * 0.34
                height: parent.height * 0.62
                rotation: 45
                visible: root.checked

                Rectangle {
                    anchors.right: parent.right
                    width: box.width * 0.13
                    height: parent.height
                    radius: width / 2
                    color: Style.accentText
                    antialiasing: true
                }

                Rectangle {
                    anchors.bottom: parent.bottom
                    width: parent.width
                    height: box.width * 0.13
                    radius: height / 2
                    color: Style.accentText
                    antialiasing: true
                }
            }

            UiFocusRing {
                shown: root.activeFocus
            }
        }
    }
}
