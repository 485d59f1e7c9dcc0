import QtQuick 2.15
import "../../../applications/AppVantor/gui/panels"
import "../../../applications/AppVantor/gui/widgets"

// The floor of the maintenance page: the same items, made without choice, and bound to the plain objects "inputs"
// and "outputs".
BasePanelMaintenance {
    id: rootItem

    name: "Bare page"
    connected: true

    contentItem: Column {
        id: idColumn
        width: rootItem.width
        spacing: rootItem.spacing

        Row {
            id: idColumnsRow
            width: idColumn.width
            spacing: Style.baseWidth * 2

            Column {
                id: idInputsColumn
                width: (idColumnsRow.width - idColumnsRow.spacing) / 2
                spacing: Style.defSpacing

                UiLabel {
                    text: qsTrId("maintenance_panel_Inputs")
                    font.bold: true
                    isBigger: true
                }

                Repeater {
                    model: inputs
                    delegate: idRowComponent
                }
            }

            Column {
                width: (idColumnsRow.width - idColumnsRow.spacing) / 2
                spacing: Style.defSpacing

                UiLabel {
                    text: qsTrId("maintenance_panel_Outputs")
                    font.bold: true
                    isBigger: true
                }

                Repeater {
                    model: outputs
                    delegate: idRowComponent
                }
            }
        }
    }

    Component {
        id: idRowComponent

        Row {
            id: idRow
            spacing: Style.baseWidth
            height: Style.baseHeight * 5
            width: idInputsColumn.width - idInputsColumn.spacing

            Item {
                id: idIndicator
                width: height
                height: idRow.height

                UiGlyph {
                    anchors.fill: parent
                    anchors.margins: Style.baseHeight
                    name: "icon-analoginput"
                    visible: false
                }

                UiLedIndicator {
                    anchors.fill: parent
                    visible: modelData.isOutput
                    statusColor: modelData.value === 1 ? Style.toolStatusIn : Style.toolStatusInactive
                }

                UiCheckBox {
                    anchors.fill: parent
                    visible: !modelData.isOutput
                    checked: modelData.value === 1
                    detachChangingOnClick: true
                }
            }

            Column {
                id: idInformation
                height: idRow.height
                width: idRow.width * 0.6
                spacing: 0

                Text {
                    height: idInformation.height / 2
                    width: idInformation.width
                    verticalAlignment: Text.AlignVCenter
                    fontSizeMode: Text.Fit
                    textFormat: Text.PlainText
                    font.bold: true
                    text: modelData.name
                }

                Text {
                    height: idInformation.height / 2
                    width: idInformation.width
                    verticalAlignment: Text.AlignVCenter
                    fontSizeMode: Text.Fit
                    textFormat: Text.PlainText
                    text: modelData.name
                }
            }

            Rectangle {
                height: idRow.height
                width: idRow.width - idIndicator.width - idInformation.width - idRow.spacing * 2
                color: "transparent"
                border.width: Style.baseHeight / 6
                border.color: Style.widgetDisabledBorderColor
                clip: true
                visible: false

                Text {
                    anchors.fill: parent
                    anchors.margins: Style.baseHeight / 2
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    fontSizeMode: Text.Fit
                    textFormat: Text.PlainText
                    text: String(modelData.value)
                }
            }
        }
    }
}
