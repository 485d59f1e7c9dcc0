import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// One line of the board: its name, its switch, slider or lamp, its last seconds and its level.
Item {
    id: root

    property var lines
    property var view
    // Where the pointer is in the time of the view, from 0 to 1; negative while it is elsewhere.
    property real pointedShare: -1
    property bool current: false
    property bool focused: false

    readonly property int line: model.line
    readonly property bool settable: model.settable && model.known
    // Undefined while nobody knows it.
    readonly property var shownLevel: pointedShare >= 0 ? lines.levelAt(line, view.fromUs + pointedShare * view.spanUs)
                                                        : (model.known ? model.level : undefined)
    readonly property color background: current && focused ? Style.accentSoft : Style.surface

    signal chosen()

    function adjust(share) {
        if (settable) {
            lines.setLevel(line, model.analog ? Math.round(model.level + share * model.highest)
                                              : (share > 0 ? 1 : 0))
        }
    }

    function toggle() {
        if (settable) {
            lines.setLevel(line, model.level > model.highest / 2 ? 0 : model.highest)
        }
    }

    implicitHeight: 48

    Accessible.role: settable ? (model.analog ? Accessible.Slider : Accessible.CheckBox) : Accessible.Indicator
    Accessible.name: model.channels.length > 0 ? model.name + ", " + model.channels : model.name
    Accessible.description: model.known ? String(model.level) : qsTrId("board_unknown")
    Accessible.checked: model.known && !model.analog && model.level === 1

    Rectangle {
        anchors.fill: parent
        color: root.background
    }

    UiFocusRing {
        anchors.margins: 2
        shown: root.current && root.focused
    }

    MouseArea {
        anchors.fill: parent
        onClicked: root.chosen()
    }

    Column {
        id: names
        x: Style.defSpacing * 2
        anchors.verticalCenter: parent.verticalCenter
        width: 88

        UiLabel {
            width: parent.width
            text: model.name
            elide: Text.ElideMiddle
            font.bold: true
        }

        UiLabel {
            width: parent.width
            visible: text.length > 0
            text: model.channels
            font.pixelSize: Style.smallTextSize
            color: Style.textSecondary
        }
    }

    Item {
        id: control
        anchors.left: names.right
        anchors.leftMargin: Style.defSpacing
        width: 80
        height: parent.height

        Loader {
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: driven.visible ? -6 : 0
            x: item && item.width < parent.width ? (parent.width - item.width) / 2 : 0
            sourceComponent: !model.known ? unknown
                             : (model.settable ? (model.analog ? slider : lever) : (model.analog ? gauge : lamp))
        }
    }

    // An input that a wire or a waveform feeds takes no setting.
    UiLabel {
        id: driven
        objectName: "lineDriven"
        anchors.horizontalCenter: control.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 1
        visible: model.known && !model.output && !model.settable
        text: qsTrId("board_driven")
        font.pixelSize: Style.smallestTextSize
        color: Style.textSecondary
    }

    // Neither lit nor dark, neither on nor off.
    Component {
        id: unknown

        Rectangle {
            objectName: "lineUnknown"
            width: 20
            height: 20
            radius: Style.radius
            color: "transparent"
            border.color: Style.separator

            UiLabel {
                anchors.centerIn: parent
                text: "?"
                color: Style.textSecondary
            }
        }
    }

    Component {
        id: lever

        UiSwitch {
            objectName: "lineSwitch"
            focusPolicy: Qt.NoFocus
            checked: model.level > 0
            onToggled: {
                lines.setLevel(root.line, checked ? 1 : 0)
                checked = Qt.binding(() => model.level > 0)
                root.chosen()
            }
        }
    }

    Component {
        id: slider

        UiSlider {
            objectName: "lineSlider"
            width: 80
            focusPolicy: Qt.NoFocus
            to: model.highest
            value: model.level
            onMoved: {
                lines.setLevel(root.line, Math.round(value))
                root.chosen()
            }
            // Under the pointer it is where the pointer is, whatever the line does meanwhile.
            onPressedChanged: value = pressed ? value : Qt.binding(() => model.level)
        }
    }

    Component {
        id: lamp

        UiLedIndicator {
            width: 40
            height: 40
            statusColor: model.level > 0 ? Style.toolStatusIn : Style.toolStatusInactive
        }
    }

    Component {
        id: gauge

        Rectangle {
            width: 72
            height: 8
            radius: 4
            color: "transparent"
            border.color: Style.controlBorder

            Rectangle {
                width: Math.max(0, parent.width * model.level / model.highest)
                height: parent.height
                radius: 4
                color: Style.toolStatusIn
            }
        }
    }

    WaveformItem {
        objectName: "lineCourse"
        anchors.left: control.right
        anchors.right: levelLabel.left
        anchors.leftMargin: Style.defSpacing
        anchors.rightMargin: Style.defSpacing
        height: parent.height
        lines: root.lines
        line: root.line
        view: root.view
        color: Style.accent
        gridColor: Style.separator
        fillColor: root.background
    }

    UiLabel {
        id: levelLabel
        anchors.right: parent.right
        anchors.rightMargin: Style.defSpacing * 2
        anchors.verticalCenter: parent.verticalCenter
        width: 44
        horizontalAlignment: Qt.AlignRight
        objectName: "lineLevel"
        text: root.shownLevel === undefined ? "\u2013" : root.shownLevel
        font.bold: root.pointedShare >= 0
    }

    Rectangle {
        anchors.bottom: parent.bottom
        x: Style.defSpacing * 2
        width: parent.width - 2 * x
        height: 1
        color: Style.separator
    }
}
