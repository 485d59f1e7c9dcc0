import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// A list of what can be done, with the keys that do it too. Esc closes it.
T.Popup {
    id: root

    // Objects with "text", "keys", "enabled" and "run".
    property var actions: []
    // What an entry does while it goes because there are fewer actions.
    readonly property var nothing: ({text: "", keys: "", enabled: false})

    width: 264
    implicitHeight: rows.implicitHeight + 2
    margins: Style.defSpacing
    padding: 1
    focus: true

    contentItem: Column {
        id: rows

        Repeater {
            model: root.actions.length

            T.Button {
                id: entry

                readonly property var deed: root.actions[index] || root.nothing

                width: root.width - 2
                height: Style.controlHeight
                enabled: entry.deed.enabled
                opacity: enabled ? 1 : 0.45
                hoverEnabled: true
                focus: index === 0
                text: entry.deed.text
                objectName: "menuEntry" + index

                KeyNavigation.up: index > 0 ? rows.children[index - 1] : null
                KeyNavigation.down: rows.children[index + 1] || null

                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()

                onClicked: {
                    root.close()
                    entry.deed.run()
                }

                contentItem: Item {
                    UiLabel {
                        x: Style.defSpacing
                        width: parent.width - keysLabel.width - 3 * x
                        height: parent.height
                        text: entry.text
                    }

                    UiLabel {
                        id: keysLabel
                        anchors.right: parent.right
                        anchors.rightMargin: Style.defSpacing
                        height: parent.height
                        text: entry.deed.keys
                        color: Style.textSecondary
                        font.pixelSize: Style.smallTextSize
                    }
                }

                background: Rectangle {
                    color: entry.hovered || entry.activeFocus ? Style.accentSoft : "transparent"
                }
            }
        }
    }

    background: Rectangle {
        color: Style.surface
        border.color: Style.controlBorder
        radius: Style.radius
    }
}
