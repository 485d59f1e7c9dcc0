import QtQuick 2.15
import AppVantor 1.0
import "../../gui/widgets"

// The bench: tools, the chosen tool's page and the board side by side, orders below.
Rectangle {
    id: root

    property var tools
    property var lines
    property var lineFilter
    property var clock
    property var courses
    property var trigger
    property var exporter
    property var recorder
    // The versions of what runs, for people.
    property string versions: ""
    property alias rowHeight: boardPane.rowHeight
    // As the user has chosen it: "light", "dark", or empty.
    property string chosenTheme: ""
    property var form
    property var orders
    property var orderEvents
    property var pageReads
    // What may take the place of this configuration; null for nothing.
    property var choice: null
    // The script that is carried out; null for none.
    property var script: null
    // "light", "dark", or empty for that of the system.
    property string theme: ""

    // Where the user has dragged the gaps to.
    // 0 for what the page leaves it.
    property real wantedToolsWidth: 0
    // 0 for what its rows need.
    property real wantedPageWidth: 0
    property real wantedCommandWidth: 448
    // A share of the height; 0 for what suits it.
    property real wantedLowerShare: 0
    // What is folded away.
    property bool toolsFolded: false
    property bool pageFolded: false
    property bool lowerFolded: false
    // Where they are: every pane keeps a least size while the window has room for it. The page comes first, but
    // leaves the board a third of what is beside the tools.
    readonly property real leastBoardWidth: 320
    readonly property real toolsWidth: {
        if (toolsFolded) {
            return 0
        }
        return wantedToolsWidth > 0 ? bounded(96, wantedToolsWidth, width - 640)
                                    : bounded(144, width - 16 - leastBoardWidth - (pageFolded ? 0 : pagePane.neededWidth), 176)
    }
    readonly property real besideTools: width - toolsWidth - 16
    readonly property real pageWidth: wantedPageWidth > 0 ? wantedPageWidth
                                                          : Math.min(pagePane.neededWidth, besideTools * 2 / 3)
    readonly property real boardWidth: pageFolded ? besideTools
                                                  : bounded(leastBoardWidth, besideTools - pageWidth, besideTools - 320)
    readonly property real commandWidth: bounded(280, wantedCommandWidth, width - 285)
    readonly property real lowerHeight: lowerFolded ? 0 : bounded(120, wantedLowerShare > 0 ? wantedLowerShare * height
                                                                             : Math.max(height * 0.3, Math.min(300, height * 0.4)),
                                                                 height - 208)
    readonly property real upperHeight: height - lowerHeight - lowerHandle.height

    readonly property var panes: [toolsPane, pagePane, boardPane, commandPane, ordersPane].filter(pane => pane.visible)

    function bounded(least, wanted, most) {
        return Math.round(Math.max(least, Math.min(wanted, most)))
    }

    function focusNextPane(step) {
        const current = panes.findIndex(pane => pane.activeFocus)
        const next = (Math.max(0, current) + step + panes.length) % panes.length
        panes[next].forceActiveFocus(Qt.TabFocusReason)
        const first = panes[next].nextItemInFocusChain(true)
        if (first) {
            first.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    // The window may be closed, though something runs.
    signal closeConfirmed()
    // Another bench may take the place of this one, though something runs.
    signal replacementConfirmed()

    readonly property bool asksToLeave: closeDialog.visible
    property alias reasonToStay: closeDialog.reason

    function askToLeave(deed, reason) {
        closeDialog.deed = deed
        closeDialog.reason = reason
        closeDialog.open()
    }

    readonly property bool canRunScript: !!script && pagePane.tool !== null

    function askForScript() {
        scriptDialog.ask(choice.folder)
    }

    function fileActions() {
        return [
            {text: qsTrId("file_open"), keys: "Ctrl+O", enabled: !!root.choice, run: () => openDialog.ask(root.choice.folder)},
            {text: qsTrId("file_reload"), keys: "Ctrl+R", enabled: !!root.choice && root.choice.reloadable,
             run: () => root.choice.reload()},
            {text: qsTrId("file_script"), keys: "F9", enabled: root.canRunScript, run: () => root.askForScript()}
        ].concat((root.choice ? root.choice.recent() : []).map(file => {
            return {text: Files.shortPath(file), keys: "", enabled: true, run: () => root.choice.open(file)}
        }))
    }

    color: Style.background

    onChosenThemeChanged: {
        if (chosenTheme.length > 0) {
            Style.dark = chosenTheme === "dark"
        }
    }

    Component.onCompleted: {
        if (theme.length > 0) {
            Style.dark = theme === "dark"
        }
    }

    Shortcut {
        sequence: "F5"
        onActivated: pagePane.refresh()
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        onActivated: commandPane.run()
    }

    Shortcut {
        sequence: "Ctrl+O"
        enabled: !!root.choice
        onActivated: openDialog.ask(root.choice.folder)
    }

    Shortcut {
        sequence: "Ctrl+R"
        enabled: !!root.choice && root.choice.reloadable
        onActivated: root.choice.reload()
    }

    Shortcut {
        sequence: "F9"
        enabled: root.canRunScript
        onActivated: root.askForScript()
    }

    Shortcut {
        sequence: StandardKey.Find
        onActivated: boardPane.focusFilter()
    }

    Shortcut {
        sequence: "F6"
        onActivated: root.focusNextPane(1)
    }

    Shortcut {
        sequence: "Shift+F6"
        onActivated: root.focusNextPane(-1)
    }

    Shortcut {
        sequence: StandardKey.HelpContents
        onActivated: help.open()
    }

    Shortcut {
        sequence: "Ctrl+1"
        onActivated: root.toolsFolded = !root.toolsFolded
    }

    Shortcut {
        sequence: "Ctrl+2"
        onActivated: root.pageFolded = !root.pageFolded
    }

    Shortcut {
        sequence: "Ctrl+3"
        onActivated: root.lowerFolded = !root.lowerFolded
    }

    ToolsPane {
        id: toolsPane
        visible: !root.toolsFolded
        width: root.toolsWidth
        height: root.upperHeight
        tools: root.tools
        deviceState: root.lines.state
        onThemeChosen: root.chosenTheme = dark ? "dark" : "light"
        onHelpWanted: help.open()
        fileActions: root.fileActions
        onAllOffWanted: {
            for (let row = 0; row < root.tools.count; ++row) {
                root.orders.switchOff(root.tools.toolAt(row))
            }
        }
    }

    SplitHandle {
        id: toolsHandle
        objectName: "toolsHandle"
        name: qsTrId("split_tools")
        x: root.toolsWidth
        height: root.upperHeight
        foldable: true
        folded: root.toolsFolded
        text: folded ? qsTrId("fold_show_tools") : qsTrId("fold_hide_tools")
        onFoldWanted: root.toolsFolded = !root.toolsFolded
        onDragged: root.wantedToolsWidth = root.toolsWidth + distance
    }

    PagePane {
        id: pagePane
        anchors.left: toolsHandle.right
        anchors.right: boardHandle.left
        height: root.upperHeight
        visible: !root.pageFolded
        tool: toolsPane.currentRow >= 0 ? root.tools.toolAt(toolsPane.currentRow) : null
    }

    SplitHandle {
        id: boardHandle
        objectName: "boardHandle"
        name: qsTrId("split_page")
        anchors.right: boardPane.left
        height: root.upperHeight
        foldable: true
        folded: root.pageFolded
        text: folded ? qsTrId("fold_show_page") : qsTrId("fold_hide_page")
        onFoldWanted: root.pageFolded = !root.pageFolded
        onDragged: root.wantedPageWidth = root.besideTools - root.boardWidth + distance
    }

    BoardPane {
        id: boardPane
        anchors.right: parent.right
        width: root.boardWidth
        height: root.upperHeight
        lines: root.lines
        filter: root.lineFilter
        clock: root.clock
        view: root.courses
        trigger: root.trigger
        exporter: root.exporter
        recorder: root.recorder
    }

    SplitHandle {
        id: lowerHandle
        objectName: "lowerHandle"
        name: qsTrId("split_lower")
        y: root.upperHeight
        width: parent.width
        upright: false
        foldable: true
        folded: root.lowerFolded
        text: folded ? qsTrId("fold_show_lower") : qsTrId("fold_hide_lower")
        onFoldWanted: root.lowerFolded = !root.lowerFolded
        onDragged: root.wantedLowerShare = (root.lowerHeight - distance) / root.height
    }

    CommandPane {
        id: commandPane
        anchors.top: lowerHandle.bottom
        anchors.bottom: parent.bottom
        width: root.commandWidth
        visible: !root.lowerFolded
        form: root.form
    }

    SplitHandle {
        id: commandHandle
        objectName: "commandHandle"
        name: qsTrId("split_command")
        anchors.top: lowerHandle.bottom
        anchors.bottom: parent.bottom
        x: commandPane.width
        visible: !root.lowerFolded
        onDragged: root.wantedCommandWidth = root.commandWidth + distance
    }

    OrdersPane {
        id: ordersPane
        anchors.top: lowerHandle.bottom
        anchors.bottom: parent.bottom
        anchors.left: commandHandle.right
        anchors.right: parent.right
        visible: !root.lowerFolded
        orders: root.orders
        orderEvents: root.orderEvents
        pageReads: root.pageReads
        script: root.script
    }

    Binding {
        target: root.form
        property: "tool"
        value: pagePane.tool
    }

    HelpPopup {
        id: help
        objectName: "help"
        versions: root.versions
    }

    OpenDialog {
        id: openDialog
        objectName: "openDialog"
        title: qsTrId("open_title")
        suffix: "json"
        onChosen: root.choice.open(file)
    }

    OpenDialog {
        id: scriptDialog
        objectName: "scriptDialog"
        title: qsTrId("script_title")
        action: qsTrId("script_run")
        onChosen: {
            root.lowerFolded = false
            root.script.begin(pagePane.tool, file)
        }
    }

    MistakesDialog {
        id: mistakesDialog
        objectName: "mistakesDialog"
        choice: root.choice
    }

    Connections {
        target: root.choice
        function onFailed() {
            mistakesDialog.open()
        }
    }

    CloseDialog {
        id: closeDialog
        objectName: "closeDialog"
        stoppable: root.orders.running > 0
        onStopped: root.orders.stopAll()
        onConfirmed: deed === "close" ? root.closeConfirmed() : root.replacementConfirmed()
    }
}
