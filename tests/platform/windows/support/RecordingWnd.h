#pragma once

#include "platform/base/String.h"
#include "platform/windows/Wnd.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

using Log = std::vector<std::string>;

// A window or control that writes down which messages reach it, "name", "name:wParam" or "name(x,y)", behind
// a prefix. What stands in m_on takes the place of a message's handling.
template <class Base>
class CRecording : public Base {
public:
    explicit CRecording(Log& log, std::string strPrefix = {})
        : m_log(log), m_strPrefix(std::move(strPrefix)) {}

    std::map<UINT, std::function<LRESULT()>> m_on;
    std::function<void()> m_fnGone;

protected:
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
        Note(nMessage, wParam, lParam);
        const auto found = m_on.find(nMessage);
        return found != m_on.end() ? found->second() : Base::WindowProc(nMessage, wParam, lParam);
    }
    void PostNcDestroy() override {
        m_log.push_back(m_strPrefix + "gone");
        if (m_fnGone) {
            m_fnGone();
        }
    }

private:
    void Note(UINT nMessage, WPARAM wParam, LPARAM lParam) const {
        // What follows a name: its word behind a colon, its point behind a bracket.
        static const std::map<UINT, const char*> s_names{
            {WM_CREATE, "create"},      {WM_DESTROY, "destroy"}, {WM_CLOSE, "close"},
            {WM_PAINT, "paint"},        {WM_TIMER, "timer:"},    {WM_KEYDOWN, "keydown:"},
            {WM_KEYUP, "keyup:"},       {WM_CHAR, "char:"},      {WM_COMMAND, "command:"},
            {WM_LBUTTONDOWN, "ldown("}, {WM_LBUTTONUP, "lup("},  {WM_RBUTTONDOWN, "rdown("},
            {WM_RBUTTONUP, "rup("},     {WM_MOUSEMOVE, "move("}, {WM_CONTEXTMENU, "context("},
            {WM_NCHITTEST, "hit("}};
        const auto found = s_names.find(nMessage);
        if (found == s_names.end()) {
            return;
        }
        std::string strNote = m_strPrefix + found->second;
        if (nMessage == WM_COMMAND) {
            strNote += FormatText("%d/%u", IdOfCommand(wParam), CodeOfCommand(wParam));
        } else if (strNote.back() == ':') {
            strNote += FormatText("%d", static_cast<int>(wParam));
        } else if (strNote.back() == '(') {
            strNote += FormatText("%d,%d)", PointOfParam(lParam).x, PointOfParam(lParam).y);
        }
        m_log.push_back(strNote);
    }

    Log& m_log;
    const std::string m_strPrefix;
};

class CRecordingWnd : public CRecording<CWnd> {
public:
    using CRecording::CRecording;

    // So large inside.
    bool Open(int cx, int cy) {
        if (!CreateEx(WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, "window", {}, nullptr, 0)) {
            return false;
        }
        RECT rc{0, 0, cx, cy};
        CalcWindowRect(rc);
        SetWindowPos(0, 0, rc.Width(), rc.Height(), SWP_NOMOVE | SWP_NOZORDER);
        return true;
    }
};
