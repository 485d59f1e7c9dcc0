import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The tools; the chosen one's page and commands are shown.
Pane {
    id: root

    property var tools
    // The state of the device of the lines.
    property string deviceState: "Connected"
    readonly property alias currentRow: list.currentIndex

    signal allOffWanted()
    signal themeChosen(bool dark)
    signal helpWanted()
    // Makes what the menu of files offers.
    property var fileActions: () => []

    // Why a tool cannot be worked with, by the state of its device.
    readonly property var reasons: ({
        Closed: qsTrId("tools_closed"),
        Connecting: qsTrId("tools_connecting"),
        Unreachable: qsTrId("not_connected")
    })

    readonly property string whyNotOff: list.count === 0 ? qsTrId("tools_empty") : (reasons[deviceState] || "")

    function openFileMenu() {
        fileMenu.actions = fileActions() // files come and go
        fileMenu.open()
    }

    title: qsTrId("tools_title")

    controls: UiButton {
        id: fileButton
        objectName: "fileButton"
        text: qsTrId("file_menu")
        hint: fileMenu.visible ? "" : qsTrId("file_menu_hint")
        onClicked: root.openFileMenu()

        ActionMenu {
            id: fileMenu
            objectName: "fileMenu"
            width: 336
            y: fileButton.height + 2
        }
    }

    ListView {
        id: list
        objectName: "toolsList"
        anchors.fill: parent
        anchors.bottomMargin: 136
        activeFocusOnTab: count > 0
        model: root.tools
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        currentIndex: count > 0 ? 0 : -1
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: root.title

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            width: list.width
            height: 56
            color: ListView.isCurrentItem ? Style.accentSoft : "transparent"

            Accessible.role: Accessible.ListItem
            Accessible.name: model.name
            Accessible.selected: ListView.isCurrentItem

            Rectangle {
                width: 3
                height: parent.height
                visible: parent.ListView.isCurrentItem
                color: Style.accent
            }

            UiFocusRing {
                anchors.margins: 2
                shown: parent.ListView.isCurrentItem && list.activeFocus
            }

            Column {
                anchors.verticalCenter: parent.verticalCenter
                x: root.inset
                width: parent.width - 2 * root.inset

                UiLabel {
                    width: parent.width
                    text: model.name
                    font.bold: true
                }

                UiLabel {
                    width: parent.width
                    objectName: "toolDetail"
                    text: model.state === "Connected" ? qsTrId("tools_detail", model.channelCount).arg(model.plugin)
                                                      : root.reasons[model.state]
                    font.pixelSize: Style.smallTextSize
                    color: Style.textSecondary
                }
            }

            MouseArea {
                anchors.fill: parent
                onClicked: {
                    list.currentIndex = index
                    list.forceActiveFocus(Qt.MouseFocusReason)
                }
            }
        }
    }

    EmptyState {
        visible: list.count === 0
        text: qsTrId("tools_empty")
    }

    Item {
        id: allOff
        anchors.left: parent.left
        anchors.leftMargin: root.inset
        anchors.bottom: darkSwitch.top
        anchors.bottomMargin: Style.defSpacing
        width: Math.min(allOffButton.implicitWidth, parent.width - 2 * root.inset)
        height: allOffButton.implicitHeight

        UiButton {
            id: allOffButton
            objectName: "allOffButton"
            anchors.fill: parent
            text: qsTrId("tools_all_off")
            hint: enabled ? qsTrId("tools_all_off_hint") : root.whyNotOff
            enabled: root.whyNotOff.length === 0
            onClicked: root.allOffWanted()
        }

        // A button that cannot be used does not know of the pointer.
        HoverHandler {
            id: allOffHover
        }

        Loader {
            active: allOffHover.hovered && !allOffButton.enabled
            sourceComponent: UiToolTip {
                parent: allOff
                text: root.whyNotOff
                visible: true
            }
        }
    }

    UiSwitch {
        id: darkSwitch
        objectName: "darkSwitch"
        anchors.left: parent.left
        anchors.leftMargin: root.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 52
        text: qsTrId("tools_dark")
        checked: Style.dark
        onToggled: {
            Style.dark = checked
            root.themeChosen(checked)
        }
    }

    UiButton {
        objectName: "helpButton"
        anchors.left: parent.left
        anchors.leftMargin: root.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        width: Math.min(implicitWidth, parent.width - 2 * root.inset)
        text: qsTrId("tools_help")
        hint: qsTrId("tools_help_hint")
        onClicked: root.helpWanted()
    }
}
