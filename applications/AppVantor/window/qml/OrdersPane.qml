import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The orders that were given, the latest first; those that listen can be stopped.
Pane {
    id: root

    property var orders
    property var orderEvents
    property var pageReads
    property var script: null
    property bool readsShown: false
    // The command of the order whose events are shown.
    property string eventsCommand: ""

    function showEvents(order, command) {
        eventsCommand = command
        orderEvents.order = order
    }

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

    ScriptBar {
        id: scriptBar
        width: parent.width
        script: root.script
    }

    ListView {
        id: list
        objectName: "ordersList"
        anchors.top: scriptBar.bottom
        anchors.bottom: eventsDrawer.top
        width: parent.width
        activeFocusOnTab: count > 0
        model: root.orders
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: root.title

        Keys.onDeletePressed: root.orders.stop(currentIndex)
        Keys.onReturnPressed: if (currentItem) currentItem.showEvents()

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            id: row

            readonly property bool active: model.state === "running" || model.state === "listening"
            // What the user ended is no mishap.
            readonly property bool failed: model.state === "problem" || (model.state === "failed" && model.kind !== "stopped")

            function showEvents() {
                if (model.events > 0) {
                    root.showEvents(model.order, model.command)
                }
            }

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
                anchors.right: eventsButton.visible ? eventsButton.left : (stopButton.visible ? stopButton.left : parent.right)
                anchors.rightMargin: Style.defSpacing * 2
                anchors.top: timeLabel.top
                height: timeLabel.height
                text: model.page ? qsTrId("orders_page").arg(model.command) : model.command
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
                id: eventsButton
                objectName: "eventsButton"
                anchors.right: stopButton.visible ? stopButton.left : parent.right
                anchors.rightMargin: stopButton.visible ? Style.defSpacing : root.inset
                anchors.verticalCenter: parent.verticalCenter
                visible: model.events > 0
                focusPolicy: Qt.NoFocus
                text: qsTrId("orders_show_events")
                hint: qsTrId("orders_show_events_hint")
                onClicked: row.showEvents()
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
        anchors.bottomMargin: readsBar.height + readsList.height + eventsDrawer.height
        text: qsTrId("orders_empty")
    }

    EventsDrawer {
        id: eventsDrawer
        anchors.bottom: readsBar.top
        width: parent.width
        height: visible ? Math.round(parent.height * (root.readsShown ? 0.35 : 0.6)) : 0
        events: root.orderEvents
        command: root.eventsCommand
    }

    FoldBar {
        id: readsBar
        objectName: "pageReadsBar"
        anchors.bottom: readsList.top
        width: parent.width
        visible: root.pageReads.total > 0
        height: visible ? implicitHeight : 0
        unfolded: root.readsShown
        text: qsTrId("orders_reads", root.pageReads.total)
              + (root.pageReads.failed > 0 ? " \u00b7 " + qsTrId("orders_reads_failed", root.pageReads.failed) : "")
        onClicked: root.readsShown = !root.readsShown
    }

    ListView {
        id: readsList
        objectName: "pageReadsList"
        anchors.bottom: parent.bottom
        width: parent.width
        height: root.readsShown ? Math.round(parent.height * (eventsDrawer.visible ? 0.35 : 0.5)) : 0
        visible: root.readsShown
        activeFocusOnTab: count > 0
        model: root.readsShown ? root.pageReads : null
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: readsBar.text

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            width: readsList.width
            height: 24
            color: ListView.isCurrentItem && readsList.activeFocus ? Style.accentSoft : "transparent"

            Accessible.role: Accessible.ListItem
            Accessible.name: model.command
            Accessible.description: model.detail

            UiLabel {
                id: readTime
                x: root.inset
                width: 112
                height: parent.height
                text: model.time
                color: Style.textSecondary
                font.pixelSize: Style.smallTextSize
            }

            UiLabel {
                anchors.left: readTime.right
                anchors.leftMargin: Style.defSpacing
                anchors.right: parent.right
                anchors.rightMargin: root.inset
                height: parent.height
                text: model.command + " \u2192 " + (model.failed ? "\u2715 " : "") + model.detail
                color: model.failed ? Style.error : Style.text
                font.pixelSize: Style.smallTextSize
            }
        }
    }
}
