import QtQuick 2.15
import "../../gui/widgets"

// Why the lines cannot be seen, while they cannot.
Rectangle {
    id: root

    property var lines
    property real inset: 0

    implicitHeight: visible ? noticeText.implicitHeight + 2 * Style.defSpacing : 0
    visible: lines.state !== "Connected"
    color: Style.surfaceRaised

    UiLabel {
        id: noticeText
        x: root.inset
        width: parent.width - 2 * root.inset
        anchors.verticalCenter: parent.verticalCenter
        text: root.lines.state === "Connecting" ? qsTrId("board_connecting")
              : (root.lines.state === "Unreachable" ? qsTrId("board_not_connected_because").arg(root.lines.problem)
                                                    : qsTrId("board_not_connected"))
        wrapMode: TextEdit.Wrap
        elide: Qt.ElideNone
        color: root.lines.state === "Unreachable" ? Style.error : Style.text
    }
}
