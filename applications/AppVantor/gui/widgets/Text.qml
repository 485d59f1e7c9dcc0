import QtQuick 2.15

// The plain text of pages: takes the place of Qt Quick's own, so that pages that set no colour can be read in both
// themes.
UiLabel {
    verticalAlignment: Qt.AlignTop
}
