import QtQuick 2.15
import "../../gui/widgets"

// The gap between two panes; it is dragged to share the room anew, and its middle folds a pane away.
Rectangle {
    id: root

    property bool upright: true
    // True when a click on its middle folds a pane.
    property bool foldable: false
    property bool folded: false
    // What it folds, for people.
    property string text: ""

    // The pointer drags the gap by this distance, in the direction across it.
    signal dragged(real distance)
    signal foldWanted()

    implicitWidth: 8
    implicitHeight: 8
    color: mouse.pressed || mouse.containsMouse ? Style.accent : Style.background

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
