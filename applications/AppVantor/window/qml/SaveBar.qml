import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// Asks for the name of a file and has it written; says where it is, or why it is not.
FocusScope {
    id: root

    // Writes the file of this name; returns an empty text, or why it could not.
    property var write
    property bool asking: false
    property string outcome: ""
    property bool failed: false

    function open(name) {
        outcome = ""
        asking = true
        field.text = Files.documentFile(name)
        field.forceActiveFocus(Qt.OtherFocusReason)
        field.selectAll()
    }

    function fail(problem) {
        failed = true
        outcome = problem
    }

    function save() {
        const problem = write(field.text)
        failed = problem.length > 0
        outcome = failed ? problem : qsTrId("save_done").arg(field.text)
        asking = failed
    }

    implicitHeight: (asking ? 40 : 0) + (outcome.length > 0 ? outcomeLabel.implicitHeight + Style.defSpacing : 0)
    visible: implicitHeight > 0
    clip: true

    UiTextField {
        id: field
        objectName: "saveField"
        x: Style.defSpacing * 2
        y: 4
        width: parent.width - buttons.width - 5 * Style.defSpacing
        visible: root.asking
        Accessible.name: qsTrId("save_file")
        onAccepted: root.save()
        Keys.onEscapePressed: root.asking = false
    }

    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: Style.defSpacing * 2
        y: 4
        visible: root.asking
        spacing: Style.defSpacing

        UiButton {
            objectName: "saveButton"
            text: qsTrId("events_save")
            primary: true
            onClicked: root.save()
        }

        UiButton {
            text: qsTrId("save_cancel")
            onClicked: {
                root.asking = false
                root.outcome = ""
            }
        }
    }

    UiLabel {
        id: outcomeLabel
        objectName: "saveOutcome"
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 4
        x: Style.defSpacing * 2
        width: parent.width - 2 * x
        visible: text.length > 0
        text: root.outcome
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        color: root.failed ? Style.error : Style.textSecondary
        font.pixelSize: Style.smallTextSize

        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
}
