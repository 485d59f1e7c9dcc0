import QtQuick 2.15
import "../../gui/widgets"

// A parameter of the command: its name, the editor that suits its type, and what it means. An empty editor shows
// the default that then counts.
Item {
    id: root

    property var form

    readonly property int row: index
    readonly property string parameter: model.name
    readonly property string description: model.description
    readonly property string editor: model.editor
    readonly property string entered: model.text
    readonly property var choices: model.choices
    readonly property string problem: model.problem
    readonly property string hint: model.defaultText.length > 0 ? qsTrId("form_default").arg(model.defaultText) : ""

    // Enter was pressed in the editor.
    signal submitted()

    implicitHeight: visible ? 40 + (problem.length > 0 ? problemLabel.height : 0) : 0
    visible: model.used

    UiLabel {
        id: problemLabel
        objectName: "fieldProblem"
        anchors.bottom: parent.bottom
        anchors.left: editorLoader.left
        anchors.right: editorLoader.right
        height: implicitHeight + 4
        visible: text.length > 0
        text: root.problem
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        color: Style.error
        font.pixelSize: Style.smallTextSize

        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Column {
        id: labels
        y: (40 - height) / 2
        width: parent.width * 0.4

        UiLabel {
            width: parent.width
            text: root.parameter
        }

        UiLabel {
            width: parent.width
            text: root.description
            font.pixelSize: Style.smallTextSize
            color: Style.textSecondary
        }
    }

    Loader {
        id: editorLoader
        anchors.left: labels.right
        anchors.leftMargin: Style.defSpacing
        anchors.right: parent.right
        y: (40 - height) / 2
        height: Style.controlHeight
        sourceComponent: root.editor === "channel" || root.editor === "choice" ? choiceEditor
                         : (root.editor === "bool" ? boolEditor : textEditor)
    }

    Component {
        id: textEditor

        UiTextField {
            objectName: "parameterText"
            text: root.entered
            placeholderText: root.hint
            inputMethodHints: root.editor === "number" ? Qt.ImhFormattedNumbersOnly : Qt.ImhNone
            Accessible.name: root.parameter
            Accessible.description: root.description
            wrong: root.problem.length > 0
            onTextEdited: root.form.setText(root.row, text)
            onAccepted: root.submitted()
        }
    }

    Component {
        id: choiceEditor

        UiComboBox {
            objectName: root.editor === "channel" ? "parameterChannel" : "parameterChoice"
            editable: true
            model: root.choices
            placeholderText: root.editor === "channel" ? qsTrId("form_channel")
                                                       : (root.hint.length > 0 ? root.hint : qsTrId("form_not_given"))
            wrong: root.problem.length > 0
            onAccepted: root.submitted()
            Accessible.name: root.parameter
            Accessible.description: root.description
            currentIndex: -1
            Component.onCompleted: {
                editText = root.entered
                ready = true
            }
            onEditTextChanged: {
                if (ready) {
                    const word = find(editText, Qt.MatchFixedString) // in whatever case it was typed
                    root.form.setText(root.row, word >= 0 ? textAt(word) : editText)
                }
            }
            onActiveFocusChanged: takeEntered()

            property bool ready: false

            // Not while it is being typed.
            function takeEntered() {
                if (!activeFocus && editText !== root.entered) {
                    editText = root.entered
                }
            }

            Connections {
                target: root
                function onEnteredChanged() {
                    takeEntered()
                }
            }
        }
    }

    Component {
        id: boolEditor

        UiComboBox {
            objectName: "parameterBool"
            model: [root.hint.length > 0 ? root.hint : qsTrId("form_not_given"), "true", "false"]
            currentIndex: Math.max(0, model.indexOf(root.entered))
            Accessible.name: root.parameter
            Accessible.description: root.description
            onActivated: root.form.setText(root.row, index === 0 ? "" : model[index])
            Keys.onReturnPressed: {
                event.accepted = !popup.visible
                if (!popup.visible) {
                    root.submitted()
                }
            }
        }
    }
}
