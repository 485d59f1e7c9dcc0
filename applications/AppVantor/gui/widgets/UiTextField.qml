import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A field for one line of text.
T.TextField {
    id: root

    // Outlined as one whose content cannot be used.
    property bool wrong: false

    implicitWidth: 160
    implicitHeight: Style.controlHeight
    leftPadding: Style.defSpacing
    rightPadding: Style.defSpacing
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    color: Style.text
    placeholderTextColor: Style.textSecondary
    selectionColor: Style.accent
    selectedTextColor: Style.accentText
    font.family: Style.fontFamily
    font.pixelSize: Style.textSize

    UiLabel {
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        visible: root.text.length === 0 && root.preeditText.length === 0
        text: root.placeholderText
        color: root.placeholderTextColor
    }

    background: Rectangle {
        radius: Style.radius
        color: Style.surface
        // The ring stands for the border while it is there.
        border.width: root.wrong ? 2 : (root.activeFocus ? 0 : 1)
        border.color: root.wrong ? Style.error : (root.hovered ? Style.accent : Style.controlBorder)

        UiFocusRing {
            shown: root.activeFocus
        }
    }
}
