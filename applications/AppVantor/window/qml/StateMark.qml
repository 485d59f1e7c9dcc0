import QtQuick 2.15
import "../../gui/widgets"

// Why the level of a line is not shown: each reason has a shape and a sign of its own.
Item {
    id: root

    // "waiting", "old", "failed" or "unknown".
    property string status: "unknown"

    implicitWidth: 20
    implicitHeight: 20

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTrId("board_" + status)

    Rectangle {
        anchors.fill: parent
        anchors.margins: root.status === "failed" ? 2 : 0
        radius: root.status === "waiting" ? width / 2 : (root.status === "failed" ? 0 : Style.radius)
        rotation: root.status === "failed" ? 45 : 0
        antialiasing: true
        color: "transparent"
        border.color: root.status === "failed" ? Style.error : Style.controlBorder
        border.width: root.status === "failed" ? 2 : 1
    }

    Rectangle {
        anchors.centerIn: parent
        width: parent.width * 1.2
        height: 1
        rotation: -45
        antialiasing: true
        visible: root.status === "old"
        color: Style.controlBorder
    }

    UiLabel {
        anchors.centerIn: parent
        visible: root.status !== "old"
        text: root.status === "waiting" ? "\u2026" : (root.status === "failed" ? "!" : "?")
        font.bold: root.status === "failed"
        color: root.status === "failed" ? Style.error : Style.textSecondary
    }
}
