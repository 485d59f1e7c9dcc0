import QtQuick 2.15
import "../../gui/widgets"

// The cursors, and what the trigger has found, over the courses.
Item {
    id: root

    property var view
    property var trigger
    // Where the courses begin, below the times of the axis.
    property real coursesY: 0

    Repeater {
        model: root.view.cursors

        Item {
            objectName: "cursor" + modelData.number
            x: root.width * modelData.share
            height: root.height
            visible: modelData.share >= 0 && modelData.share <= 1

            Rectangle {
                id: numberLabel
                x: -8
                anchors.bottom: parent.bottom
                width: 16
                height: 16
                radius: Style.radius
                color: Style.text

                UiLabel {
                    anchors.centerIn: parent
                    text: modelData.number
                    color: Style.surface
                    font.bold: true
                    font.pixelSize: Style.smallTextSize
                }
            }

            Rectangle {
                y: root.coursesY
                width: 1
                height: numberLabel.y - y
                color: Style.text
            }
        }
    }

    // Where the trigger has found what it waits for. They move all the time, and stay the same items.
    Repeater {
        id: triggerMarks

        readonly property var shares: root.trigger.marks
        property int most: 0

        model: most
        onSharesChanged: most = Math.max(most, shares.length)

        Item {
            objectName: "triggerMark"
            x: visible ? root.width * triggerMarks.shares[index] : 0
            height: root.height
            visible: index < triggerMarks.shares.length

            // Below the times of the axis, which it would cover, and above the course of the first line.
            UiLabel {
                x: -width / 2
                y: root.coursesY
                text: "\u25bc"
                color: Style.accent
                font.pixelSize: Style.smallestTextSize
            }

            Rectangle {
                y: root.coursesY
                width: 1
                height: parent.height - y
                color: Style.accent
            }
        }
    }
}
