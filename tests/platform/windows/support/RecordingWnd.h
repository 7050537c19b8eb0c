#pragma once

#include "platform/base/String.h"
#include "platform/windows/Wnd.h"

#include <algorithm>
#include <array>
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
        enum class Kind { Name, Word, Point };
        struct Row {
            UINT nMessage;
            const char* szName;
            Kind kind;
        };
        static constexpr std::array s_rows{
            Row{WM_CREATE, "create", Kind::Name},        Row{WM_DESTROY, "destroy", Kind::Name},
            Row{WM_CLOSE, "close", Kind::Name},          Row{WM_PAINT, "paint", Kind::Name},
            Row{WM_TIMER, "timer", Kind::Word},          Row{WM_KEYDOWN, "keydown", Kind::Word},
            Row{WM_KEYUP, "keyup", Kind::Word},          Row{WM_CHAR, "char", Kind::Word},
            Row{WM_COMMAND, "command", Kind::Word},      Row{WM_LBUTTONDOWN, "ldown", Kind::Point},
            Row{WM_LBUTTONUP, "lup", Kind::Point},       Row{WM_RBUTTONDOWN, "rdown", Kind::Point},
            Row{WM_RBUTTONUP, "rup", Kind::Point},       Row{WM_MOUSEMOVE, "move", Kind::Point},
            Row{WM_CONTEXTMENU, "context", Kind::Point}, Row{WM_NCHITTEST, "hit", Kind::Point},
        };
        const auto found = std::find_if(s_rows.begin(), s_rows.end(),
                                        [nMessage](const Row& row) { return row.nMessage == nMessage; });
        if (found == s_rows.end()) {
            return;
        }
        std::string strNote = m_strPrefix + found->szName;
        const POINT pt = PointOfParam(lParam);
        if (nMessage == WM_COMMAND) {
            strNote += FormatText(":%d/%u", IdOfCommand(wParam), CodeOfCommand(wParam));
        } else if (found->kind == Kind::Word) {
            strNote += FormatText(":%d", static_cast<int>(wParam));
        } else if (found->kind == Kind::Point) {
            strNote += FormatText("(%d,%d)", pt.x, pt.y);
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
