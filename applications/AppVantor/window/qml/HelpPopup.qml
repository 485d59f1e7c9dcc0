import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The keys of the window, where the manual is, and what versions run.
ModalDialog {
    id: root

    property string versions: ""

    readonly property var keys: [
        ["F1", "help_f1"], ["Ctrl+O, Ctrl+R", "help_open"], ["F9", "help_script"], ["F5", "help_f5"], [qsTrId("key_panes"), "help_f6"], ["Ctrl+F", "help_find"],
        ["Ctrl+1, Ctrl+2, Ctrl+3", "help_fold"], [qsTrId("key_run"), "help_run"], ["+  \u2212  F  L", "help_zoom"],
        [qsTrId("help_space"), "help_freeze"], [qsTrId("key_cursors"), "help_cursors"], [qsTrId("key_choose"), "help_choose"], ["T", "help_trigger"],
        ["H  G  Alt+\u2191\u2193", "help_lines"], [qsTrId("key_row_height"), "help_row_height"],
        ["E  R", "help_files"]
    ]

    title: qsTrId("help_title")
    wantedWidth: 640
    bodyHeight: body.implicitHeight + foot.implicitHeight

    UiFlickable {
        objectName: "helpText"
        anchors.top: parent.top
        anchors.bottom: foot.top
        width: parent.width
        contentHeight: body.implicitHeight
        focus: true
        Keys.onUpPressed: scrollTo(contentY - 40)
        Keys.onDownPressed: scrollTo(contentY + 40)

        T.ScrollBar.vertical: UiScrollBar {}

        Column {
            id: body
            width: parent.width
            spacing: 6

            Repeater {
                model: root.keys

                Item {
                    width: body.width
                    height: meaning.implicitHeight

                    Accessible.role: Accessible.StaticText
                    Accessible.name: qsTrId("help_key").arg(modelData[0]).arg(meaning.text)

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
        }
    }

    Column {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        topPadding: Style.defSpacing
        spacing: Style.defSpacing

        UiLabel {
            objectName: "helpVersions"
            width: parent.width
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
