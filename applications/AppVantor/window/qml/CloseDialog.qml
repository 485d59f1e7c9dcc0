import QtQuick 2.15
import "../../gui/widgets"

// Asks before a bench is left in which something runs.
ModalDialog {
    id: root

    // "close" the window, or "replace" the bench by another one.
    property string deed: "close"
    property string reason: ""
    // True when there is something to be stopped.
    property bool stoppable: false

    signal stopped()
    signal confirmed()

    title: qsTrId(deed + "_title")
    bodyHeight: body.implicitHeight

    onOpened: cancelButton.forceActiveFocus(Qt.OtherFocusReason)

    Column {
        id: body
        width: parent.width
        spacing: Style.defSpacing * 2

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
                visible: root.stoppable
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
}
