import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import AppVantor 1.0
import "../../gui/widgets"

// What is wrong with a configuration that was to be opened; each mistake is copied by a click.
ModalDialog {
    id: root

    property var choice
    // Of the file, which needs not stand in each row.
    readonly property string folder: choice ? choice.chosen.slice(0, choice.chosen.lastIndexOf("/") + 1) : ""
    // The row that was copied last; the number of rows for all of them, negative for none.
    property int copied: -1

    function copy(row) {
        Files.copy(choice.mistakes[row])
        copied = row
    }

    function copyAll() {
        Files.copy(choice.mistakes.join("\n") + "\n")
        copied = choice.mistakes.length
    }

    title: choice ? qsTrId("mistakes_title", choice.mistakes.length) : ""
    wantedWidth: 640
    bodyHeight: head.height + list.contentHeight + buttons.height + 2 * Style.defSpacing

    onOpened: {
        copied = -1
        list.currentIndex = 0
        list.forceActiveFocus(Qt.OtherFocusReason)
    }

    Column {
        id: head
        width: parent.width
        spacing: 4

        UiLabel {
            width: parent.width
            text: root.choice ? Files.shortPath(root.choice.chosen) : ""
        }

        UiLabel {
            width: parent.width
            text: qsTrId("mistakes_hint")
            color: Style.textSecondary
            wrapMode: Text.Wrap
            elide: Text.ElideNone
        }
    }

    ListView {
        id: list
        objectName: "mistakesList"
        anchors.top: head.bottom
        anchors.topMargin: Style.defSpacing
        anchors.bottom: buttons.top
        anchors.bottomMargin: Style.defSpacing
        width: parent.width
        activeFocusOnTab: true
        model: root.choice ? root.choice.mistakes : []
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: qsTrId("mistakes_title", count)

        Keys.onReturnPressed: if (currentIndex >= 0) root.copy(currentIndex)
        Keys.onEnterPressed: if (currentIndex >= 0) root.copy(currentIndex)
        Keys.onSpacePressed: if (currentIndex >= 0) root.copy(currentIndex)

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            width: list.width
            height: mistakeText.height + 12
            color: ListView.isCurrentItem && list.activeFocus ? Style.accentSoft : "transparent"

            Accessible.role: Accessible.ListItem
            Accessible.name: modelData

            UiLabel {
                id: mistakeText
                objectName: "mistakeText"
                x: Style.defSpacing
                y: 6
                width: parent.width - 2 * x - copiedMark.width - Style.defSpacing
                text: modelData.startsWith(root.folder) ? modelData.slice(root.folder.length) : modelData
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }

            UiLabel {
                id: copiedMark
                objectName: "mistakeCopied"
                anchors.right: parent.right
                anchors.rightMargin: Style.defSpacing
                anchors.verticalCenter: parent.verticalCenter
                text: qsTrId("mistakes_copied")
                opacity: root.copied === index || root.copied === list.count ? 1 : 0
                color: Style.accent
                font.pixelSize: Style.smallTextSize
            }

            MouseArea {
                anchors.fill: parent
                onClicked: {
                    list.currentIndex = index
                    list.forceActiveFocus(Qt.MouseFocusReason)
                    root.copy(index)
                }
            }
        }
    }

    Row {
        id: buttons
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        spacing: Style.defSpacing

        UiButton {
            objectName: "mistakesRetry"
            text: qsTrId("mistakes_retry")
            hint: qsTrId("mistakes_retry_hint")
            onClicked: {
                root.close()
                root.choice.retry()
            }
        }

        UiButton {
            objectName: "mistakesCopy"
            text: qsTrId("mistakes_copy_all")
            onClicked: root.copyAll()
        }

        UiButton {
            objectName: "mistakesClose"
            text: qsTrId("events_close")
            primary: true
            onClicked: root.close()
        }
    }
}
