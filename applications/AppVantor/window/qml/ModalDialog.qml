import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// A dialog in the middle of the window; what is behind it is dimmed and out of reach. It has the keyboard while it
// is open, and then whoever had it before. Esc closes it.
T.Popup {
    id: root

    property string title: ""
    // What it takes where the window has room for it.
    property real wantedWidth: 480
    property real bodyHeight: 0
    default property alias content: body.data

    property Item before: null

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(wantedWidth, parent ? parent.width - 32 : wantedWidth)
    height: Math.min(body.y + bodyHeight + 2 * padding, parent ? parent.height - 32 : 480)
    padding: 16
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape

    T.Overlay.modal: Rectangle {
        objectName: "dialogShade"
        color: Style.shade
    }

    onAboutToShow: before = parent.Window.activeFocusItem
    onClosed: {
        if (before && before.visible) {
            before.forceActiveFocus(Qt.OtherFocusReason)
        }
        before = null
    }

    contentItem: Item {
        Accessible.role: Accessible.Dialog
        Accessible.name: root.title

        UiLabel {
            id: titleLabel
            objectName: root.objectName + "Title"
            width: parent.width
            text: root.title
            isBigger: true
            font.bold: true
        }

        Item {
            id: body
            y: titleLabel.height + Style.defSpacing
            width: parent.width
            height: parent.height - y
        }
    }

    background: Rectangle {
        color: Style.surface
        border.color: Style.controlBorder
        radius: Style.radius
    }
}
