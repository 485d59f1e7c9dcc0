import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The head of something that folds away: a click or Space shows it and hides it.
T.Button {
    id: root

    property bool unfolded: false

    implicitHeight: 32
    leftPadding: Style.defSpacing * 2
    rightPadding: Style.defSpacing * 2
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: click()
    Keys.onEnterPressed: click()

    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: unfolded

    contentItem: UiLabel {
        text: (root.unfolded ? "\u25be " : "\u25b8 ") + root.text
        font.pixelSize: Style.smallTextSize
        color: Style.textSecondary
    }

    background: Rectangle {
        color: root.hovered || root.pressed ? Style.surfacePressed : Style.surfaceRaised

        UiFocusRing {
            anchors.margins: 2
            shown: root.visualFocus
        }
    }
}
