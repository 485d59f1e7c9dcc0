pragma Singleton
import QtQuick 2.15

QtObject {
    readonly property real baseWidth: 8
    readonly property real baseHeight: 8
    readonly property real defSpacing: 8
    readonly property color toolStatusIn: "green"
    readonly property color toolStatusInactive: "gray"
    readonly property color widgetDisabledBorderColor: "silver"
}
