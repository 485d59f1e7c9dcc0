import QtQuick 2.15

// A lamp. Lit it is a full disc with a bright middle and a halo, dark it is a hollow ring: its shape tells its
// state without its colour.
Item {
    id: root

    property color statusColor: Style.toolStatusInactive
    readonly property bool lit: !Qt.colorEqual(statusColor, Style.toolStatusInactive)

    implicitWidth: 24
    implicitHeight: 24

    Accessible.role: Accessible.Indicator
    Accessible.name: lit ? qsTrId("lamp_on") : qsTrId("lamp_off")

    Loader {
        id: lamp

        readonly property real diameter: Math.round(Math.min(root.width, root.height) * 0.225) * 2

        anchors.centerIn: parent
        active: root.visible
        sourceComponent: Rectangle {
            width: lamp.diameter
            height: width
            radius: width / 2
            color: root.lit ? root.statusColor : "transparent"
            border.color: root.statusColor
            border.width: root.lit ? 0 : 2

            Rectangle {
                anchors.fill: parent
                anchors.margins: -parent.width * 0.3
                visible: root.lit
                radius: width / 2
                color: "transparent"
                border.color: root.statusColor
                border.width: 2
                opacity: 0.45
            }

            Rectangle {
                anchors.centerIn: parent
                visible: root.lit && parent.width > 12
                width: Math.round(parent.width * 0.2) * 2
                height: width
                radius: width / 2
                color: "#ffffff"
                opacity: 0.85
            }
        }
    }
}
