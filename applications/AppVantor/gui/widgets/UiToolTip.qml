import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.ToolTip {
    id: root

    x: 0
    y: parent ? parent.height + 4 : 0
    margins: Style.defSpacing
    padding: Style.defSpacing
    delay: 300
    implicitWidth: Math.min(content.implicitWidth + 2 * padding, 400)
    implicitHeight: content.implicitHeight + 2 * padding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        id: content
        objectName: "toolTip"
        text: root.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: Style.text
        font.family: Style.fontFamily
        font.pixelSize: Style.smallTextSize
    }

    background: Rectangle {
        color: Style.surfaceRaised
        border.color: Style.controlBorder
        radius: Style.radius
    }
}
