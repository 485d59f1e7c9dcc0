import QtQuick 2.15
import "../../gui/widgets"

// The gap between two panes; it is dragged to share the room anew.
Rectangle {
    id: root

    property bool upright: true

    // The pointer drags the gap by this distance, in the direction across it.
    signal dragged(real distance)

    implicitWidth: 5
    implicitHeight: 5
    color: mouse.pressed || mouse.containsMouse ? Style.accent : Style.background

    MouseArea {
        id: mouse

        property real grip: 0

        anchors.fill: parent
        anchors.margins: -2
        hoverEnabled: true
        cursorShape: root.upright ? Qt.SplitHCursor : Qt.SplitVCursor
        onPressed: grip = root.upright ? mouse.x : mouse.y
        onPositionChanged: {
            if (pressed) {
                root.dragged((root.upright ? mouse.x : mouse.y) - grip)
            }
        }
    }
}
