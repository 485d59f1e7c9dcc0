import QtQuick 2.15
import QtQuick.Window 2.15
import AppVantor 1.0
import "../../gui/widgets"

// Asks for the name of a file and has it written; says where it is, or why it is not. It has the keyboard while
// it asks, and then whoever had it before.
FocusScope {
    id: root

    // Writes the file of this name; returns an empty text, or why it could not.
    property var write
    // What is said when it has, with %1 for the name.
    property string done: qsTrId("save_done")
    property bool asking: false
    property string outcome: ""
    property bool failed: false

    property Item before: null
    // Where the last file went.
    property string folder: ""
    // A file that is there, which may be replaced if it is named once more.
    property string replaceable: ""

    function open(name) {
        if (!asking) {
            before = Window.activeFocusItem
        }
        outcome = ""
        replaceable = ""
        asking = true
        field.text = folder.length > 0 ? folder + name : Files.documentFile(name)
        field.forceActiveFocus(Qt.OtherFocusReason)
        field.selectAll()
    }

    function fail(problem) {
        failed = true
        outcome = problem
    }

    function tell(text) {
        failed = false
        outcome = text
    }

    function save() {
        const file = field.text
        if (Files.isFile(file) && file !== replaceable) {
            replaceable = file
            fail(qsTrId("save_exists").arg(file))
            return
        }
        const problem = write(file)
        if (problem.length > 0) {
            fail(problem)
        } else {
            folder = file.slice(0, file.lastIndexOf("/") + 1)
            tell(done.arg(file))
            leave()
        }
    }

    // Takes away what was said.
    function dismiss() {
        outcome = ""
    }

    function cancel() {
        dismiss()
        leave()
    }

    function leave() {
        asking = false
        if (before && before.visible) {
            before.forceActiveFocus(Qt.OtherFocusReason)
        }
        before = null
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
        Keys.onEscapePressed: root.cancel()
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
            text: root.replaceable.length > 0 && root.replaceable === field.text ? qsTrId("save_replace")
                                                                                 : qsTrId("events_save")
            primary: true
            onClicked: root.save()
        }

        UiButton {
            text: qsTrId("save_cancel")
            onClicked: root.cancel()
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
