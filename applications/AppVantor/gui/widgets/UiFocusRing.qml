import QtQuick 2.15

// The ring around the control that has the keyboard.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    anchors.margins: -3
    visible: shown
    color: "transparent"
    border.color: Style.accent
    border.width: 2
    radius: Style.radius + 3
}
