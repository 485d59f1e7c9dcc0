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
    readonly property string hint: model.defaultText.length > 0 ? qsTrId("form_default").arg(model.defaultText) : ""

    implicitHeight: 40

    Column {
        id: labels
        anchors.verticalCenter: parent.verticalCenter
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
        anchors.left: labels.right
        anchors.leftMargin: Style.defSpacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        height: Style.controlHeight
        sourceComponent: root.editor === "channel" ? channelEditor : (root.editor === "bool" ? boolEditor : textEditor)
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
            onTextEdited: root.form.setText(root.row, text)
        }
    }

    Component {
        id: channelEditor

        UiComboBox {
            objectName: "parameterChannel"
            editable: true
            model: root.choices
            placeholderText: qsTrId("form_channel")
            Accessible.name: root.parameter
            Accessible.description: root.description
            currentIndex: -1
            Component.onCompleted: {
                editText = root.entered
                ready = true
            }
            onEditTextChanged: {
                if (ready) {
                    root.form.setText(root.row, editText)
                }
            }

            property bool ready: false

            Connections {
                target: root
                function onEnteredChanged() {
                    if (editText !== root.entered) {
                        editText = root.entered
                    }
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
        }
    }
}
