import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// The maintenance page of a tool, exactly as its plugin ships it.
FocusScope {
    id: root

    property alias tool: panel.tool

    function refresh() {
        panel.refresh()
    }

    Rectangle {
        anchors.fill: parent
        color: Style.surface
    }

    PagePanel {
        id: panel
        objectName: "pagePanel"
        anchors.fill: parent
        anchors.leftMargin: Style.defSpacing * 2
        anchors.rightMargin: Style.defSpacing
        visible: problem.length === 0
    }

    EmptyState {
        objectName: "pageProblem"
        visible: panel.problem.length > 0
        text: panel.problem
        horizontalAlignment: Qt.AlignLeft
    }
}
