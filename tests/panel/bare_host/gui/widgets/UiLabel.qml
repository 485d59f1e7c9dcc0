import QtQuick 2.15

Item {
    property string text
    property font font
    property bool isBigger: false

    implicitWidth: shown.implicitWidth
    implicitHeight: shown.implicitHeight

    Text {
        id: shown
        text: parent.text
        font: parent.font
    }
}
