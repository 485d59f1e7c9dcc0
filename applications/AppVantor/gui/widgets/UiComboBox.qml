import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A choice from a list; when it is editable, any other text will do as well.
T.ComboBox {
    id: root

    // Outlined as one whose content cannot be used.
    property bool wrong: false
    property string placeholderText: ""

    implicitWidth: 160
    implicitHeight: Style.controlHeight
    leftPadding: Style.defSpacing
    rightPadding: 28
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    contentItem: T.TextField {
        text: root.editable ? root.editText : root.displayText
        enabled: root.editable
        readOnly: root.down
        selectByMouse: root.editable
        verticalAlignment: TextInput.AlignVCenter
        color: Style.text
        selectionColor: Style.accent
        selectedTextColor: Style.accentText
        font.family: Style.fontFamily
        font.pixelSize: Style.textSize
        clip: true

        UiLabel {
            anchors.fill: parent
            visible: parent.text.length === 0
            text: root.placeholderText
            color: Style.textSecondary
        }
    }

    indicator: Item {
        x: root.width - width - 10
        y: (root.height - height) / 2
        width: 10
        height: 6

        Rectangle {
            x: 0
            y: 2
            width: 7
            height: 2
            rotation: 45
            color: Style.textSecondary
            antialiasing: true
        }

        Rectangle {
            x: 4
            y: 2
            width: 7
            height: 2
            rotation: -45
            color: Style.textSecondary
            antialiasing: true
        }
    }

    background: Rectangle {
        radius: Style.radius
        color: root.editable ? Style.surface : (root.down ? Style.surfacePressed : Style.surfaceRaised)
        // The ring stands for the border while it is there.
        border.width: root.wrong ? 2 : (root.activeFocus ? 0 : 1)
        border.color: root.wrong ? Style.error : (root.hovered ? Style.accent : Style.controlBorder)

        UiFocusRing {
            shown: root.activeFocus
        }
    }

    delegate: T.ItemDelegate {
        width: root.width - 2
        implicitHeight: Style.controlHeight
        leftPadding: Style.defSpacing
        rightPadding: Style.defSpacing
        highlighted: root.highlightedIndex === index
        hoverEnabled: true

        contentItem: UiLabel {
            text: modelData
            font.bold: root.currentIndex === index
        }

        background: Rectangle {
            color: parent.highlighted ? Style.accentSoft : "transparent"
        }
    }

    popup: T.Popup {
        y: root.height + 2
        width: root.width
        implicitHeight: Math.min(choices.contentHeight + 2, 320)
        margins: Style.defSpacing
        padding: 1

        contentItem: ListView {
            id: choices
            clip: true
            model: root.delegateModel
            currentIndex: root.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds

            T.ScrollBar.vertical: UiScrollBar {}
        }

        background: Rectangle {
            color: Style.surface
            border.color: Style.controlBorder
            radius: Style.radius
        }
    }
}
