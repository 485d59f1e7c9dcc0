import QtQuick 2.15
import "../../gui/widgets"

// What a pane says while it has nothing to show, and what to do about it.
UiLabel {
    anchors.fill: parent
    anchors.margins: Style.defSpacing * 2
    horizontalAlignment: Qt.AlignHCenter
    wrapMode: TextEdit.Wrap
    elide: Qt.ElideNone
    color: Style.textSecondary
}
