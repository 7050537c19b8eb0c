#pragma once

#include "platform/base/String.h"
#include "platform/windows/Wnd.h"

#include <string>
#include <vector>

// A window that writes down which messages reach it: "name", or "name:wParam" and "name(x,y)" where these
// count.
class CRecordingWnd : public CWnd {
public:
    explicit CRecordingWnd(std::vector<std::string>& log) : m_log(log) {}

    bool Open(int cx, int cy) {
        if (!CreateEx(WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, "window", {}, nullptr, 0)) {
            return false;
        }
        RECT rc{0, 0, cx, cy};
        CalcWindowRect(rc);
        SetWindowPos(0, 0, rc.Width(), rc.Height(), SWP_NOMOVE | SWP_NOZORDER);
        return true;
    }

    int m_nCreateResult = 0;

protected:
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
        const POINT pt = PointOfParam(lParam);
        const std::string strPoint = FormatText("(%d,%d)", pt.x, pt.y);
        switch (nMessage) {
            case WM_CREATE:
                Note("create");
                return m_nCreateResult;
            case WM_DESTROY:
                Note("destroy");
                break;
            case WM_CLOSE:
                Note("close");
                break;
            case WM_PAINT:
                Note("paint");
                break;
            case WM_TIMER:
                Note(FormatText("timer:%d", static_cast<int>(wParam)));
                break;
            case WM_KEYDOWN:
                Note(FormatText("keydown:%d", static_cast<int>(wParam)));
                break;
            case WM_KEYUP:
                Note(FormatText("keyup:%d", static_cast<int>(wParam)));
                break;
            case WM_CHAR:
                Note(FormatText("char:%d", static_cast<int>(wParam)));
                break;
            case WM_COMMAND:
                Note(FormatText("command:%d/%u", IdOfCommand(wParam), CodeOfCommand(wParam)));
                break;
            case WM_LBUTTONDOWN:
                Note("ldown" + strPoint);
                break;
            case WM_LBUTTONUP:
                Note("lup" + strPoint);
                break;
            case WM_RBUTTONDOWN:
                Note("rdown" + strPoint);
                break;
            case WM_RBUTTONUP:
                Note("rup" + strPoint);
                break;
            case WM_MOUSEMOVE:
                Note("move" + strPoint);
                break;
            case WM_CONTEXTMENU:
                Note("context" + strPoint);
                break;
            default:
                break;
        }
        return CWnd::WindowProc(nMessage, wParam, lParam);
    }
    void PostNcDestroy() override { Note("gone"); }

    void Note(const std::string& strWhat) { m_log.push_back(strWhat); }

private:
    std::vector<std::string>& m_log;
};
