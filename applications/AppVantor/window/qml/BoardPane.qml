import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../gui/widgets"

// The device as it looks from outside: every line with what drives or shows it, and its last seconds over one
// time axis.
Pane {
    id: root

    property var lines
    property var filter
    property var clock
    readonly property real spanUs: 10e6
    property real pointedAgeUs: -1

    function focusFilter() {
        filterField.forceActiveFocus(Qt.ShortcutFocusReason)
    }

    title: lines.deviceName

    controls: [
        UiTextField {
            id: filterField
            objectName: "lineFilter"
            width: 136
            placeholderText: qsTrId("board_filter")
            Accessible.name: qsTrId("board_filter")
            onTextChanged: root.filter.text = text
        },
        UiButton {
            objectName: "freezeButton"
            text: root.clock.running ? qsTrId("board_freeze") : qsTrId("board_resume")
            otherText: root.clock.running ? qsTrId("board_resume") : qsTrId("board_freeze")
            hint: root.clock.running ? qsTrId("board_freeze_hint") : qsTrId("board_resume_hint")
            onClicked: root.clock.running = !root.clock.running
        }
    ]

    Rectangle {
        id: notice
        width: parent.width
        height: visible ? noticeText.implicitHeight + 2 * Style.defSpacing : 0
        visible: root.lines.state !== "Connected"
        color: Style.surfaceRaised

        UiLabel {
            id: noticeText
            x: root.inset
            width: parent.width - 2 * root.inset
            anchors.verticalCenter: parent.verticalCenter
            text: root.lines.state === "Connecting" ? qsTrId("board_connecting")
                  : (root.lines.state === "Unreachable" ? qsTrId("board_not_connected_because").arg(root.lines.problem)
                                                        : qsTrId("board_not_connected"))
            wrapMode: TextEdit.Wrap
            elide: Qt.ElideNone
            color: root.lines.state === "Unreachable" ? Style.error : Style.text
        }
    }

    Item {
        id: axis
        anchors.top: notice.bottom
        width: parent.width
        height: visible ? 24 : 0
        visible: list.count > 0

        UiLabel {
            objectName: "heldMark"
            x: root.inset
            width: ruler.x - x - Style.defSpacing
            height: parent.height
            visible: !root.clock.running
            text: "\u2016 " + qsTrId("board_held")
            color: Style.accent
            font.bold: true
            font.pixelSize: Style.smallTextSize
        }

        Item {
            id: ruler
            x: root.inset + 88 + Style.defSpacing + 80 + Style.defSpacing
            width: parent.width - x - root.inset - 44 - Style.defSpacing
            height: parent.height

            Repeater {
                model: 6

                UiLabel {
                    readonly property int age: 10 - 2 * index

                    x: ruler.width * index / 5 - width / 2
                    height: ruler.height
                    visible: root.pointedAgeUs < 0
                    text: (age === 0 ? "" : "\u2212") + age + " s"
                    font.pixelSize: Style.smallTextSize
                    color: Style.textSecondary
                }
            }

            UiLabel {
                objectName: "pointedTime"
                x: Math.max(0, Math.min(ruler.width - width,
                                        ruler.width * (1 - root.pointedAgeUs / root.spanUs) - width / 2))
                height: ruler.height
                visible: root.pointedAgeUs >= 0
                text: "\u2212" + (root.pointedAgeUs / 1e6).toFixed(2) + " s"
                font.pixelSize: Style.smallTextSize
                font.bold: true
            }
        }

        Rectangle {
            anchors.bottom: parent.bottom
            x: root.inset
            width: parent.width - 2 * x
            height: 1
            color: Style.separator
        }
    }

    ListView {
        id: list
        objectName: "boardLines"
        anchors.top: axis.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        activeFocusOnTab: count > 0
        model: root.filter
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        // Rows that cannot be seen are not kept up to date either.
        cacheBuffer: 0

        Accessible.role: Accessible.List
        Accessible.name: root.title

        Keys.onSpacePressed: if (currentItem) currentItem.toggle()
        Keys.onLeftPressed: if (currentItem) currentItem.adjust(-0.01)
        Keys.onRightPressed: if (currentItem) currentItem.adjust(0.01)

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: BoardLine {
            width: list.width
            lines: root.lines
            clock: root.clock
            spanUs: root.spanUs
            pointedAgeUs: root.pointedAgeUs
            current: ListView.isCurrentItem
            focused: list.activeFocus
            onPointed: root.pointedAgeUs = ageUs
            onChosen: {
                list.currentIndex = index
                list.forceActiveFocus(Qt.MouseFocusReason)
            }
        }
    }

    EmptyState {
        visible: list.count === 0
        text: root.lines.count === 0 ? qsTrId("board_empty") : qsTrId("board_no_match").arg(filterField.text)
    }
}
