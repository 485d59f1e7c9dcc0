import QtQuick 2.15
import "../../gui/widgets"

// What the trigger waits for, and what has come of it.
Rectangle {
    id: root

    property var trigger
    property real inset: 0

    implicitHeight: visible ? (stacked ? 64 : 40) : 0
    color: Style.surfaceRaised

    // The text has a line of its own where there is not room for it beside the controls.
    readonly property bool stacked: triggerText.implicitWidth + triggerControls.width + 2 * root.inset
                                    + Style.defSpacing > width

    UiLabel {
        id: triggerText
        objectName: "triggerText"
        x: root.inset
        width: (root.stacked ? parent.width - root.inset : triggerControls.x - Style.defSpacing) - x
        height: root.stacked ? 28 : parent.height
        text: qsTrId("trigger_text", root.trigger.count).arg(root.trigger.text)
        font.pixelSize: Style.smallTextSize

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Row {
        id: triggerControls
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: (root.stacked ? 36 : parent.height) / 2 - height / 2
        spacing: Style.defSpacing

        UiComboBox {
            objectName: "triggerMode"

            readonly property var modes: ["at", "around", "from", "none"]

            width: 128
            model: modes.map(mode => qsTrId("trigger_" + mode))
            currentIndex: modes.indexOf(root.trigger.mode)
            Accessible.name: qsTrId("trigger_mode")
            onActivated: root.trigger.mode = modes[index]
        }

        UiButton {
            objectName: "triggerClear"
            text: qsTrId("trigger_clear")
            onClicked: root.trigger.clear()
        }
    }
}
