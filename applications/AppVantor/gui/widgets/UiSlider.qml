import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.Slider {
    id: root

    implicitWidth: 96
    implicitHeight: 24
    hoverEnabled: true

    handle: Rectangle {
        x: root.visualPosition * (root.width - width)
        y: (root.height - height) / 2
        width: 16
        height: 16
        radius: 8
        color: root.pressed ? Style.accent : Style.surface
        border.color: Style.accent
        border.width: 2

        UiFocusRing {
            shown: root.visualFocus
            radius: height / 2
        }
    }

    background: Rectangle {
        y: (root.height - height) / 2
        width: root.width
        height: 4
        radius: 2
        color: Style.surfacePressed

        Rectangle {
            width: root.visualPosition * parent.width
            height: parent.height
            radius: 2
            color: Style.accent
        }
    }
}
