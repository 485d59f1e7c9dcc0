import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The events of one order with their times, to be copied and saved.
FocusScope {
    id: root

    property var events
    property string command: ""

    visible: events.order > 0

    Rectangle {
        anchors.fill: parent
        color: Style.surface
    }

    Rectangle {
        id: head
        width: parent.width
        height: 40
        color: Style.surfaceRaised

        UiLabel {
            anchors.left: parent.left
            anchors.leftMargin: Style.defSpacing * 2
            anchors.right: buttons.left
            anchors.rightMargin: Style.defSpacing
            height: parent.height
            text: qsTrId("events_title", root.events.count).arg(root.command)
            font.pixelSize: Style.smallTextSize
            font.bold: true
        }

        Row {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: Style.defSpacing * 2
            anchors.verticalCenter: parent.verticalCenter
            spacing: Style.defSpacing

            UiButton {
                objectName: "eventsCopy"
                text: qsTrId("events_copy")
                hint: qsTrId("events_copy_hint")
                enabled: root.events.count > 0
                onClicked: root.events.copy()
            }

            UiButton {
                objectName: "eventsSave"
                text: qsTrId("events_save")
                enabled: root.events.count > 0
                onClicked: saveBar.open("events.csv")
            }

            UiButton {
                objectName: "eventsClose"
                text: qsTrId("events_close")
                onClicked: root.events.order = 0
            }
        }
    }

    SaveBar {
        id: saveBar
        anchors.top: head.bottom
        width: parent.width
        write: file => root.events.save(file)
    }

    ListView {
        id: list
        objectName: "eventsList"
        anchors.top: saveBar.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        activeFocusOnTab: count > 0
        model: root.events
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: qsTrId("events_title", root.events.count).arg(root.command)

        Keys.onEscapePressed: root.events.order = 0

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            width: list.width
            height: 24
            color: ListView.isCurrentItem && list.activeFocus ? Style.accentSoft : "transparent"

            Accessible.role: Accessible.ListItem
            Accessible.name: model.time + " " + model.values

            UiLabel {
                id: time
                x: Style.defSpacing * 2
                width: 112
                height: parent.height
                text: model.time
                color: Style.textSecondary
                font.pixelSize: Style.smallTextSize
            }

            UiLabel {
                anchors.left: time.right
                anchors.leftMargin: Style.defSpacing
                anchors.right: parent.right
                anchors.rightMargin: Style.defSpacing * 2
                height: parent.height
                text: model.values
                font.pixelSize: Style.smallTextSize
            }
        }
    }
}
