import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// Asks before a bench is left in which something runs.
T.Popup {
    id: root

    // "close" the window, or "replace" the bench by another one.
    property string deed: "close"
    property string reason: ""

    signal stopped()
    signal confirmed()

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(480, parent ? parent.width - 32 : 480)
    height: body.implicitHeight + 2 * padding
    padding: 16
    modal: true
    focus: true

    onOpened: cancelButton.forceActiveFocus(Qt.OtherFocusReason)

    contentItem: Column {
        id: body
        objectName: "closeBody"
        spacing: Style.defSpacing * 2

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTrId(root.deed + "_title")

        UiLabel {
            width: parent.width
            text: qsTrId(root.deed + "_title")
            isBigger: true
            font.bold: true
        }

        UiLabel {
            objectName: "closeReason"
            width: parent.width
            text: root.reason
            wrapMode: Text.Wrap
            elide: Text.ElideNone

            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }

        Row {
            anchors.right: parent.right
            spacing: Style.defSpacing

            UiButton {
                objectName: "closeStop"
                text: qsTrId(root.deed + "_stop")
                onClicked: {
                    root.close()
                    root.stopped()
                    root.confirmed()
                }
            }

            UiButton {
                objectName: "closeAnyway"
                text: qsTrId(root.deed + "_anyway")
                onClicked: {
                    root.close()
                    root.confirmed()
                }
            }

            UiButton {
                id: cancelButton
                objectName: "closeCancel"
                text: qsTrId("save_cancel")
                primary: true
                onClicked: root.close()
            }
        }
    }

    background: Rectangle {
        color: Style.surface
        border.color: Style.controlBorder
        radius: Style.radius
    }
}
