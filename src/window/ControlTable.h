#pragma once

#include "platform/windows/Messages.h"

// What the main window's controls are known by in commands.
inline constexpr int ID_PLAY = 10000;
inline constexpr int ID_A_FREQUENCY = 10001;
inline constexpr int ID_ADD = 10002;
inline constexpr int ID_DELETE = 10003;
inline constexpr int ID_OPTIONS = 10004;
inline constexpr int ID_HELP = 10005;
inline constexpr int ID_EXIT = 10006;
inline constexpr int ID_HINT = 10007;
inline constexpr int ID_TUNINGS = 10008;
inline constexpr int ID_PRESETS = 10009;
inline constexpr int ID_STRINGS = 10010;
inline constexpr int ID_NONE = -1;

// The commands of the notes: a run of twelve for each octave index of a tuning.
inline constexpr int ID_FIRST_NOTE = 10100;
inline constexpr int ID_LAST_NOTE = 10311;
inline constexpr int ID_NOTE_OCTAVE = 100;  // from one run to the next

inline constexpr DWORD STYLE_STATIC = WS_CHILD | WS_VISIBLE;
inline constexpr DWORD STYLE_BUTTON = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
inline constexpr DWORD STYLE_GROUP = WS_CHILD | WS_VISIBLE | BS_GROUPBOX;
inline constexpr DWORD STYLE_LIST = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | LBS_NOTIFY;

// One control of the main window, and what the log says when it cannot be made.
struct ControlPlace {
    int nId;
    const char* szCaption;
    RECT rc;  // client coordinates
    DWORD dwStyle;
    const char* szFailure;
    const char* szSpoken = nullptr;  // what a screen reader calls it; null: its caption
};

inline constexpr ControlPlace CONTROL_PLAY{
    ID_PLAY, "_播放", {20, 108, 102, 132}, STYLE_BUTTON, "Unable to create Play button", "播放, Play"};
// Its caption shows the A frequency and is made when the window is.
inline constexpr ControlPlace CONTROL_A{
    ID_A_FREQUENCY, "", {108, 108, 190, 132}, STYLE_BUTTON, "Unable to create m_strAButton button"};
inline constexpr ControlPlace CONTROL_ADD{
    ID_ADD, "_增", {114, 144, 150, 164}, STYLE_BUTTON, "Unable to create Add button", "新增, Add tuning"};
inline constexpr ControlPlace CONTROL_DELETE{ID_DELETE,
                                             "_删",
                                             {150, 144, 186, 164},
                                             STYLE_BUTTON,
                                             "Unable to create Del button",
                                             "删除, Delete tuning"};
inline constexpr ControlPlace CONTROL_OPTIONS{
    ID_OPTIONS,     "[ 设置 ]", {250, 367, 325, 391}, STYLE_BUTTON, "Unable to create Options button",
    "设置, Options"};
inline constexpr ControlPlace CONTROL_HELP{
    ID_HELP, "_帮助", {333, 367, 408, 391}, STYLE_BUTTON, "Unable to create Help button", "帮助, Help"};
inline constexpr ControlPlace CONTROL_EXIT{
    ID_EXIT, "_退出", {415, 367, 490, 391}, STYLE_BUTTON, "Unable to create Exit button", "退出, Exit"};
inline constexpr ControlPlace CONTROL_HINT{
    ID_HINT, "", {10, 365, 240, 391}, STYLE_STATIC, "Unable to create text hint static button"};
inline constexpr ControlPlace CONTROL_FPS{
    ID_NONE, "", {210, 15, 350, 40}, STYLE_STATIC, "Unable to create frames/sec text"};
inline constexpr ControlPlace CONTROL_TUNINGS{
    ID_TUNINGS,         "", {25, 167, 186, 300}, STYLE_LIST, "Unable to create the preset listbox",
    "调音规则, Tunings"};
inline constexpr ControlPlace CONTROL_PRESETS{
    ID_PRESETS, "[预置 ]", {26, 146, 113, 163}, STYLE_STATIC, "Unable to create Presets text"};
inline constexpr ControlPlace CONTROL_STRINGS{ID_STRINGS,
                                              "[六弦的校准音]",
                                              {10, 13, 200, 300},
                                              STYLE_GROUP,
                                              "Unable to create type of tuning group box"};
