import QtQuick 2.15
import PlgLibToolGpio 1.0
import "../../../applications/AppVantor/gui/panels"
import "../../../applications/AppVantor/gui/widgets"

BasePanelMaintenance {
    id: rootItem
    objectName: "maintenance_panel_tool_gpio"

    name: be.name
    connected: be.isConnected

    onUpdateData: be.updateChannelsValue()

    BeMaintenanceToolGpio {
        id: be
        name: "{OBJECT_NAME}"
        objectId: "{OBJECT_ID}"
    }

    contentItem: Column {
        id: idColumn
        objectName: rootItem.objectName + ".idColumn"
        width: rootItem.width
        spacing: rootItem.spacing

        Row {
            id: idColumnsRow
            objectName: idColumn.objectName + ".idColumnsRow"
            width: idColumn.width
            spacing: Style.baseWidth * 2

            Column {
                id: idInputsColumn
                objectName: idColumnsRow.objectName + ".idInputsColumn"
                width: (idColumnsRow.width - idColumnsRow.spacing) / 2
                spacing: Style.defSpacing

                UiLabel {
                    text: qsTrId("maintenance_panel_Inputs")
                    font.bold: true
                    isBigger: true
                }

                Repeater {
                    id: idInputsRepeater
                    objectName: idInputsColumn.objectName + ".idInputsRepeater"
                    model: be.channelsModel

                    delegate: Loader {
                        property DGpioChannel currentChannel: modelData
                        property int channelIndex: index

                        width: idInputsColumn.width - idInputsColumn.spacing
                        sourceComponent: currentChannel
                                         && (currentChannel.type === DGpioChannel.CeCtBinIn
                                             || currentChannel.type === DGpioChannel.CeCtAnaIn)
                                         ? idChannelRowComponent : null
                        onLoaded: {
                            item.currentChannel = currentChannel
                            item.channelIndex = channelIndex
                        }
                    }
                }
            }

            Column {
                id: idOutputsColumn
                objectName: idColumnsRow.objectName + ".idOutputsColumn"
                width: (idColumnsRow.width - idColumnsRow.spacing) / 2
                spacing: Style.defSpacing

                UiLabel {
                    text: qsTrId("maintenance_panel_Outputs")
                    font.bold: true
                    isBigger: true
                }

                Repeater {
                    id: idOutputsRepeater
                    objectName: idOutputsColumn.objectName + ".idOutputsRepeater"
                    model: be.channelsModel

                    delegate: Loader {
                        property DGpioChannel currentChannel: modelData
                        property int channelIndex: index

                        width: idOutputsColumn.width - idOutputsColumn.spacing
                        sourceComponent: currentChannel
                                         && (currentChannel.type === DGpioChannel.CeCtBinOut
                                             || currentChannel.type === DGpioChannel.CeCtAnaOut)
                                         ? idChannelRowComponent : null
                        onLoaded: {
                            item.currentChannel = currentChannel
                            item.channelIndex = channelIndex
                        }
                    }
                }
            }
        }
    }

    Component {
        id: idChannelRowComponent

        Row {
            id: idChannelRow
            objectName: "idChannelRow"

            property DGpioChannel currentChannel: null
            property int channelIndex: -1

            spacing: Style.baseWidth
            height: Style.baseHeight * 5
            width: parent ? parent.width : 0

            Item {
                id: idIndicator
                objectName: idChannelRow.objectName + ".idIndicator"
                width: height
                height: idChannelRow.height

                UiGlyph {
                    id: idAnalogInput
                    objectName: idIndicator.objectName + ".idAnalogInput"
                    anchors.fill: parent
                    anchors.margins: Style.baseHeight
                    name: "icon-analoginput"
                    visible: idChannelRow.currentChannel
                             ? idChannelRow.currentChannel.type === DGpioChannel.CeCtAnaOut : false
                }

                UiLedIndicator {
                    id: idDigitalInput
                    objectName: idIndicator.objectName + ".idDigitalInput"
                    anchors.fill: parent
                    visible: idChannelRow.currentChannel
                             ? idChannelRow.currentChannel.type === DGpioChannel.CeCtBinOut : false
                    statusColor: idChannelRow.currentChannel && idChannelRow.currentChannel.value === 1
                                 ? Style.toolStatusIn : Style.toolStatusInactive
                }

                UiCheckBox {
                    id: idDigitalOutput
                    objectName: idIndicator.objectName + ".idDigitalOutput"
                    anchors.fill: parent
                    visible: idChannelRow.currentChannel
                             ? idChannelRow.currentChannel.type === DGpioChannel.CeCtBinIn : false
                    checked: idChannelRow.currentChannel ? idChannelRow.currentChannel.value === 1 : false
                    detachChangingOnClick: true
                    onClicked: be.clickedOnChannel(idChannelRow.channelIndex)
                }
            }

            Column {
                id: idInformation
                objectName: idChannelRow.objectName + ".idInformation"
                height: idChannelRow.height
                width: idChannelRow.width * 0.6
                spacing: 0

                Text {
                    id: idChannelId
                    objectName: idInformation.objectName + ".idChannelId"
                    height: idInformation.height / 2
                    width: idInformation.width
                    verticalAlignment: Text.AlignVCenter
                    fontSizeMode: Text.Fit
                    textFormat: Text.PlainText
                    font.bold: true
                    text: idChannelRow.currentChannel ? idChannelRow.currentChannel.id : ""
                }

                Text {
                    id: idChannelName
                    objectName: idInformation.objectName + ".idChannelName"
                    height: idInformation.height / 2
                    width: idInformation.width
                    verticalAlignment: Text.AlignVCenter
                    fontSizeMode: Text.Fit
                    textFormat: Text.PlainText
                    text: idChannelRow.currentChannel ? idChannelRow.currentChannel.name : ""
                }
            }

            Rectangle {
                id: idValueRectangle
                objectName: idChannelRow.objectName + ".idValueRectangle"
                height: idChannelRow.height
                width: idChannelRow.width - idIndicator.width - idInformation.width - idChannelRow.spacing * 2
                color: "transparent"
                border.width: Style.baseHeight / 6
                border.color: Style.widgetDisabledBorderColor
                clip: true
                visible: idChannelRow.currentChannel
                         ? idChannelRow.currentChannel.type === DGpioChannel.CeCtAnaOut : false

                Text {
                    id: idValue
                    objectName: idValueRectangle.objectName + ".idValue"
                    anchors.fill: parent
                    anchors.margins: Style.baseHeight / 2
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    fontSizeMode: Text.Fit
                    textFormat: Text.PlainText
                    text: idChannelRow.currentChannel ? String(idChannelRow.currentChannel.value) : ""
                }
            }
        }
    }
}
