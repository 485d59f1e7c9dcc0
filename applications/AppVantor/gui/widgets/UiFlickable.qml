import QtQuick 2.15
import QtQuick.Window 2.15

// What is higher than its place, to be scrolled. What has the keyboard is shown whole.
Flickable {
    id: root

    function scrollTo(y) {
        contentY = Math.max(0, Math.min(y, contentHeight - height))
    }

    function showFocused(item) {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor === contentItem) {
                const top = item.mapToItem(contentItem, 0, 0).y - Style.defSpacing
                const bottom = top + item.height + 2 * Style.defSpacing
                scrollTo(Math.max(bottom - height, Math.min(contentY, top)))
                return
            }
        }
    }

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    Window.onActiveFocusItemChanged: showFocused(Window.activeFocusItem)
}
