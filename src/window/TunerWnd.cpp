#include "window/TunerWnd.h"

#include "dialogs/OptionsSheet.h"
#include "window/ControlTable.h"

#include <array>

namespace {

constexpr DWORD WINDOW_STYLE = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
constexpr const char* WINDOW_TITLE = "Fretvane 吉他校音软件 1.02";
constexpr const char* WINDOW_ICON = "icons/fretvane-64.png";
constexpr RECT CLIENT_AREA{0, 0, 500, 396};

}  // namespace

CTunerWnd::CTunerWnd() : m_errorLog("errorlog.txt") {
    // All of OnCreate runs in here, before the window has its size.
    if (CreateEx(WINDOW_STYLE, WINDOW_TITLE, {}, nullptr, 0)) {
        RECT rcWindow = CLIENT_AREA;
        CalcWindowRect(rcWindow);
        SetWindowPos(0, 0, rcWindow.Width(), rcWindow.Height(), SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW);
        SetIcon(WINDOW_ICON);
    }
}

CTunerWnd::~CTunerWnd() {
    // In the ordinary way the capture has ended when the window was destroyed.
    m_bClosing = true;
    m_engine.Stop();
}

const CMessageMap& CTunerWnd::GetMessageMap() const {
    static constexpr std::array entries{
        MapMessage<&CTunerWnd::OnCreate>(WM_CREATE),
        MapMessage<&CTunerWnd::OnDestroy>(WM_DESTROY),
        MapCommand<&CTunerWnd::OnPlay>(ID_PLAY),
        MapCommand<&CTunerWnd::OnAFrequency>(ID_A_FREQUENCY),
        MapCommand<&CTunerWnd::OnAddTuning>(ID_ADD),
        MapCommand<&CTunerWnd::OnDeleteTuning>(ID_DELETE),
        MapCommand<&CTunerWnd::OnOptions>(ID_OPTIONS),
        MapCommand<&CTunerWnd::OnHelp>(ID_HELP),
        MapCommand<&CTunerWnd::OnExit>(ID_EXIT),
        MapMessage<&CTunerWnd::OnLButtonDown>(WM_LBUTTONDOWN),
        MapMessage<&CTunerWnd::OnLButtonUp>(WM_LBUTTONUP),
        MapMessage<&CTunerWnd::OnRButtonDown>(WM_RBUTTONDOWN),
        MapMessage<&CTunerWnd::OnRButtonUp>(WM_RBUTTONUP),
        MapMessage<&CTunerWnd::OnMouseMove>(WM_MOUSEMOVE),
        MapMessage<&CTunerWnd::OnChar>(WM_CHAR),
        MapMessage<&CTunerWnd::OnPaint>(WM_PAINT),
        MapMessage<&CTunerWnd::OnClose>(WM_CLOSE),
        MapNotification<&CTunerWnd::OnSelChange>(LBN_SELCHANGE, ID_TUNINGS),
        MapMessage<&CTunerWnd::OnContextMenu>(WM_CONTEXTMENU),
        MapCommandRange<&CTunerWnd::OnNoteCommand>(ID_FIRST_NOTE, ID_LAST_NOTE),
        MapMessage<&CTunerWnd::OnMove>(WM_MOVE),
        MapMessage<&CTunerWnd::OnTimer>(WM_TIMER),
        MapMessage<&CTunerWnd::OnColorsChanged>(COptionsSheet::COLORS_CHANGED)};
    static const CMessageMap map{entries, &CWnd::GetMessageMap()};
    return map;
}
