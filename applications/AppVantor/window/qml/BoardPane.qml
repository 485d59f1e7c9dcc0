import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import AppVantor 1.0
import "../../gui/widgets"

// The device as it looks from outside: every line with what drives or shows it, and its course over one time
// axis. The lines and the courses have the keyboard apart: on the lines Space and the arrow keys set levels, on
// the courses they stop the time and go from edge to edge.
Pane {
    id: root

    property var lines
    property var filter
    property var clock
    property var view
    property var trigger
    property alias rowHeight: columnWidths.wantedRowHeight
    property var exporter
    property var recorder
    readonly property int chosenLine: list.currentItem ? list.currentItem.line : -1
    // The lines that are chosen beside that one.
    property var alsoChosen: []
    readonly property var chosenLines: [chosenLine].concat(alsoChosen.filter(line => line !== chosenLine))
    // True while the courses do not run: they are frozen, or show the past.
    readonly property bool held: !clock.running || !view.live

    QtObject {
        id: columnWidths

        readonly property bool narrow: root.width < 420
        readonly property int names: narrow ? 72 : 88
        readonly property int control: narrow ? 56 : 80
        readonly property int level: 56
        property real wantedRowHeight: 48
        readonly property real rowHeight: Math.round(Math.max(40, Math.min(240, wantedRowHeight)))
    }

    function focusFilter() {
        filterField.forceActiveFocus(Qt.ShortcutFocusReason)
    }

    function hideChosen() {
        const chosen = chosenLines
        alsoChosen = []
        filter.hide(chosen)
    }

    // Chooses a row: instead of what is chosen, or with Ctrl, beside it.
    function chooseRow(row, modifiers) {
        alsoChosen = modifiers & Qt.ControlModifier ? chosenLines : []
        list.currentIndex = row
    }

    // The row before or after: moves it, chooses it beside what is chosen, or instead of that; or makes the rows
    // lower or higher. True when the modifiers mean one of these.
    function chooseNext(by, modifiers) {
        if (modifiers & (Qt.ControlModifier | Qt.MetaModifier)) {
            return false
        }
        if (modifiers & Qt.AltModifier) {
            if (modifiers & Qt.ShiftModifier) {
                columnWidths.wantedRowHeight = columnWidths.rowHeight + by * Style.baseHeight
            } else {
                moveLine(by)
            }
            return true
        }
        alsoChosen = modifiers & Qt.ShiftModifier ? chosenLines : []
        if (by < 0) {
            list.decrementCurrentIndex()
        } else {
            list.incrementCurrentIndex()
        }
        return true
    }

    function moveLine(by) {
        if (filter.move(list.currentIndex, by)) {
            list.currentIndex += by
        }
    }

    // The chosen line stays chosen, wherever it goes.
    function toggleGroups() {
        const line = chosenLine
        filter.grouped = !filter.grouped
        list.currentIndex = line >= 0 ? filter.rowOf(line) : 0
    }

    function lineAt(y) {
        const item = list.itemAt(0, y - list.y + list.contentY)
        return y >= list.y && item ? item.line : -1
    }

    // Courses that are held for whatever reason run again.
    function holdOrRun() {
        if (held) {
            view.goLive()
        } else {
            clock.running = false
        }
    }

    // Shift chooses among the characters of a key; with another modifier it is a different key.
    function isPlain(event) {
        return !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
    }

    // Takes the keys of the view, wherever in the pane the keyboard is. True when it was one.
    function useKey(event) {
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down) {
            return chooseNext(event.key === Qt.Key_Up ? -1 : 1, event.modifiers)
        }
        return isPlain(event) && usePlainKey(event.key)
    }

    function usePlainKey(key) {
        const share = pointer.inside ? view.pointer : 0.5
        switch (key) {
        case Qt.Key_Plus:
        case Qt.Key_Equal:
            view.zoom(2, pointer.inside ? view.pointer : (view.live ? 1 : 0.5))
            return true
        case Qt.Key_Minus:
            view.zoom(0.5, share)
            return true
        case Qt.Key_F:
            view.showAll()
            return true
        case Qt.Key_L:
            view.goLive()
            return true
        case Qt.Key_1:
        case Qt.Key_2:
            view.setCursor(key === Qt.Key_1 ? 1 : 2, share,
                           pointer.inside ? lineAt(pointer.mouseY + courses.y) : chosenLine)
            return true
        case Qt.Key_Escape:
            view.clearCursors()
            alsoChosen = []
            saveBar.dismiss()
            return true
        case Qt.Key_E:
            exportCourses()
            return true
        case Qt.Key_R:
            record()
            return true
        case Qt.Key_H:
            hideChosen()
            return true
        case Qt.Key_G:
            toggleGroups()
            return true
        case Qt.Key_T:
            trigger.next(chosenLine)
            return true
        }
        return false
    }

    // The keys that only the list of lines has.
    function useListKey(key) {
        const item = list.currentItem
        switch (item ? key : -1) {
        case Qt.Key_Space:
            item.toggle()
            return true
        case Qt.Key_Return:
        case Qt.Key_Enter:
            item.edit()
            return true
        case Qt.Key_Left:
        case Qt.Key_Right:
            item.adjust(key === Qt.Key_Left ? -0.01 : 0.01)
            return true
        }
        return false
    }

    // The keys that only the courses have.
    function useCoursesKey(key) {
        switch (key) {
        case Qt.Key_Space:
            holdOrRun()
            return true
        case Qt.Key_Left:
        case Qt.Key_Right:
            view.stepCursor(chosenLines, key === Qt.Key_Right)
            return true
        }
        return false
    }

    function exportCourses() {
        saveBar.write = file => exporter.save(file)
        saveBar.done = qsTrId("save_done")
        saveBar.open("courses.csv")
    }

    function record() {
        if (recorder.recording) {
            const problem = recorder.end()
            if (problem.length > 0) {
                saveBar.fail(problem)
            } else {
                saveBar.tell(qsTrId("save_done").arg(recorder.file))
            }
        } else {
            saveBar.write = file => recorder.begin(Files.path(file))
            saveBar.done = qsTrId("record_begun")
            saveBar.open("trace.vcd")
        }
    }

    mark: recorder.recording ? (columnWidths.narrow ? "\u25cf" : "\u25cf REC") : ""
    title: lines.deviceName

    controls: [
        UiTextField {
            id: filterField
            objectName: "lineFilter"
            // A narrow bar is its own; in a wider one it leaves room for the title.
            width: Math.max(64, Math.min(136, columnWidths.narrow
                                              ? root.width - 2 * root.inset - linesButton.width - freezeButton.width
                                                - 2 * Style.defSpacing - (root.mark.length > 0 ? 24 : 0)
                                              : root.width - 320))
            placeholderText: qsTrId("board_filter")
            Accessible.name: qsTrId("board_filter")
            onTextChanged: {
                root.alsoChosen = []
                root.filter.text = text
            }
            Keys.onEscapePressed: clear()
        },
        UiButton {
            id: linesButton
            objectName: "linesButton"
            text: qsTrId("lines_menu") + (root.filter.hiddenCount > 0 ? " \u2212" + root.filter.hiddenCount : "")
            hint: linesMenu.visible ? "" : qsTrId("lines_menu_hint")
            onClicked: linesMenu.open()

            ActionMenu {
                id: linesMenu
                objectName: "linesMenu"
                y: linesButton.height + 2
                actions: [
                    {text: qsTrId("lines_hide"), keys: "H", enabled: root.chosenLine >= 0, run: () => root.hideChosen()},
                    {text: root.filter.hiddenCount > 0 ? qsTrId("lines_show_hidden", root.filter.hiddenCount)
                                                       : qsTrId("lines_show_all"), keys: "",
                     enabled: root.filter.hiddenCount > 0, run: () => root.filter.showHidden()},
                    {text: qsTrId("lines_up"), keys: "Alt+\u2191", enabled: list.currentIndex > 0, run: () => root.moveLine(-1)},
                    {text: qsTrId("lines_down"), keys: "Alt+\u2193", enabled: list.currentIndex < list.count - 1,
                     run: () => root.moveLine(1)},
                    {text: root.filter.grouped ? qsTrId("lines_ungroup") : qsTrId("lines_group"), keys: "G", enabled: true,
                     run: () => root.toggleGroups()},
                    {text: qsTrId("lines_trigger"), keys: "T", enabled: root.chosenLine >= 0,
                     run: () => root.trigger.next(root.chosenLine)},
                    {text: qsTrId("export_courses"), keys: "E", enabled: list.count > 0, run: () => root.exportCourses()},
                    {text: root.recorder.recording ? qsTrId("record_stop") : qsTrId("record_begin"), keys: "R",
                     enabled: true, run: () => root.record()}
                ]
            }
        },
        UiButton {
            id: freezeButton
            objectName: "freezeButton"
            text: root.held ? qsTrId("board_resume") : qsTrId("board_freeze")
            otherText: root.held ? qsTrId("board_freeze") : qsTrId("board_resume")
            hint: root.held ? qsTrId("board_resume_hint") : qsTrId("board_freeze_hint")
            onClicked: root.holdOrRun()
        }
    ]

    DeviceNotice {
        id: notice
        width: parent.width
        lines: root.lines
        inset: root.inset
    }

    SaveBar {
        id: saveBar
        objectName: "courseSaveBar"
        anchors.top: notice.bottom
        width: parent.width
    }

    Connections {
        target: root.recorder
        function onFailed(problem) {
            saveBar.fail(problem)
        }
    }

    TimeAxis {
        id: axis
        anchors.top: saveBar.bottom
        width: parent.width
        height: visible ? 24 : 0
        visible: list.count > 0
        view: root.view
        clock: root.clock
        held: root.held
        inset: root.inset
        coursesX: root.inset + columnWidths.names + columnWidths.control + 2 * Style.defSpacing
        coursesWidth: width - coursesX - root.inset - columnWidths.level - Style.defSpacing
    }

    ListView {
        id: list
        objectName: "boardLines"
        anchors.top: axis.bottom
        anchors.bottom: triggerBar.top
        width: parent.width
        activeFocusOnTab: count > 0
        model: root.filter
        section.property: root.filter.grouped ? "group" : ""
        section.delegate: Rectangle {
            width: list.width
            height: 24
            color: Style.surfaceRaised

            Accessible.role: Accessible.Heading
            Accessible.name: section

            UiLabel {
                objectName: "groupName"
                x: root.inset
                width: parent.width - 2 * x
                height: parent.height
                text: section
                font.bold: true
                font.pixelSize: Style.smallTextSize
                color: Style.textSecondary
            }
        }
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        // Rows that cannot be seen are not kept up to date either.
        cacheBuffer: 0

        Accessible.role: Accessible.List
        Accessible.name: root.title

        Keys.onPressed: event.accepted = root.useKey(event) || (root.isPlain(event) && root.useListKey(event.key))

        T.ScrollBar.vertical: UiScrollBar {}

        delegate: BoardLine {
            width: list.width
            lines: root.lines
            view: root.view
            columns: columnWidths
            trigger: root.trigger
            onHeightWanted: columnWidths.wantedRowHeight = height
            current: ListView.isCurrentItem
            focused: list.activeFocus || courses.activeFocus
            alsoChosen: root.alsoChosen.includes(line)
            onEditPressed: root.chooseRow(index, Qt.NoModifier)
            onChosen: {
                root.chooseRow(index, modifiers)
                list.forceActiveFocus(Qt.MouseFocusReason)
            }
        }
    }

    FocusScope {
        id: courses
        objectName: "courses"
        x: axis.coursesX
        anchors.top: axis.top
        anchors.bottom: triggerBar.top
        width: axis.coursesWidth
        visible: list.count > 0
        activeFocusOnTab: true
        clip: true

        Accessible.role: Accessible.Chart
        Accessible.name: qsTrId("courses_title")
        Accessible.description: reading.cursorsText
        Accessible.focusable: true

        Keys.onPressed: event.accepted = root.useKey(event) || (root.isPlain(event) && root.useCoursesKey(event.key))

        // Below the axis, whose outermost times stand out on both sides.
        UiFocusRing {
            objectName: "coursesRing"
            anchors.margins: 0
            anchors.topMargin: axis.height
            shown: courses.activeFocus
        }

        CourseMarks {
            anchors.fill: parent
            view: root.view
            trigger: root.trigger
            coursesY: axis.height
        }

        Rectangle {
            x: courses.width * root.view.pointer
            y: axis.height
            width: 1
            height: parent.height - y
            visible: pointer.inside
            color: Style.text
            opacity: 0.5
        }

        Binding {
            target: root.view
            property: "pointer"
            value: pointer.containsMouse ? Math.max(0, Math.min(1, pointer.mouseX / pointer.width)) : -1
        }

        MouseArea {
            id: pointer

            readonly property bool inside: root.view.pointer >= 0
            property real grip: -1
            property bool drags: false

            anchors.fill: parent
            hoverEnabled: true
            preventStealing: true
            onPressed: {
                grip = mouse.x
                drags = false
                courses.forceActiveFocus(Qt.MouseFocusReason)
                const row = list.indexAt(0, mouse.y - list.y + courses.y + list.contentY)
                if (row >= 0) {
                    root.chooseRow(row, mouse.modifiers)
                }
            }
            onPositionChanged: {
                drags = drags || Math.abs(mouse.x - grip) >= 4 // a hand is never quite still
                if (pressed && drags) {
                    root.view.pan((mouse.x - grip) / width)
                    grip = mouse.x
                }
            }
            onWheel: root.view.zoom(Math.pow(1.25, wheel.angleDelta.y / 120), root.view.pointer)
        }
    }

    TriggerBar {
        id: triggerBar
        objectName: "triggerBar"
        anchors.bottom: reading.top
        width: parent.width
        visible: root.trigger.active && list.count > 0
        trigger: root.trigger
        inset: root.inset
    }

    CourseReading {
        id: reading
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? 28 : 0
        visible: list.count > 0
        view: root.view
        inset: root.inset
        line: root.chosenLine
        pointedLine: pointer.inside ? root.lineAt(pointer.mouseY + courses.y) : -1
    }

    EmptyState {
        visible: list.count === 0
        text: root.lines.count === 0 ? qsTrId("board_empty") : qsTrId("board_no_match").arg(filterField.text)
    }
}
