import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The form for one command of the chosen tool.
Pane {
    id: root

    property var form

    function run() {
        if (runButton.enabled) {
            form.run()
        }
    }

    title: qsTrId("form_title")

    controls: [
        UiComboBox {
            id: commandBox
            objectName: "commandBox"
            width: 152
            enabled: root.form.commands.length > 0
            model: root.form.commands
            currentIndex: root.form.commands.indexOf(root.form.command)
            Accessible.name: qsTrId("form_command")
            onActivated: root.form.command = currentText
        },
        UiButton {
            id: runButton
            objectName: "runButton"
            text: qsTrId("form_run")
            hint: qsTrId("form_run_hint")
            primary: true
            enabled: root.form.problem.length === 0
            onClicked: root.run()
        }
    ]

    UiFlickable {
        id: flickable
        objectName: "formFlickable"
        anchors.fill: parent
        anchors.bottomMargin: problemBar.height
        contentHeight: rows.height

        T.ScrollBar.vertical: UiScrollBar {}

        Column {
            id: rows
            x: root.inset
            width: flickable.width - 2 * root.inset
            topPadding: 3
            bottomPadding: Style.defSpacing
            spacing: 4
            visible: root.form.command.length > 0

            UiLabel {
                width: parent.width
                text: root.form.description
                color: Style.textSecondary
                wrapMode: TextEdit.Wrap
                elide: Qt.ElideNone
            }

            Repeater {
                model: root.form

                ParameterRow {
                    width: rows.width
                    form: root.form
                    onSubmitted: root.run()
                }
            }

            Item {
                width: parent.width
                height: 40
                visible: root.form.takesSections

                Column {
                    id: sectionLabels
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width * 0.4

                    UiLabel {
                        width: parent.width
                        text: qsTrId("form_sections")
                    }

                    UiLabel {
                        width: parent.width
                        text: qsTrId("form_sections_hint")
                        font.pixelSize: Style.smallTextSize
                        color: Style.textSecondary
                    }
                }

                UiTextField {
                    objectName: "sectionsField"
                    anchors.left: sectionLabels.right
                    anchors.leftMargin: Style.defSpacing
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.form.sections
                    placeholderText: "{\"channels\": []}"
                    Accessible.name: qsTrId("form_sections")
                    Accessible.description: qsTrId("form_sections_hint")
                    onTextEdited: root.form.sections = text
                    onAccepted: root.run()
                }
            }
        }
    }

    Rectangle {
        id: problemBar
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? problemText.implicitHeight + 2 * Style.defSpacing : 0
        // What is wrong with a field stands beside it.
        visible: root.form.problem.length > 0 && root.form.takesSections
        color: Style.surfaceRaised

        UiLabel {
            id: problemText
            objectName: "formProblem"
            x: root.inset
            width: parent.width - 2 * root.inset
            anchors.verticalCenter: parent.verticalCenter
            text: root.form.problem
            wrapMode: TextEdit.Wrap
            elide: Qt.ElideNone
            color: Style.error
            font.pixelSize: Style.smallTextSize

            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    EmptyState {
        visible: root.form.command.length === 0
        text: qsTrId("form_no_command")
    }
}
