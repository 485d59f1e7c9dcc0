import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A push button; the primary one is the pane's main action.
T.Button {
    id: root

    property bool primary: false
    property string hint: ""
    // What it says in its other state: it is as wide as the longer text needs.
    property string otherText: text

    implicitWidth: Math.max(64, Math.ceil(Math.max(ownText.advanceWidth, laterText.advanceWidth)) + 1 + leftPadding
                                + rightPadding)
    implicitHeight: Style.controlHeight
    leftPadding: 12
    rightPadding: 12
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.45

    Accessible.name: text
    Accessible.description: hint

    Keys.onReturnPressed: activate()
    Keys.onEnterPressed: activate()

    function activate() {
        if (checkable) {
            toggle()
        }
        clicked()
    }

    TextMetrics {
        id: ownText
        text: root.text
        font: label.font
    }

    TextMetrics {
        id: laterText
        text: root.otherText
        font: label.font
    }

    contentItem: UiLabel {
        id: label
        text: root.text
        horizontalAlignment: Text.AlignHCenter
        color: root.primary || (root.checkable && root.checked) ? Style.accentText : Style.text
    }

    background: Rectangle {
        radius: Style.radius
        color: root.primary ? (root.pressed ? Qt.darker(Style.accent, 1.2) : Style.accent)
                            : (root.pressed ? Style.surfacePressed : Style.surfaceRaised)
        border.color: root.primary ? Style.accent : (root.hovered ? Style.accent : Style.controlBorder)

        UiFocusRing {
            shown: root.visualFocus
        }
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
