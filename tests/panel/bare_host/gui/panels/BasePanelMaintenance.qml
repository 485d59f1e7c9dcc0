import QtQuick 2.15

Item {
    property string name
    property bool connected
    property Item contentItem
    property real spacing: 8

    signal updateData()

    onContentItemChanged: contentItem.parent = this
}
