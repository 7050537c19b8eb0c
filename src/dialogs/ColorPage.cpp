#include "dialogs/ColorPage.h"

#include "platform/windows/ColorDialog.h"
#include "platform/windows/DataExchange.h"
#include "tuning/TuningStore.h"

namespace {

constexpr int FIRST_SWATCH = 1006;
constexpr int DEFAULTS = 1015;
constexpr DWORD SWATCH_STYLE = WS_BORDER | SS_SUNKEN;

constexpr std::array CONTROLS{
    DialogControl{DialogControlKind::Static, FIRST_SWATCH, "1", 17, 17, 15, 15, SWATCH_STYLE},
    DialogControl{DialogControlKind::Static, FIRST_SWATCH + 1, "2", 124, 17, 15, 15, SWATCH_STYLE},
    DialogControl{DialogControlKind::Static, FIRST_SWATCH + 2, "3", 124, 41, 15, 15, SWATCH_STYLE},
    DialogControl{DialogControlKind::Static, FIRST_SWATCH + 3, "4", 17, 41, 15, 15, SWATCH_STYLE},
    DialogControl{DialogControlKind::Static, -1, "指针颜色", 39, 20, 42, 8},
    DialogControl{DialogControlKind::Static, -1, "过高时的颜色", 146, 20, 58, 8},
    DialogControl{DialogControlKind::Static, -1, "过低时的颜色", 146, 44, 56, 8},
    DialogControl{DialogControlKind::Static, -1, "文本颜色", 39, 44, 33, 8},
    DialogControl{DialogControlKind::Button, DEFAULTS, "恢复默认颜色设置", 17, 64, 95, 14, WS_TABSTOP},
};

// By the indices of the colours.
constexpr std::array<const char*, CColorPage::COLORS> NAMES{"指针颜色", "过高时的颜色", "过低时的颜色",
                                                            "文本颜色"};

constexpr DialogTemplate TEMPLATE{112, "颜色设置", 229, 102, CONTROLS};

}  // namespace

CColorPage::CColorPage() : CPropertyPage(TEMPLATE) {}

CColorPage::~CColorPage() = default;

const CMessageMap& CColorPage::GetMessageMap() const {
    static constexpr std::array entries{
        MapMessage<&CColorPage::OnPaint>(WM_PAINT), MapMessage<&CColorPage::OnLButtonDown>(WM_LBUTTONDOWN),
        MapMessage<&CColorPage::OnLButtonUp>(WM_LBUTTONUP), MapCommand<&CColorPage::OnDefaults>(DEFAULTS)};
    static const CMessageMap map{entries, &CPropertyPage::GetMessageMap()};
    return map;
}

void CColorPage::DoDataExchange(CDataExchange* pDX) {
    CPropertyPage::DoDataExchange(pDX);
    for (std::size_t i = 0; i < COLORS; ++i) {
        DDX_Control(pDX, FIRST_SWATCH + static_cast<int>(i), m_swatch[i]);
    }
    DDX_Control(pDX, DEFAULTS, m_btnDefaults);
}

bool CColorPage::OnInitDialog() {
    CPropertyPage::OnInitDialog();
    m_nPressed = 0;
    for (std::size_t i = 0; i < COLORS; ++i) {
        m_swatch[i].Init(this, FIRST_SWATCH + static_cast<int>(i));
        m_swatch[i].SetAccessibleName(NAMES[i]);
        FillSwatch(i);
    }
    return true;
}

void CColorPage::OnPaint() {
    Default();
    for (CColorSwatch& swatch : m_swatch) {
        swatch.Repaint();
    }
}

void CColorPage::OnLButtonDown(UINT /*nFlags*/, POINT pt) {
    Default();
    m_nPressed = FindSwatch(pt);
}

void CColorPage::OnLButtonUp(UINT /*nFlags*/, POINT pt) {
    Default();
    const int nReleased = FindSwatch(pt);
    if (nReleased != 0 && nReleased == m_nPressed) {
        ChooseColor(static_cast<std::size_t>(nReleased - 1));
    }
    m_nPressed = 0;
}

void CColorPage::OnDefaults() {
    m_clr[NEEDLE] = CTuningStore::DEFAULT_NEEDLE_COLOR;
    m_clr[HIGH] = CTuningStore::DEFAULT_HIGH_COLOR;
    m_clr[LOW] = CTuningStore::DEFAULT_LOW_COLOR;
    m_clr[TEXT] = CTuningStore::DEFAULT_TEXT_COLOR;
    for (const std::size_t nColor : {LOW, TEXT, HIGH, NEEDLE}) {
        FillSwatch(nColor);
        m_swatch[nColor].Show();
    }
    SetModified(true);
}

int CColorPage::FindSwatch(POINT pt) const {
    ClientToScreen(pt);
    for (std::size_t i = 0; i < COLORS; ++i) {
        if (PtInRect(m_swatch[i].GetWindowRect(), pt)) {
            return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

void CColorPage::ChooseColor(std::size_t nColor) {
    CColorDialog dialog(m_clr[nColor]);
    if (dialog.DoModal() != IDOK) {
        return;
    }
    m_clr[nColor] = dialog.GetColor();
    FillSwatch(nColor);
    m_swatch[nColor].Show();
    SetModified(true);
}

void CColorPage::FillSwatch(std::size_t nColor) {
    CColorSwatch& swatch = m_swatch[nColor];
    swatch.FillRect(0, 0, swatch.GetWidth(), swatch.GetHeight(), m_clr[nColor]);
}
