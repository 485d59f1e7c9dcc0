import QtQuick 2.15

Item {
    property bool checked: false
    property bool detachChangingOnClick: false

    signal clicked()

    Accessible.role: Accessible.CheckBox
    Accessible.name: "a box of the bare host"

    MouseArea {
        anchors.fill: parent
        onClicked: {
            if (!parent.detachChangingOnClick) {
                parent.checked = !parent.checked
            }
            parent.clicked()
        }
    }
}
