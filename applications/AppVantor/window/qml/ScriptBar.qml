import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// The line of the script that is carried out, and what became of the script.
Rectangle {
    id: root

    // Null where there are no scripts.
    property var script: null
    readonly property bool running: !!script && script.running
    readonly property bool failed: !!script && !script.running && script.failed

    visible: running || (!!script && script.outcome.length > 0)
    height: visible ? Math.max(40, label.implicitHeight + 2 * Style.defSpacing) : 0
    color: Style.surfaceRaised

    UiLabel {
        id: label
        objectName: "scriptText"
        x: Style.defSpacing * 2
        width: button.x - x - Style.defSpacing
        anchors.verticalCenter: parent.verticalCenter
        text: {
            if (!root.script) {
                return ""
            }
            const name = root.script.file.slice(root.script.file.lastIndexOf("/") + 1)
            if (!root.running) {
                return root.failed ? root.script.outcome : qsTrId("script_outcome").arg(name).arg(root.script.outcome)
            }
            return root.script.number > 0 ? name + ":" + root.script.number + "  " + root.script.text : name
        }
        color: root.failed ? Style.error : Style.text
        font.pixelSize: Style.smallTextSize
        wrapMode: root.failed ? Text.Wrap : Text.NoWrap
        elide: root.failed ? Text.ElideNone : Text.ElideRight

        Accessible.role: root.failed ? Accessible.AlertMessage : Accessible.StaticText
        Accessible.name: text
    }

    UiButton {
        id: button
        objectName: "scriptButton"
        anchors.right: parent.right
        anchors.rightMargin: Style.defSpacing * 2
        anchors.verticalCenter: parent.verticalCenter
        text: root.running ? qsTrId("script_stop") : qsTrId("events_close")
        otherText: root.running ? qsTrId("events_close") : qsTrId("script_stop")
        onClicked: root.running ? root.script.stop() : root.script.dismiss()
    }
}
