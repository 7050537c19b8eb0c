#include "platform/drawing/ToolkitFont.h"
#include "platform/windows/WndState.h"

#include <QtWidgets/QWidget>
#include <bit>

namespace {

bool IsBetween(int nId, const CMessageEntry& entry) {
    return nId >= entry.nIdFirst && nId <= entry.nIdLast;
}

bool Fits(const CMessageEntry& entry, UINT nMessage, WPARAM wParam, LPARAM lParam) {
    if (entry.nMessage != nMessage) {
        return false;
    }
    switch (nMessage) {
        case WM_COMMAND:
            return entry.nCode == CodeOfCommand(wParam) && IsBetween(IdOfCommand(wParam), entry);
        case WM_NOTIFY: {
            const auto& header = *std::bit_cast<const NMHDR*>(lParam);
            return entry.nCode == header.code && IsBetween(header.idFrom, entry);
        }
        default:
            return true;
    }
}

const CMessageEntry* FindEntry(const CMessageMap& map, UINT nMessage, WPARAM wParam, LPARAM lParam) {
    for (const CMessageMap* pMap = &map; pMap != nullptr; pMap = pMap->pBase) {
        for (const CMessageEntry& entry : pMap->entries) {
            if (Fits(entry, nMessage, wParam, lParam)) {
                return &entry;
            }
        }
    }
    return nullptr;
}

}  // namespace

LRESULT CWnd::SendMessage(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    return IsWindow() ? m_pState->Dispatch(nMessage, wParam, lParam, nullptr) : 0;
}

void CWnd::SendNotifyMessage(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    SendMessage(nMessage, wParam, lParam);
}

const CMessageMap& CWnd::GetMessageMap() const {
    static const CMessageMap map{{}, nullptr};
    return map;
}

LRESULT CWnd::WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    const CMessageEntry* const pEntry = FindEntry(GetMessageMap(), nMessage, wParam, lParam);
    return pEntry != nullptr ? pEntry->pfnHandle(*this, wParam, lParam)
                             : DefWindowProc(nMessage, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    switch (nMessage) {
        case WM_CLOSE:
            DestroyWindow();
            return 0;
        case WM_RBUTTONUP: {
            POINT pt = PointOfParam(lParam);
            ClientToScreen(pt);
            SendMessage(WM_CONTEXTMENU, std::bit_cast<WPARAM>(this), MakePointParam(pt));
            return 0;
        }
        case WM_NCHITTEST:
            return HTCLIENT;
        case WM_SETFONT:
            if (IsWindow() && wParam != 0) {
                m_pState->pWidget->setFont(ToToolkitFont(*std::bit_cast<const CFont*>(wParam)));
            }
            return 0;
        default:
            m_pState->DeliverEvent(nMessage);
            return 0;
    }
}

LRESULT CWnd::Default() {
    const CWndState::CRunning* const pRunning = m_pState->pRunning;
    return pRunning != nullptr ? DefWindowProc(pRunning->nMessage, pRunning->wParam, pRunning->lParam) : 0;
}

void CWnd::PostNcDestroy() {}

void CWnd::SetFont(const CFont& font, bool bRedraw) {
    SendMessage(WM_SETFONT, std::bit_cast<WPARAM>(&font), bRedraw ? 1 : 0);
}
