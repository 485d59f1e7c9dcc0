import QtQuick 2.15

// A text in the colour and font of the theme; the bigger one is for titles. It shows what it is given and takes
// nothing for markup. A text that is too long loses its middle, and shows whole under the pointer.
Text {
    id: root

    property bool isBigger: false

    color: Style.text
    font.family: Style.fontFamily
    font.pixelSize: isBigger ? Style.titleSize : Style.textSize
    verticalAlignment: Text.AlignVCenter
    textFormat: Text.PlainText
    elide: Text.ElideMiddle

    HoverHandler {
        id: hover
        enabled: root.truncated
    }

    Loader {
        active: hover.hovered && root.truncated
        sourceComponent: UiToolTip {
            parent: root
            text: root.text
            visible: true
        }
    }
}
