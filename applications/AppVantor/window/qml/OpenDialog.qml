import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import AppVantor 1.0
import "../../gui/widgets"

// Asks for a file that is to be opened: its path is typed, or found by going through the folders below it.
ModalDialog {
    id: root

    // What is done with the file.
    property string action: qsTrId("open_open")
    // Of the files that are listed; empty for all.
    property string suffix: ""

    signal chosen(string file)

    function ask(folder) {
        field.text = Files.shortPath(folder)
        open()
    }

    // Goes into a folder, and opens a file.
    function take(path) {
        if (!Files.isFolder(path)) {
            close()
            chosen(path)
        } else {
            field.text = path.endsWith("/") ? path : path + "/"
            field.forceActiveFocus(Qt.OtherFocusReason)
        }
    }

    wantedWidth: 560
    bodyHeight: 340

    onOpened: field.forceActiveFocus(Qt.OtherFocusReason)

    UiTextField {
        id: field
        objectName: "openField"
        width: parent.width
        Accessible.name: qsTrId("save_file")
        onAccepted: if (text.trim().length > 0) root.take(text.trim())
        Keys.onDownPressed: {
            list.currentIndex = 0
            list.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    ListView {
        id: list
        objectName: "openList"
        anchors.top: field.bottom
        anchors.topMargin: Style.defSpacing
        anchors.bottom: buttons.top
        anchors.bottomMargin: Style.defSpacing
        width: parent.width
        activeFocusOnTab: count > 0
        model: root.visible ? Files.completions(field.text, root.suffix) : []
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0

        Accessible.role: Accessible.List
        Accessible.name: qsTrId("open_list")

        Keys.onReturnPressed: if (currentIndex >= 0) root.take(model[currentIndex])
        Keys.onEnterPressed: if (currentIndex >= 0) root.take(model[currentIndex])
        Keys.onUpPressed: {
            if (currentIndex > 0) {
                --currentIndex
            } else {
                field.forceActiveFocus(Qt.BacktabFocusReason)
            }
        }

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: Rectangle {
            width: list.width
            height: 28
            color: ListView.isCurrentItem && list.activeFocus ? Style.accentSoft : "transparent"

            Accessible.role: Accessible.ListItem
            Accessible.name: modelData

            UiLabel {
                objectName: "openEntry"
                x: Style.defSpacing
                width: parent.width - 2 * x
                height: parent.height
                text: modelData.slice(field.text.lastIndexOf("/") + 1)
            }

            MouseArea {
                anchors.fill: parent
                onClicked: root.take(modelData)
            }
        }
    }

    UiLabel {
        anchors.fill: list
        visible: list.count === 0
        text: qsTrId("open_nothing")
        color: Style.textSecondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    Row {
        id: buttons
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        spacing: Style.defSpacing

        UiButton {
            objectName: "openButton"
            text: root.action
            enabled: field.text.trim().length > 0
            primary: true
            onClicked: root.take(field.text.trim())
        }

        UiButton {
            objectName: "openCancel"
            text: qsTrId("save_cancel")
            onClicked: root.close()
        }
    }
}
