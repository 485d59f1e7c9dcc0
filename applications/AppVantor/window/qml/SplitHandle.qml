import QtQuick 2.15
import "../../gui/widgets"

// The gap between two panes; it is dragged, or moved by the arrow keys, to share the room anew, and its middle or
// Enter folds a pane away.
Rectangle {
    id: root

    property bool upright: true
    // True when a click on its middle folds a pane.
    property bool foldable: false
    property bool folded: false
    // What it folds, for people.
    property string text: ""
    // Where it is, for those who do not see it.
    property string name: ""
    readonly property real value: upright ? x : y
    readonly property real minimumValue: 0
    readonly property real maximumValue: parent ? (upright ? parent.width - width : parent.height - height) : 0
    readonly property real stepSize: 2 * Style.baseWidth

    // The pointer drags the gap by this distance, in the direction across it.
    signal dragged(real distance)
    signal foldWanted()

    // Moves it by so many steps; true where it can be moved.
    function step(count) {
        if (!folded) {
            dragged(count * stepSize)
        }
        return !folded
    }

    function useKey(key) {
        switch (key) {
        case upright ? Qt.Key_Left : Qt.Key_Up:
            return step(-1)
        case upright ? Qt.Key_Right : Qt.Key_Down:
            return step(1)
        case Qt.Key_Return:
        case Qt.Key_Enter:
        case Qt.Key_Space:
            if (foldable) {
                foldWanted()
            }
            return foldable
        }
        return false
    }

    implicitWidth: 8
    implicitHeight: 8
    activeFocusOnTab: true
    color: mouse.pressed || mouse.containsMouse || activeFocus ? Style.accent : Style.background

    Keys.onPressed: event.accepted = event.modifiers === Qt.NoModifier && useKey(event.key)

    Accessible.role: Accessible.Slider
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)

    UiFocusRing {
        z: 1
        shown: root.activeFocus
    }

    MouseArea {
        id: mouse

        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        enabled: !root.folded
        cursorShape: root.upright ? Qt.SplitHCursor : Qt.SplitVCursor
        onPressed: grip = root.upright ? mouse.x : mouse.y
        onPositionChanged: {
            if (pressed) {
                root.dragged((root.upright ? mouse.x : mouse.y) - grip)
            }
        }
    }

    Rectangle {
        objectName: root.objectName + "Fold"
        anchors.centerIn: parent
        width: root.upright ? 8 : 48
        height: root.upright ? 48 : 8
        visible: root.foldable
        color: foldMouse.containsMouse ? Style.accent : Style.surfacePressed

        Accessible.role: Accessible.Button
        Accessible.name: root.text
        Accessible.onPressAction: root.foldWanted()

        // An arrow that points to where the pane goes.
        Rectangle {
            anchors.centerIn: parent
            anchors.horizontalCenterOffset: root.upright ? (root.folded ? -2 : 2) : 0
            anchors.verticalCenterOffset: root.upright ? 0 : (root.folded ? 2 : -2)
            width: 5
            height: 5
            rotation: root.upright ? (root.folded ? 135 : -45) : (root.folded ? 45 : 225)
            color: "transparent"
            antialiasing: true

            Rectangle {
                width: 5
                height: 1.5
                color: foldMouse.containsMouse ? Style.accentText : Style.text
                antialiasing: true
            }

            Rectangle {
                width: 1.5
                height: 5
                color: foldMouse.containsMouse ? Style.accentText : Style.text
                antialiasing: true
            }
        }

        MouseArea {
            id: foldMouse
            anchors.fill: parent
            hoverEnabled: true
            onClicked: root.foldWanted()
        }

        Loader {
            active: foldMouse.containsMouse
            sourceComponent: UiToolTip {
                parent: root
                text: root.text
                visible: true
            }
        }
    }
}
