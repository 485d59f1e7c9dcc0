import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// The maintenance page of a tool, exactly as its plugin ships it.
FocusScope {
    id: root

    property alias tool: panel.tool
    // The width at which nothing of the page is cut.
    readonly property real neededWidth: Math.ceil(Math.max(panel.rowsWidth, panel.page ? panel.page.implicitWidth : 0))
                                        + panel.anchors.leftMargin + panel.anchors.rightMargin

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
        anchors.bottomMargin: clickBar.height
        visible: problem.length === 0
        font: Qt.font({family: Style.fontFamily, pixelSize: Style.textSize})
    }

    EmptyState {
        objectName: "pageProblem"
        visible: panel.problem.length > 0
        text: panel.problem
        horizontalAlignment: Qt.AlignLeft
    }

    // A click that failed is told here, beside the page that it was made on.
    Rectangle {
        id: clickBar
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? Math.max(48, clickText.implicitHeight + 2 * Style.defSpacing) : 0
        visible: panel.clickProblem.length > 0
        color: Style.surfaceRaised

        Rectangle {
            width: 4
            height: parent.height
            color: Style.error
        }

        UiLabel {
            id: clickText
            objectName: "clickProblem"
            anchors.left: parent.left
            anchors.leftMargin: Style.defSpacing * 2
            anchors.right: dismissButton.left
            anchors.rightMargin: Style.defSpacing
            anchors.verticalCenter: parent.verticalCenter
            text: panel.clickProblem
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            color: Style.error

            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }

        UiButton {
            id: dismissButton
            objectName: "dismissButton"
            anchors.right: parent.right
            anchors.rightMargin: Style.defSpacing
            anchors.verticalCenter: parent.verticalCenter
            text: qsTrId("page_dismiss")
            onClicked: panel.dismissClickProblem()
        }
    }
}
