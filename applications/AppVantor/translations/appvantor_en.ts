<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB">
<context>
    <name></name>
    <message id="maintenance_panel_Inputs">
        <source></source>
        <translation>Inputs</translation>
    </message>
    <message id="maintenance_panel_Outputs">
        <source></source>
        <translation>Outputs</translation>
    </message>
    <message id="connected">
        <source></source>
        <translation>Connected</translation>
    </message>
    <message id="not_connected">
        <source></source>
        <translation>Not connected</translation>
    </message>
    <message id="tools_connecting">
        <source></source>
        <translation>Connecting…</translation>
    </message>
    <message id="tools_closed">
        <source></source>
        <translation>Closed</translation>
    </message>
    <message id="lamp_on">
        <source></source>
        <translation>on</translation>
    </message>
    <message id="lamp_off">
        <source></source>
        <translation>off</translation>
    </message>
    <message id="panel_live">
        <source></source>
        <translation>Live</translation>
    </message>
    <message id="panel_live_hint">
        <source></source>
        <translation>Read the values again and again</translation>
    </message>
    <message id="panel_refresh">
        <source></source>
        <translation>Refresh</translation>
    </message>
    <message id="panel_refresh_hint">
        <source></source>
        <translation>Read all values now (F5)</translation>
    </message>
    <message id="panel_not_connected">
        <source></source>
        <translation>The device is not connected. Values are read as soon as it is back.</translation>
    </message>
    <message id="panel_not_connected_because">
        <source></source>
        <translation>The device is not connected: %1. Values are read as soon as it is back.</translation>
    </message>
    <message id="panel_no_public_channels">
        <source></source>
        <translation>This tool has no public channels. Give a channel "visibility": "public" in the configuration to see it here.</translation>
    </message>
    <message id="page_none">
        <source></source>
        <translation>The plugin "%1" has no maintenance page.</translation>
    </message>
    <message id="page_broken">
        <source></source>
        <translation>The maintenance page of the plugin "%1" has errors:
