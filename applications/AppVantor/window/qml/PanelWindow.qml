import QtQuick 2.15
import "../../gui/widgets"

// The maintenance page of one tool alone.
Rectangle {
    id: root

    property alias tool: pagePane.tool
    // "light", "dark", or empty for that of the system.
    property string theme: ""

    color: Style.background

    Component.onCompleted: {
        if (theme.length > 0) {
            Style.dark = theme === "dark"
        }
    }

    Shortcut {
        sequence: "F5"
        onActivated: pagePane.refresh()
    }

    PagePane {
        id: pagePane
        anchors.fill: parent
    }
}
