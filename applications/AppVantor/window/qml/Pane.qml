import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// A part of the window with its title, controls beside the title, and its content below.
FocusScope {
    id: root

    property string title: ""
    property alias controls: controlRow.data
    default property alias content: body.data

    readonly property int inset: Style.defSpacing * 2

    Accessible.role: Accessible.Pane
    Accessible.name: title

    Rectangle {
        anchors.fill: parent
        color: Style.surface
    }

    UiLabel {
        id: titleLabel
        objectName: "paneTitle"
        x: root.inset
        width: Math.max(0, root.width - 2 * root.inset - controlRow.width - Style.defSpacing)
        height: 48
        visible: width > 0 // a text without a width would be as wide as it likes
        text: root.title
        isBigger: true
        font.bold: true
    }

    Row {
        id: controlRow
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        anchors.verticalCenter: titleLabel.verticalCenter
        spacing: Style.defSpacing
    }

    Item {
        id: body
        anchors.fill: parent
        anchors.topMargin: titleLabel.height
    }
}
