import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// A part of the window with its title, controls beside the title, and its content below.
FocusScope {
    id: root

    property string title: ""
    // Stands before the title, whole even where that has no room.
    property string mark: ""
    property alias controls: controlRow.data
    default property alias content: body.data

    readonly property int inset: Style.defSpacing * 2

    Accessible.role: Accessible.Pane
    Accessible.name: (mark + " " + title).trim()

    Rectangle {
        anchors.fill: parent
        color: Style.surface
    }

    UiLabel {
        id: markLabel
        objectName: "paneMark"
        x: root.inset
        height: titleLabel.height
        visible: text.length > 0
        text: root.mark
        isBigger: true
        font.bold: true
    }

    UiLabel {
        id: titleLabel
        objectName: "paneTitle"
        x: root.inset + (markLabel.visible ? markLabel.width + Style.defSpacing : 0)
        width: Math.max(0, root.width - x - root.inset - controlRow.width - Style.defSpacing)
        height: 48
        visible: width >= Math.min(implicitWidth, 80) // less of it could not be read
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
