import QtQuick 2.15
import QtQuick.Window 2.15
import "../../gui/widgets"

// The times above the courses, and whether these are held.
Item {
    id: root

    property var view
    property var clock
    property bool held: false
    property real inset: 0
    // Where the courses are.
    property real coursesX: 0
    property real coursesWidth: 0

    UiLabel {
        objectName: "heldMark"
        x: root.inset
        width: ruler.x - x - Style.defSpacing
        height: parent.height
        visible: root.held
        text: root.clock.running ? "\u25c0 " + qsTrId("board_past") : "\u2016 " + qsTrId("board_held")
        color: Style.accent
        font.bold: true
        font.pixelSize: Style.smallTextSize

        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.description: qsTrId("board_resume_hint")
        Accessible.onPressAction: root.view.goLive()

        MouseArea {
            anchors.fill: parent
            cursorShape: Qt.PointingHandCursor
            onClicked: root.view.goLive()
        }
    }

    Item {
        id: ruler
        x: root.coursesX
        width: root.coursesWidth
        height: parent.height

        Binding {
            target: root.view
            property: "width"
            value: ruler.width
        }

        Binding {
            target: root.view
            property: "pixelRatio"
            value: Screen.devicePixelRatio
        }

        Repeater {
            model: root.view.marks

            UiLabel {
                objectName: "axisMark"
                x: ruler.width * modelData.share - width / 2
                height: ruler.height
                visible: root.view.pointer < 0
                text: modelData.text
                font.pixelSize: Style.smallTextSize
                color: Style.textSecondary
            }
        }

        UiLabel {
            objectName: "pointedTime"
            x: Math.max(0, Math.min(ruler.width - width, ruler.width * root.view.pointer - width / 2))
            height: ruler.height
            visible: root.view.pointer >= 0
            text: root.view.pointedText
            font.pixelSize: Style.smallTextSize
            font.bold: true
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        x: root.inset
        width: parent.width - 2 * x
        height: 1
        color: Style.separator
    }
}
