import QtQuick 2.15

// A small picture by its name, drawn in the colour of the text. A name that is not known shows its first letter.
Item {
    id: root

    property string name: ""

    implicitWidth: 24
    implicitHeight: 24

    Accessible.role: Accessible.Graphic
    Accessible.name: name === "icon-analoginput" ? qsTrId("glyph_analogue") : name

    Loader {
        anchors.centerIn: parent
        active: root.visible && root.name.length > 0
        sourceComponent: root.name === "icon-analoginput" ? samples : letter
    }

    // Samples of a wave, for an analogue value.
    Component {
        id: samples

        Row {
            id: bars

            readonly property real side: Math.min(root.width, root.height)

            spacing: side / 12

            Repeater {
                model: [0.3, 0.6, 1, 0.75, 0.45, 0.25]

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: bars.side / 12
                    height: bars.side * modelData
                    radius: width / 2
                    color: Style.textSecondary
                }
            }
        }
    }

    Component {
        id: letter

        UiLabel {
            text: root.name.charAt(0).toUpperCase()
            color: Style.textSecondary
        }
    }
}
