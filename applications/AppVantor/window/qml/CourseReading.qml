import QtQuick 2.15
import "../../gui/widgets"

// What can be read off the courses: what is under the pointer, and between the cursors. What matters most stands first.
Item {
    id: root

    property var view
    property real inset: 0
    // The line of which the time between the cursors tells.
    property int line: -1
    // The line under the pointer; -1 while there is none.
    property int pointedLine: -1
    readonly property alias cursorsText: cursorsLabel.text
    readonly property string measured: view.pointer >= 0 ? view.measureText(pointedLine, view.pointedUs) : ""

    Rectangle {
        width: parent.width
        height: 1
        color: Style.separator
    }

    UiLabel {
        objectName: "measured"
        x: root.inset
        width: Math.max(0, parent.width - 2 * x
                           - (cursorsLabel.width > 0 ? cursorsLabel.width + Style.defSpacing * 2 : 0))
        height: parent.height
        text: root.measured.length > 0 ? root.measured : qsTrId("courses_hint")
        color: root.measured.length > 0 ? Style.text : Style.textSecondary
        font.pixelSize: Style.smallTextSize
        elide: Text.ElideRight
    }

    UiLabel {
        id: cursorsLabel
        objectName: "cursorsText"
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        width: Math.min(implicitWidth, parent.width - 2 * root.inset)
        height: parent.height
        text: {
            const selected = root.line >= 0 && root.view.cursors.length === 2 ? root.view.selectionText(root.line) : ""
            return selected.length > 0 ? root.view.cursorsText + " \u00b7 " + selected : root.view.cursorsText
        }
        font.bold: true
        font.pixelSize: Style.smallTextSize
        elide: Text.ElideRight
    }
}