%2</translation>
    </message>
    <message id="page_no_tool">
        <source></source>
        <translation>This tool does not exist. Choose one of the tools on the left.</translation>
    </message>
    <message id="tools_title">
        <source></source>
        <translation>Tools</translation>
    </message>
    <message id="tools_detail" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 · %Ln channel</numerusform>
            <numerusform>%1 · %Ln channels</numerusform>
        </translation>
    </message>
    <message id="tools_empty">
        <source></source>
        <translation>There is no tool. Add one under "tools" in the configuration file.</translation>
    </message>
    <message id="tools_dark">
        <source></source>
        <translation>Dark</translation>
    </message>
    <message id="board_filter">
        <source></source>
        <translation>Filter lines</translation>
    </message>
    <message id="board_freeze">
        <source></source>
        <translation>Freeze</translation>
    </message>
    <message id="board_resume">
        <source></source>
        <translation>Resume</translation>
    </message>
    <message id="board_freeze_hint">
        <source></source>
        <translation>Hold the waveforms to look at them</translation>
    </message>
    <message id="board_not_connected">
        <source></source>
        <translation>The device is not connected.</translation>
    </message>
    <message id="board_not_connected_because">
        <source></source>
        <translation>The device is not connected: %1.</translation>
    </message>
    <message id="board_connecting">
        <source></source>
        <translation>Reaching for the device …</translation>
    </message>
    <message id="board_unknown">
        <source></source>
        <translation>unknown</translation>
    </message>
    <message id="board_empty">
        <source></source>
        <translation>The device has no lines. Name them under "device", "lines" in the configuration file.</translation>
    </message>
    <message id="board_no_match">
        <source></source>
        <translation>No line has "%1" in its name or its channels. Clear the filter to see all.</translation>
    </message>
    <message id="form_title">
        <source></source>
        <translation>Command</translation>
    </message>
    <message id="form_command">
        <source></source>
        <translation>Command</translation>
    </message>
    <message id="form_run">
        <source></source>
        <translation>Run</translation>
    </message>
    <message id="form_run_hint">
        <source></source>
        <translation>Run the command (Ctrl+Enter)</translation>
    </message>
    <message id="form_default">
        <source></source>
        <translation>default: %1</translation>
    </message>
    <message id="form_not_given">
        <source></source>
        <translation>not given</translation>
    </message>
    <message id="form_channel">
        <source></source>
        <translation>a channel of the tool</translation>
    </message>
    <message id="form_sections">
        <source></source>
        <translation>Sections</translation>
    </message>
    <message id="form_sections_hint">
        <source></source>
        <translation>More, as a JSON object</translation>
    </message>
    <message id="form_sections_expected">
        <source></source>
        <translation>Sections: expected a JSON object, {"name": [ … ]}</translation>
    </message>
    <message id="form_sections_broken">
        <source></source>
        <translation>Sections: no JSON from character %1 on</translation>
    </message>
    <message id="form_no_command">
        <source></source>
        <translation>Choose a tool to see its commands.</translation>
    </message>
    <message id="orders_title">
        <source></source>
        <translation>Orders</translation>
    </message>
    <message id="orders_stop">
        <source></source>
        <translation>Stop</translation>
    </message>
    <message id="orders_stop_hint">
        <source></source>
        <translation>Stop this order (Delete)</translation>
    </message>
    <message id="orders_stop_all">
        <source></source>
        <translation>Stop all</translation>
    </message>
    <message id="orders_clear">
        <source></source>
        <translation>Clear</translation>
    </message>
    <message id="orders_state_running">
        <source></source>
        <translation>running</translation>
    </message>
    <message id="orders_state_listening">
        <source></source>
        <translation>listening</translation>
    </message>
    <message id="orders_state_done">
        <source></source>
        <translation>done</translation>
    </message>
    <message id="orders_state_failed">
        <source></source>
        <translation>failed</translation>
    </message>
    <message id="orders_state_stopped">
        <source></source>
        <translation>stopped</translation>
    </message>
    <message id="orders_state_problem">
        <source></source>
        <translation>problem</translation>
    </message>
    <message id="orders_events" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln event, at %1</numerusform>
            <numerusform>%Ln events, the last at %1</numerusform>
        </translation>
    </message>
    <message id="orders_lost" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln event lost</numerusform>
            <numerusform>%Ln events lost</numerusform>
        </translation>
    </message>
    <message id="orders_rejected" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln reply rejected</numerusform>
            <numerusform>%Ln replies rejected</numerusform>
        </translation>
    </message>
    <message id="orders_empty">
        <source></source>
        <translation>No order yet. Choose a command and press Run.</translation>
    </message>
    <message id="board_resume_hint">
        <source></source>
        <translation>Let the waveforms run on</translation>
    </message>
    <message id="board_held">
        <source></source>
        <translation>Courses frozen</translation>
    </message>
    <message id="panel_too_narrow">
        <source></source>
        <translation>The page is too narrow for some of its values. Make it wider.</translation>
    </message>
    <message id="board_past">
        <source></source>
        <translation>In the past</translation>
    </message>
    <message id="courses_title">
        <source></source>
        <translation>Courses of the lines</translation>
    </message>
    <message id="courses_hint">
        <source></source>
        <translation>Wheel: zoom · drag: pan · 1, 2: cursors · F: all · L: live · Space: freeze</translation>
    </message>
    <message id="cursors_one">
        <source></source>
        <translation>Cursor %1</translation>
    </message>
    <message id="cursors_between">
        <source></source>
        <translation>1–2: %1</translation>
    </message>
    <message id="measure_high">
        <source></source>
        <translation>high</translation>
    </message>
    <message id="measure_low">
        <source></source>
        <translation>low</translation>
    </message>
    <message id="measure_width">
        <source></source>
        <translation>%1 for %2</translation>
    </message>
    <message id="measure_period">
        <source></source>
        <translation>period %1</translation>
    </message>
    <message id="measure_duty">
        <source></source>
        <translation>duty cycle %1 %</translation>
    </message>
    <message id="board_driven">
        <source></source>
        <translation>driven</translation>
    </message>
    <message id="page_click_failed">
        <source></source>
        <translation>%1: %2</translation>
    </message>
    <message id="page_dismiss">
        <source></source>
        <translation>Dismiss</translation>
    </message>
    <message id="board_waiting">
        <source></source>
        <translation>waiting</translation>
    </message>
    <message id="board_old">
        <source></source>
        <translation>old</translation>
    </message>
    <message id="board_failed">
        <source></source>
        <translation>failed</translation>
    </message>
    <message id="board_blinking">
        <source></source>
        <translation>◐ blinking</translation>
    </message>
    <message id="orders_page">
        <source></source>
        <translation>page · %1</translation>
    </message>
    <message id="orders_reads" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln read of the page</numerusform>
            <numerusform>%Ln reads of the page</numerusform>
        </translation>
    </message>
    <message id="orders_reads_failed" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln failed</numerusform>
            <numerusform>%Ln failed</numerusform>
        </translation>
    </message>
    <message id="tools_all_off">
        <source></source>
        <translation>All off</translation>
    </message>
    <message id="tools_all_off_hint">
        <source></source>
        <translation>Switch off all that the tools drive</translation>
    </message>
    <message id="form_needed">
        <source></source>
        <translation>Needed: the command does nothing without it.</translation>
    </message>
    <message id="glyph_analogue">
        <source></source>
        <translation>Analogue value</translation>
    </message>
    <message id="form_no_channel">
        <source></source>
        <translation>The tool has no channel "%1".</translation>
    </message>
    <message id="orders_show_events">
        <source></source>
        <translation>Events</translation>
    </message>
    <message id="orders_show_events_hint">
        <source></source>
        <translation>Show the events with their times (Enter)</translation>
    </message>
    <message id="events_title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1: %Ln event</numerusform>
            <numerusform>%1: %Ln events</numerusform>
        </translation>
    </message>
    <message id="events_copy">
        <source></source>
        <translation>Copy</translation>
    </message>
    <message id="events_copy_hint">
        <source></source>
        <translation>Copy all events as comma-separated values</translation>
    </message>
    <message id="events_save">
        <source></source>
        <translation>Save</translation>
    </message>
    <message id="events_close">
        <source></source>
        <translation>Close</translation>
    </message>
    <message id="save_file">
        <source></source>
        <translation>File</translation>
    </message>
    <message id="save_done">
        <source></source>
        <translation>Saved as %1</translation>
    </message>
    <message id="save_exists">
        <source></source>
        <translation>%1 is there already; save once more to replace it.</translation>
    </message>
    <message id="save_replace">
        <source></source>
        <translation>Replace</translation>
    </message>
    <message id="save_cancel">
        <source></source>
        <translation>Cancel</translation>
    </message>
    <message id="save_no_file">
        <source></source>
        <translation>“%1” names no regular file.</translation>
    </message>
    <message id="save_failed">
        <source></source>
        <translation>Cannot write %1: %2</translation>
    </message>
    <message id="fold_hide_tools">
        <source></source>
        <translation>Fold the tools away (Ctrl+1)</translation>
    </message>
    <message id="fold_show_tools">
        <source></source>
        <translation>Show the tools (Ctrl+1)</translation>
    </message>
    <message id="fold_hide_page">
        <source></source>
        <translation>Fold the page away (Ctrl+2)</translation>
    </message>
    <message id="fold_show_page">
        <source></source>
        <translation>Show the page (Ctrl+2)</translation>
    </message>
    <message id="fold_hide_lower">
        <source></source>
        <translation>Fold command and orders away (Ctrl+3)</translation>
    </message>
    <message id="fold_show_lower">
        <source></source>
        <translation>Show command and orders (Ctrl+3)</translation>
    </message>
    <message id="lines_menu">
        <source></source>
        <translation>Lines</translation>
    </message>
    <message id="lines_menu_hint">
        <source></source>
        <translation>Hide, move and group lines</translation>
    </message>
    <message id="lines_hide">
        <source></source>
        <translation>Hide the chosen lines</translation>
    </message>
    <message id="lines_show_all">
        <source></source>
        <translation>Show all lines</translation>
    </message>
    <message id="lines_show_hidden" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Show %Ln hidden line</numerusform>
            <numerusform>Show %Ln hidden lines</numerusform>
        </translation>
    </message>
    <message id="lines_up">
        <source></source>
        <translation>Move up</translation>
    </message>
    <message id="lines_down">
        <source></source>
        <translation>Move down</translation>
    </message>
    <message id="lines_group">
        <source></source>
        <translation>Group by name</translation>
    </message>
    <message id="lines_ungroup">
        <source></source>
        <translation>Do not group</translation>
    </message>
    <message id="lines_trigger">
        <source></source>
        <translation>Trigger: ↑ ↓ ↕ 1 0</translation>
    </message>
    <message id="trigger_text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Trigger %1: %Ln time</numerusform>
            <numerusform>Trigger %1: %Ln times</numerusform>
        </translation>
    </message>
    <message id="trigger_mode">
        <source></source>
        <translation>Where the courses stop</translation>
    </message>
    <message id="trigger_at">
        <source></source>
        <translation>stop at it</translation>
    </message>
    <message id="trigger_around">
        <source></source>
        <translation>stop around it</translation>
    </message>
    <message id="trigger_from">
        <source></source>
        <translation>stop after it</translation>
    </message>
    <message id="trigger_none">
        <source></source>
        <translation>only count</translation>
    </message>
    <message id="trigger_clear">
        <source></source>
        <translation>Clear</translation>
    </message>
    <message id="selection_measure" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln edge · %1 to %2 · mean %3</numerusform>
            <numerusform>%Ln edges · %1 to %2 · mean %3</numerusform>
        </translation>
    </message>
    <message id="tools_help">
        <source></source>
        <translation>Help</translation>
    </message>
    <message id="tools_help_hint">
        <source></source>
        <translation>Keys, manual and versions (F1)</translation>
    </message>
    <message id="export_courses">
        <source></source>
        <translation>Export: CSV, VCD, SVG, PNG</translation>
    </message>
    <message id="export_kinds">
        <source></source>
        <translation>The name must end with .csv, .vcd, .svg or .png.</translation>
    </message>
    <message id="record_begin">
        <source></source>
        <translation>Record a trace</translation>
    </message>
    <message id="record_stop">
        <source></source>
        <translation>Stop the trace</translation>
    </message>
    <message id="record_runs">
        <source></source>
        <translation>A trace is being recorded already.</translation>
    </message>
    <message id="record_begun">
        <source></source>
        <translation>Recording into %1</translation>
    </message>
    <message id="split_tools">
        <source></source>
        <translation>Width of the tools</translation>
    </message>
    <message id="split_page">
        <source></source>
        <translation>Width of the page</translation>
    </message>
    <message id="split_lower">
        <source></source>
        <translation>Height of command and orders</translation>
    </message>
    <message id="split_command">
        <source></source>
        <translation>Width of the command</translation>
    </message>
    <message id="close_title">
        <source></source>
        <translation>Close the window?</translation>
    </message>
    <message id="close_running" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln order still runs and would be stopped.</numerusform>
            <numerusform>%Ln orders still run and would be stopped.</numerusform>
        </translation>
    </message>
    <message id="close_blinking">
        <source></source>
        <translation>These lines blink, which would end; each would be left as it is then: %1.</translation>
    </message>
    <message id="close_blinking_ends">
        <source></source>
        <translation>These lines blink, which would end: %1.</translation>
    </message>
    <message id="close_simulated">
        <source></source>
        <translation>Nothing stays on: the simulated lines end with the bench.</translation>
    </message>
    <message id="close_released">
        <source></source>
        <translation>Whether a released line keeps its level is up to its driver.</translation>
    </message>
    <message id="close_recording">
        <source></source>
        <translation>A trace is recorded, which would end.</translation>
    </message>
    <message id="close_nothing_on">
        <source></source>
        <translation>No output is on.</translation>
    </message>
    <message id="close_stays_on">
        <source></source>
        <translation>These outputs are on, and would be left so: %1.</translation>
    </message>
    <message id="close_goes_off">
        <source></source>
        <translation>These outputs would be switched off: %1.</translation>
    </message>
    <message id="close_more" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 and %Ln more</numerusform>
            <numerusform>%1 and %Ln more</numerusform>
        </translation>
    </message>
    <message id="close_stop">
        <source></source>
        <translation>Stop all and close</translation>
    </message>
    <message id="close_anyway">
        <source></source>
        <translation>Close</translation>
    </message>
    <message id="help_title">
        <source></source>
        <translation>Keys</translation>
    </message>
    <message id="key_panes">
        <source></source>
        <translation>F6, Shift+F6</translation>
    </message>
    <message id="key_run">
        <source></source>
        <translation>Ctrl+Enter</translation>
    </message>
    <message id="key_cursors">
        <source></source>
        <translation>1  2  ←  →  Esc</translation>
    </message>
    <message id="key_choose">
        <source></source>
        <translation>Shift+↑↓</translation>
    </message>
    <message id="key_row_height">
        <source></source>
        <translation>Shift+Alt+↑↓</translation>
    </message>
    <message id="help_key">
        <source></source>
        <translation>%1: %2</translation>
    </message>
    <message id="script_outcome">
        <source></source>
        <translation>%1: %2</translation>
    </message>
    <message id="help_space">
        <source></source>
        <translation>Space</translation>
    </message>
    <message id="help_f1">
        <source></source>
        <translation>this help</translation>
    </message>
    <message id="help_f5">
        <source></source>
        <translation>reads the page again</translation>
    </message>
    <message id="help_f6">
        <source></source>
        <translation>the next pane, the one before</translation>
    </message>
    <message id="help_find">
        <source></source>
        <translation>filters the lines; Esc clears the filter</translation>
    </message>
    <message id="help_fold">
        <source></source>
        <translation>fold tools, page, command and orders away</translation>
    </message>
    <message id="help_run">
        <source></source>
        <translation>runs the command from anywhere</translation>
    </message>
    <message id="help_zoom">
        <source></source>
        <translation>more and less detail, all, follow the present</translation>
    </message>
    <message id="help_freeze">
        <source></source>
        <translation>on the courses: freezes them or lets them run; on the list: switches the line</translation>
    </message>
    <message id="help_cursors">
        <source></source>
        <translation>cursors at the pointer, from edge to edge, away with them</translation>
    </message>
    <message id="help_trigger">
        <source></source>
        <translation>the next trigger of the line</translation>
    </message>
    <message id="help_choose">
        <source></source>
        <translation>several lines, whose edges ← and → follow</translation>
    </message>
    <message id="help_lines">
        <source></source>
        <translation>hide, group and move lines</translation>
    </message>
    <message id="help_row_height">
        <source></source>
        <translation>the height of the rows</translation>
    </message>
    <message id="help_files">
        <source></source>
        <translation>export the courses, record a trace</translation>
    </message>
    <message id="help_manual">
        <source></source>
        <translation>The manual: "man appvantor", or docs/user-guide.md of the project.</translation>
    </message>
    <message id="file_menu">
        <source></source>
        <translation>File</translation>
    </message>
    <message id="file_menu_hint">
        <source></source>
        <translation>Open and reload configurations</translation>
    </message>
    <message id="file_open">
        <source></source>
        <translation>Open a configuration…</translation>
    </message>
    <message id="file_reload">
        <source></source>
        <translation>Reload</translation>
    </message>
    <message id="open_title">
        <source></source>
        <translation>Open a configuration</translation>
    </message>
    <message id="open_list">
        <source></source>
        <translation>Folders and files</translation>
    </message>
    <message id="open_nothing">
        <source></source>
        <translation>There is no file that begins so.</translation>
    </message>
    <message id="open_open">
        <source></source>
        <translation>Open</translation>
    </message>
    <message id="open_no_file">
        <source></source>
        <translation>%1: expected a file</translation>
    </message>
    <message id="mistakes_hint">
        <source></source>
        <translation>The bench goes on as it was. A click or Enter copies a mistake.</translation>
    </message>
    <message id="mistakes_copied">
        <source></source>
        <translation>copied</translation>
    </message>
    <message id="mistakes_retry">
        <source></source>
        <translation>Try again</translation>
    </message>
    <message id="mistakes_retry_hint">
        <source></source>
        <translation>Read the file once more</translation>
    </message>
    <message id="mistakes_copy_all">
        <source></source>
        <translation>Copy all</translation>
    </message>
    <message id="replace_title">
        <source></source>
        <translation>Open the other configuration?</translation>
    </message>
    <message id="replace_stop">
        <source></source>
        <translation>Stop all and open</translation>
    </message>
    <message id="replace_anyway">
        <source></source>
        <translation>Open</translation>
    </message>
    <message id="help_open">
        <source></source>
        <translation>open a configuration, reload this one</translation>
    </message>
    <message id="mistakes_title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Not opened: one mistake</numerusform>
            <numerusform>Not opened: %Ln mistakes</numerusform>
        </translation>
    </message>
    <message id="file_script">
        <source></source>
        <translation>Run a script…</translation>
    </message>
    <message id="script_title">
        <source></source>
        <translation>Run a script</translation>
    </message>
    <message id="script_run">
        <source></source>
        <translation>Run</translation>
    </message>
    <message id="script_stop">
        <source></source>
        <translation>Stop</translation>
    </message>
    <message id="script_stopped">
        <source></source>
        <translation>stopped in line %1</translation>
    </message>
    <message id="script_done">
        <source></source>
        <translation>done</translation>
    </message>
    <message id="close_script">
        <source></source>
        <translation>A script runs and would be stopped.</translation>
    </message>
    <message id="help_script">
        <source></source>
        <translation>carry out the orders of a file</translation>
    </message>
    <message id="export_too_high">
        <source></source>
        <translation>A picture has no room for so many lines; hide some, or save them as .svg.</translation>
    </message>
</context>
</TS>
