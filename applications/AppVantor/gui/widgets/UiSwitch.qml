import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A switch: its knob stands right and full when it is on, left and hollow when it is off.
T.Switch {
    id: root

    property string hint: ""

    implicitWidth: text.length > 0 ? label.implicitWidth : track.width
    implicitHeight: Style.controlHeight
    spacing: Style.defSpacing
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.45

    Keys.onReturnPressed: {
        toggle()
        toggled()
    }

    indicator: Rectangle {
        id: track
        y: (root.height - height) / 2
        width: 36
        height: 20
        radius: height / 2
        color: root.checked ? Style.accent : Style.surface
        border.color: root.checked || root.hovered ? Style.accent : Style.controlBorder
        border.width: 2

        Rectangle {
            x: root.checked ? parent.width - width - 4 : 4
            anchors.verticalCenter: parent.verticalCenter
            width: 12
            height: 12
            radius: 6
            color: root.checked ? Style.accentText : "transparent"
            border.color: root.checked ? Style.accentText : Style.controlBorder
            border.width: 2
        }

        UiFocusRing {
            shown: root.visualFocus
            radius: height / 2
        }
    }

    contentItem: UiLabel {
        id: label
        leftPadding: track.width + root.spacing
        text: root.text
    }

    Loader {
        active: root.hovered && root.hint.length > 0
        sourceComponent: UiToolTip {
            parent: root
            text: root.hint
            visible: true
        }
    }
}
