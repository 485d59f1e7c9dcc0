import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import AppVantor 1.0
import "../widgets"

// The frame of every maintenance page: the tool's name and connection above, the page's content below, which
// scrolls. It asks for fresh data when the tool is there, when the user wants it, and again and again while it
// is live.
Item {
    id: panel

    property string name: ""
    property bool connected: false
    property Item contentItem: null
    property real spacing: Style.defSpacing

    property bool live: true
    property int liveIntervalMs: 500
    // What the host knows of the tool that the page is for.
    property bool hasChannels: true
    property string connectionProblem: ""

    readonly property string notice: {
        if (!connected) {
            return connectionProblem.length > 0 ? qsTrId("panel_not_connected_because").arg(connectionProblem)
                                                : qsTrId("panel_not_connected")
        }
        if (!hasChannels) {
            return qsTrId("panel_no_public_channels")
        }
        return texts.hidden ? qsTrId("panel_too_narrow") : ""
    }

    signal updateData()

    // The text of the page at a place of the scene, if it is cut short there; labels show themselves whole.
    function cutTextAt(scenePosition) {
        let item = null
        let below = contentItem
        while (below) {
            item = below
            const place = item.mapFromItem(null, scenePosition.x, scenePosition.y)
            below = item.childAt(place.x, place.y)
        }
        return item instanceof Text && !(item instanceof UiLabel) && item.truncated ? item : null
    }

    // What the header takes; the width of the content is the page's own.
    implicitWidth: nameLabel.implicitWidth + Style.defSpacing + actions.width
    implicitHeight: flickable.y + flickable.contentHeight

    onContentItemChanged: {
        if (contentItem) {
            contentItem.parent = flickable.contentItem
        }
    }
    // The channels of a tool that is just there are made in the same pass of the event loop.
    onConnectedChanged: Qt.callLater(updateData)

    Keys.onPressed: {
        if (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp) {
            flickable.scrollTo(flickable.contentY + flickable.height * (event.key === Qt.Key_PageDown ? 0.9 : -0.9))
            event.accepted = true
        }
    }

    Accessible.role: Accessible.Pane
    Accessible.name: name

    PageTexts {
        id: texts
        font: Qt.font({family: Style.fontFamily, pixelSize: Style.textSize})
        color: Style.text
        root: panel.contentItem
    }

    HoverHandler {
        id: pointer
    }

    Loader {
        readonly property Item cutText: pointer.hovered ? panel.cutTextAt(pointer.point.scenePosition) : null

        objectName: "panelCutText"
        active: cutText !== null
        sourceComponent: UiToolTip {
            parent: cutText
            text: cutText.text
            visible: true
        }
    }

    Timer {
        interval: panel.liveIntervalMs
        repeat: true
        running: panel.live && panel.connected && panel.visible
        onTriggered: panel.updateData()
    }

    Item {
        id: header
        width: parent.width
        height: 48

        Column {
            anchors.left: parent.left
            anchors.right: actions.left
            anchors.rightMargin: Style.defSpacing
            anchors.verticalCenter: parent.verticalCenter

            UiLabel {
                id: nameLabel
                objectName: "panelName"
                width: parent.width
                text: panel.name
                isBigger: true
                font.bold: true
            }

            Row {
                UiLedIndicator {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 16
                    height: 16
                    statusColor: panel.connected ? Style.toolStatusIn : Style.toolStatusInactive
                }

                UiLabel {
                    objectName: "panelState"
                    width: Math.max(0, Math.min(implicitWidth, actions.x - x))
                    leftPadding: 4
                    text: panel.connected ? qsTrId("connected") : qsTrId("not_connected")
                    font.pixelSize: Style.smallTextSize
                    color: Style.textSecondary
                }
            }
        }

        Row {
            id: actions
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Style.defSpacing * 2

            UiSwitch {
                objectName: "panelLive"
                text: qsTrId("panel_live")
                hint: qsTrId("panel_live_hint")
                checked: panel.live
                onToggled: panel.live = checked
            }

            UiButton {
                objectName: "panelRefresh"
                text: qsTrId("panel_refresh")
                hint: qsTrId("panel_refresh_hint")
                enabled: panel.connected
                onClicked: panel.updateData()
            }
        }
    }

    Rectangle {
        id: noticeBar
        anchors.top: header.bottom
        width: parent.width
        height: visible ? noticeText.implicitHeight + 2 * Style.defSpacing : 0
        visible: panel.notice.length > 0
        radius: Style.radius
        color: Style.surfaceRaised
        border.color: Style.separator

        UiLabel {
            id: noticeText
            objectName: "panelNotice"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: Style.defSpacing
            anchors.verticalCenter: parent.verticalCenter
            text: panel.notice
            wrapMode: Text.Wrap
            elide: Text.ElideNone
        }
    }

    UiFlickable {
        id: flickable
        objectName: "panelFlickable"
        anchors.top: noticeBar.bottom
        anchors.topMargin: Style.defSpacing
        anchors.bottom: parent.bottom
        width: parent.width
        contentHeight: panel.contentItem ? panel.contentItem.height + Style.defSpacing : 0

        // Half beside the content, whose rows leave no more room than the column's spacing.
        T.ScrollBar.vertical: UiScrollBar {
            parent: panel
            anchors.top: flickable.top
            anchors.bottom: flickable.bottom
            anchors.right: flickable.right
            anchors.rightMargin: -4
        }
    }
}
