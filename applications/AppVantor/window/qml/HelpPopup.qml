import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The keys of the window, where the manual is, and what versions run.
T.Popup {
    id: root

    property string versions: ""

    readonly property var keys: [
        ["F1", "help_f1"], ["Ctrl+O, Ctrl+R", "help_open"], ["F9", "help_script"], ["F5", "help_f5"], ["F6, Shift+F6", "help_f6"], ["Ctrl+F", "help_find"],
        ["Ctrl+1, Ctrl+2, Ctrl+3", "help_fold"], ["Ctrl+Enter", "help_run"], ["+  \u2212  F  L", "help_zoom"],
        [qsTrId("help_space"), "help_freeze"], ["1  2  \u2190  \u2192  Esc", "help_cursors"], ["Shift+\u2191\u2193", "help_choose"], ["T", "help_trigger"],
        ["H  G  Alt+\u2191\u2193", "help_lines"], ["E  R", "help_files"]
    ]

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(640, parent ? parent.width - 32 : 640)
    height: Math.min(body.implicitHeight + 32, parent ? parent.height - 32 : 480)
    padding: 16
    modal: true
    focus: true

    contentItem: UiFlickable {
        objectName: "helpText"
        contentHeight: body.implicitHeight

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTrId("help_title")

        Column {
            id: body
            width: parent.width
            spacing: 6

            UiLabel {
                text: qsTrId("help_title")
                isBigger: true
                font.bold: true
            }

            Repeater {
                model: root.keys

                Item {
                    width: body.width
                    height: meaning.implicitHeight

                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData[0] + ": " + meaning.text

                    UiLabel {
                        width: 184
                        text: modelData[0]
                        font.bold: true
                    }

                    UiLabel {
                        id: meaning
                        x: 192
                        width: parent.width - x
                        text: qsTrId(modelData[1])
                        wrapMode: Text.Wrap
                        elide: Text.ElideNone
                    }
                }
            }

            UiLabel {
                width: body.width
                topPadding: Style.defSpacing
                text: qsTrId("help_manual")
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                color: Style.textSecondary
            }

            UiLabel {
                objectName: "helpVersions"
                width: body.width
                text: root.versions
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                color: Style.textSecondary
            }

            UiButton {
                objectName: "helpClose"
                text: qsTrId("events_close")
                onClicked: root.close()
            }
        }
    }

    background: Rectangle {
        color: Style.surface
        border.color: Style.controlBorder
        radius: Style.radius
    }
}
