import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.ScrollBar {
    id: root

    implicitWidth: Style.baseWidth
    implicitHeight: Style.baseHeight
    padding: 1
    minimumSize: 0.08
    hoverEnabled: true
    visible: policy === T.ScrollBar.AlwaysOn || size < 1

    contentItem: Rectangle {
        radius: width / 2
        color: root.pressed || root.hovered ? Style.accent : Style.controlBorder
        opacity: root.pressed || root.hovered ? 1 : 0.6
    }
}
