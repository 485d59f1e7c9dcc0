import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// One line of the board: its name, its switch, slider or lamp, its last seconds and its level.
Item {
    id: root

    property var lines
    property var view
    property var trigger
    // Widths of the names, the controls and the level.
    property var columns
    property bool current: false
    // Chosen beside the current one.
    property bool alsoChosen: false
    property bool focused: false

    readonly property int line: model.line
    readonly property var pointedUs: view.pointedUs
    readonly property bool known: model.known // or asked for
    readonly property bool adjustable: known && (model.settable || model.drivable)
    // Undefined while nobody knows it.
    readonly property var shownLevel: pointedUs !== undefined ? lines.levelAt(line, pointedUs) : (known ? model.level : undefined)
    // What the level alone does not say, in a word.
    readonly property string remark: {
        if (model.status !== "known") {
            const word = qsTrId("board_" + model.status)
            return known ? "\u2026 " + word : word // without a control there is a mark
        }
        if (model.blinking) {
            return qsTrId("board_blinking")
        }
        return !model.output && !model.settable ? qsTrId("board_driven") : ""
    }
    readonly property string levelText: shownLevel !== undefined ? String(shownLevel)
                                        : (model.status === "old" && pointedUs === undefined ? "(" + model.level + ")" : "\u2013")
    readonly property color background: (current || alsoChosen) && focused ? Style.accentSoft : Style.surface

    signal chosen(int modifiers)
    // A click begins to write its level as a number.
    signal editPressed()
    // The line below it was dragged to make the rows this high.
    signal heightWanted(real height)

    function adjust(share) {
        if (adjustable) {
            lines.setLevel(line, model.analog ? Math.round(model.level + share * model.highest)
                                              : (share > 0 ? 1 : 0))
        }
    }

    function toggle() {
        if (adjustable) {
            lines.setLevel(line, model.level > model.highest / 2 ? 0 : model.highest)
        }
    }

    // Begins to write the level as a number.
    function edit() {
        if (numberLoader.item) {
            numberLoader.item.forceActiveFocus(Qt.ShortcutFocusReason)
        }
    }

    implicitHeight: columns.rowHeight

    Accessible.role: adjustable ? (model.analog ? Accessible.Slider : Accessible.CheckBox) : Accessible.Indicator
    Accessible.name: model.channels.length > 0 ? model.name + ", " + model.channels : model.name
    Accessible.description: (levelText + " " + remark).trim()
    Accessible.selected: current || alsoChosen
    Accessible.onPressAction: toggle()
    Accessible.onToggleAction: toggle()
    Accessible.onIncreaseAction: adjust(0.01)
    Accessible.onDecreaseAction: adjust(-0.01)
    Accessible.checked: known && !model.analog && model.level === 1

    Rectangle {
        anchors.fill: parent
        color: root.background
    }

    UiFocusRing {
        anchors.margins: 0 // what is remarked below the control stays readable
        z: 1 // above the course
        shown: root.current && root.focused
    }

    Rectangle {
        objectName: "alsoChosenMark"
        width: 3
        height: parent.height
        visible: root.alsoChosen
        color: Style.accent
    }

    MouseArea {
        anchors.fill: parent
        onClicked: root.chosen(mouse.modifiers)
    }

    // What the trigger waits for on this line.
    UiLabel {
        objectName: "lineTrigger"
        x: 2
        width: 12
        height: parent.height
        horizontalAlignment: Text.AlignHCenter
        text: {
            root.trigger.text // changes with each condition
            return root.trigger.sign(root.line)
        }
        color: Style.accent
        font.bold: true
    }

    Column {
        id: names
        x: Style.defSpacing * 2
        anchors.verticalCenter: parent.verticalCenter
        width: root.columns.names

        UiLabel {
            width: parent.width
            text: model.name
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
        width: root.columns.control
        height: parent.height

        Loader {
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: remarkLabel.visible ? -6 : 0
            x: item && item.width < parent.width ? (parent.width - item.width) / 2 : 0
            sourceComponent: {
                if (!root.known) {
                    return unknown
                }
                if (root.adjustable) {
                    return model.analog ? slider : lever
                }
                return model.analog ? gauge : lamp
            }
        }
    }

    UiLabel {
        id: remarkLabel
        objectName: "lineRemark"
        anchors.horizontalCenter: control.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 1
        visible: text.length > 0
        text: root.remark
        font.pixelSize: Style.smallestTextSize
        color: Style.textSecondary
    }

    Component {
        id: unknown

        StateMark {
            objectName: "lineUnknown"
            status: model.status
        }
    }

    Component {
        id: lever

        UiSwitch {
            objectName: "lineSwitch"
            Accessible.name: model.name
            focusPolicy: Qt.NoFocus
            checked: model.level > 0
            onToggled: {
                lines.setLevel(root.line, checked ? 1 : 0)
                checked = Qt.binding(() => model.level > 0)
                root.chosen(Qt.NoModifier)
            }
        }
    }

    Component {
        id: slider

        UiSlider {
            objectName: "lineSlider"
            Accessible.name: model.name
            width: root.columns.control
            focusPolicy: Qt.NoFocus
            to: model.highest
            value: model.level
            onMoved: {
                if (model.settable) {
                    lines.setLevel(root.line, Math.round(value))
                }
                root.chosen(Qt.NoModifier)
            }
            // Under the pointer it is where the pointer is, whatever the line does meanwhile; an order sets an
            // output when it is let go.
            onPressedChanged: {
                if (pressed) {
                    value = value
                } else {
                    lines.setLevel(root.line, Math.round(value))
                    value = Qt.binding(() => model.level)
                }
            }
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
            width: Math.min(72, root.columns.control)
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
        width: root.columns.level
        horizontalAlignment: Qt.AlignRight
        objectName: "lineLevel"
        visible: !numberLoader.active
        text: root.levelText
        color: model.status === "old" ? Style.textSecondary : Style.text
        font.bold: root.pointedUs !== undefined
    }

    Loader {
        id: numberLoader
        anchors.right: levelLabel.right
        anchors.verticalCenter: parent.verticalCenter
        active: model.analog && root.adjustable
        sourceComponent: UiTextField {
            objectName: "lineNumber"
            width: root.columns.level
            implicitHeight: 28
            leftPadding: 4
            rightPadding: 6
            activeFocusOnTab: false
            horizontalAlignment: TextInput.AlignRight
            text: root.levelText
            font.bold: root.pointedUs !== undefined
            validator: IntValidator {
                bottom: 0
                top: model.highest
            }
            Accessible.name: model.name

            function take() {
                if (acceptableInput) {
                    lines.setLevel(root.line, Number(text))
                    leave()
                }
            }

            function leave() {
                focus = false // or the list would hand the keyboard back
                root.chosen(Qt.NoModifier)
            }

            onActiveFocusChanged: {
                if (activeFocus) {
                    text = model.level
                    selectAll()
                } else {
                    text = Qt.binding(() => root.levelText)
                }
            }
            onPressed: root.editPressed()
            // Not "accepted", after which the list would take the key to begin anew.
            Keys.onReturnPressed: take()
            Keys.onEnterPressed: take()
            Keys.onEscapePressed: leave()
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        x: Style.defSpacing * 2
        width: parent.width - 2 * x
        height: 1
        color: Style.separator
    }

    MouseArea {
        objectName: "rowHeightHandle"

        property real pressedAt: 0
        property real heightThen: 0

        anchors.bottom: parent.bottom
        width: control.x + control.width
        height: 6
        cursorShape: Qt.SplitVCursor
        preventStealing: true
        onPressed: {
            pressedAt = mapToItem(null, mouse.x, mouse.y).y
            heightThen = root.height
        }
        onPositionChanged: root.heightWanted(heightThen + mapToItem(null, mouse.x, mouse.y).y - pressedAt)
    }
}
