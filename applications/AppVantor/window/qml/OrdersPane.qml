import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The orders that were given, the latest first; those that listen can be stopped.
Pane {
    id: root

    property var orders

    title: qsTrId("orders_title")

    controls: [
        UiButton {
            objectName: "stopAllButton"
            text: qsTrId("orders_stop_all")
            enabled: root.orders.running > 0
            onClicked: root.orders.stopAll()
        },
        UiButton {
            objectName: "clearButton"
            text: qsTrId("orders_clear")
            enabled: root.orders.count > root.orders.running
            onClicked: root.orders.clear()
        }
    ]

    ListView {
        id: list
        objectName: "ordersList"
        anchors.fill: parent
        activeFocusOnTab: count > 0
        model: root.orders
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: root.title

        Keys.onDeletePressed: root.orders.stop(currentIndex)

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            id: row

            readonly property bool active: model.state === "running" || model.state === "listening"
            // What the user ended is no mishap.
            readonly property bool failed: model.state === "problem" || (model.state === "failed" && model.kind !== "stopped")

            width: list.width
            height: 48
            color: ListView.isCurrentItem && list.activeFocus ? Style.accentSoft : "transparent"

            Accessible.role: Accessible.ListItem
            Accessible.name: model.command
            Accessible.description: stateLabel.text + " " + model.detail

            UiFocusRing {
                anchors.margins: 2
                shown: row.ListView.isCurrentItem && list.activeFocus
            }

            MouseArea {
                anchors.fill: parent
                onClicked: {
                    list.currentIndex = index
                    list.forceActiveFocus(Qt.MouseFocusReason)
                }
            }

            UiLabel {
                id: timeLabel
                x: root.inset
                width: 112
                height: parent.height / 2
                anchors.top: parent.top
                anchors.topMargin: 3
                text: model.time
                color: Style.textSecondary
                font.pixelSize: Style.smallTextSize
            }

            UiLabel {
                id: stateLabel
                anchors.left: timeLabel.left
                anchors.top: timeLabel.bottom
                anchors.topMargin: -4
                width: timeLabel.width
                height: timeLabel.height
                text: qsTrId("orders_state_" + (model.kind === "stopped" ? model.kind : model.state))
                color: row.failed ? Style.error : (row.active ? Style.accent : Style.textSecondary)
                font.bold: row.failed || row.active
                font.pixelSize: Style.smallTextSize
            }

            UiLabel {
                id: commandLabel
                anchors.left: timeLabel.right
                anchors.leftMargin: Style.defSpacing
                anchors.right: stopButton.visible ? stopButton.left : parent.right
                anchors.rightMargin: Style.defSpacing * 2
                anchors.top: timeLabel.top
                height: timeLabel.height
                text: model.command
            }

            UiLabel {
                objectName: "orderDetail"
                anchors.left: commandLabel.left
                anchors.right: commandLabel.right
                anchors.top: stateLabel.top
                height: timeLabel.height
                text: model.detail
                color: row.failed ? Style.error : Style.textSecondary
                font.pixelSize: Style.smallTextSize
            }

            UiButton {
                id: stopButton
                objectName: "stopButton"
                anchors.right: parent.right
                anchors.rightMargin: root.inset
                anchors.verticalCenter: parent.verticalCenter
                visible: row.active
                focusPolicy: Qt.NoFocus
                text: qsTrId("orders_stop")
                hint: qsTrId("orders_stop_hint")
                onClicked: root.orders.stop(index)
            }

            Rectangle {
                anchors.bottom: parent.bottom
                x: root.inset
                width: parent.width - 2 * x
                height: 1
                color: Style.separator
            }
        }
    }

    EmptyState {
        visible: list.count === 0
        text: qsTrId("orders_empty")
    }
}
