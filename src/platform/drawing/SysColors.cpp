#include "platform/drawing/SysColors.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace {

struct Table {
    Table() {
        Set(COLOR_WINDOW, 0xFFFFFF);
        Set(COLOR_HIGHLIGHT, 0x800000);
        Set(COLOR_HIGHLIGHTTEXT, 0xFFFFFF);
        Set(COLOR_BTNFACE, 0xC0C0C0);
        Set(COLOR_BTNSHADOW, 0x808080);
        Set(COLOR_GRAYTEXT, 0x808080);
        Set(COLOR_BTNHILIGHT, 0xFFFFFF);
        Set(COLOR_3DLIGHT, 0xDFDFDF);
    }
    void Set(int nIndex, COLORREF clr) {
        colors[static_cast<std::size_t>(nIndex)].store(clr, std::memory_order_relaxed);
    }

    std::array<std::atomic<COLORREF>, 31> colors{};
};

Table& GetTable() {
    static Table table;
    return table;
}

bool IsIndex(int nIndex) {
    return nIndex >= 0 && static_cast<std::size_t>(nIndex) < GetTable().colors.size();
}

}  // namespace

COLORREF GetSysColor(int nIndex) {
    if (!IsIndex(nIndex)) {
        return 0;
    }
    return GetTable().colors[static_cast<std::size_t>(nIndex)].load(std::memory_order_relaxed);
}

void SetSysColor(int nIndex, COLORREF clr) {
    if (IsIndex(nIndex)) {
        GetTable().Set(nIndex, clr & 0xFFFFFF);
    }
}
