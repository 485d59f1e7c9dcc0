pragma Singleton
import QtQuick 2.15

// The one look of the bench. Sizes are device-independent pixels on a grid of eight; Qt multiplies them by the
// scale of the screen. Every text colour has a contrast of 4.5:1 or more on the surfaces it stands on.
QtObject {
    property bool dark: systemIsDark

    readonly property int baseWidth: 8
    readonly property int baseHeight: 8
    readonly property int defSpacing: 8
    readonly property int controlHeight: 32
    readonly property int radius: 4

    readonly property color background: dark ? "#12151a" : "#eef0f3"
    readonly property color surface: dark ? "#1b1f26" : "#ffffff"
    readonly property color surfaceRaised: dark ? "#272d36" : "#f4f5f7"
    readonly property color surfacePressed: dark ? "#343c48" : "#e2e5ea"
    readonly property color separator: dark ? "#313843" : "#d8dce2"
    readonly property color controlBorder: dark ? "#78828f" : "#7a838e"
    readonly property color text: dark ? "#e8ebf0" : "#1a1e24"
    readonly property color textSecondary: dark ? "#a8b0bc" : "#565f6b"
    readonly property color accent: dark ? "#7ab0ff" : "#1f5fd1"
    readonly property color accentText: dark ? "#0b1424" : "#ffffff"
    readonly property color accentSoft: dark ? "#223249" : "#e4edfc"
    readonly property color shade: "#80000000"
    readonly property color error: dark ? "#ff8f86" : "#b3261e"

    readonly property color toolStatusIn: dark ? "#3ddc84" : "#159947"
    readonly property color toolStatusInactive: dark ? "#6d7784" : "#8a939e"
    readonly property color widgetDisabledBorderColor: dark ? "#4b5563" : "#b4bac3"

    // The first of these has figures of one width, so that values do not jump.
    readonly property string fontFamily: firstInstalled(["Roboto", "Noto Sans", "Open Sans", "DejaVu Sans"])
    readonly property int textSize: 14
    readonly property int smallTextSize: 12
    readonly property int titleSize: 16
    readonly property int smallestTextSize: 11

    property SystemPalette systemPalette: SystemPalette {}
    readonly property bool systemIsDark: systemPalette.windowText.hslLightness > systemPalette.window.hslLightness

    function firstInstalled(families) {
        const installed = Qt.fontFamilies()
        const found = families.find(family => installed.includes(family))
        return found === undefined ? Qt.application.font.family : found
    }
}
