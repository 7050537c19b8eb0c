#include "dialogs/FrequencyDialog.h"

#include "platform/base/String.h"
#include "platform/windows/DataExchange.h"
#include "platform/windows/MessageBox.h"
#include "tuning/StringNote.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

constexpr int EDIT = 1001;
constexpr int SLIDER = 1002;
constexpr int RESET = 1003;

constexpr int UNITS_PER_HERTZ = 10;
constexpr int TIC_FREQ = 5;
constexpr std::size_t MAX_CHARACTERS = 8;

constexpr std::array CONTROLS{
    DialogControl{DialogControlKind::Edit, EDIT, "\"A\" Note Frequency", 143, 52, 40, 14,
                  WS_BORDER | ES_AUTOHSCROLL},
    DialogControl{DialogControlKind::Slider, SLIDER, "\"A\" Note Frequency", 22, 73, 240, 19},
    DialogControl{DialogControlKind::Button, RESET, "重置", 117, 113, 50, 14},
    DialogControl{DialogControlKind::DefaultButton, IDOK, "确定", 229, 7, 50, 14},
    DialogControl{DialogControlKind::Button, IDCANCEL, "取消", 229, 24, 50, 14},
    DialogControl{
        DialogControlKind::Static, -1,
        "Move the slider bar to change the center frequency.  The standard A note has a frequency of 440 "
        "Hz.  Changing the A note frequency will shift all other notes accordingly.",
        7, 7, 167, 39},
    DialogControl{DialogControlKind::Static, -1, "\"A\" Note Frequency: ", 73, 54, 69, 8},
    DialogControl{DialogControlKind::Static, -1, "430 Hz", 21, 97, 24, 8},
    DialogControl{DialogControlKind::Static, -1, "440 Hz", 130, 97, 24, 8},
    DialogControl{DialogControlKind::Static, -1, "450 Hz", 239, 97, 24, 8},
};

constexpr DialogTemplate TEMPLATE{102, "标准 'A' 频率设置", 286, 135, CONTROLS};

// The number that a text begins with, with a decimal point in every country; 0 if it begins with none.
double NumberAtFront(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double dNumber = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), dNumber);
    // "nan" and "inf" are words here.
    return std::isfinite(dNumber) ? dNumber : 0.0;
}

}  // namespace

CFrequencyDialog::CFrequencyDialog(CWnd* pParent) : CDialog(TEMPLATE, pParent) {}

CFrequencyDialog::~CFrequencyDialog() = default;

const CMessageMap& CFrequencyDialog::GetMessageMap() const {
    static constexpr std::array entries{
        MapNotify<&CFrequencyDialog::OnSliderReleased>(NM_RELEASEDCAPTURE, SLIDER),
        MapNotification<&CFrequencyDialog::OnEditChange>(EN_CHANGE, EDIT),
        MapCommand<&CFrequencyDialog::OnReset>(RESET),
        MapMessage<&CFrequencyDialog::OnMouseMove>(WM_MOUSEMOVE)};
    static const CMessageMap map{entries, &CDialog::GetMessageMap()};
    return map;
}

void CFrequencyDialog::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, SLIDER, m_slider);
    DDX_Control(pDX, EDIT, m_edit);
    DDX_Control(pDX, RESET, m_btnReset);
}

bool CFrequencyDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    m_slider.SetRange(static_cast<int>(LOWEST_A_FREQUENCY) * UNITS_PER_HERTZ,
                      static_cast<int>(HIGHEST_A_FREQUENCY) * UNITS_PER_HERTZ);
    m_slider.SetTicFreq(TIC_FREQ);
    m_slider.SetPos(UNITS_PER_HERTZ * static_cast<int>(m_fFrequency));
    ShowFrequency();
    return true;
}

void CFrequencyDialog::OnMouseMove() {
    TakeSliderPosition();
}

void CFrequencyDialog::OnSliderReleased() {
    TakeSliderPosition();
    ShowFrequency();
}

void CFrequencyDialog::OnEditChange() {
    const float fTyped = GetTypedFrequency();
    if (fTyped < LOWEST_A_FREQUENCY || fTyped > HIGHEST_A_FREQUENCY) {
        return;
    }
    m_slider.SetPos(static_cast<int>(static_cast<double>(fTyped) * UNITS_PER_HERTZ));
    m_fFrequency = fTyped;
}

void CFrequencyDialog::OnReset() {
    constexpr int nStandard = 4400;
    m_edit.SetWindowText("440.0");
    m_slider.SetPos(nStandard);
}

void CFrequencyDialog::OnOK() {
    const float fTyped = GetTypedFrequency();
    if (fTyped >= LOWEST_A_FREQUENCY && fTyped <= HIGHEST_A_FREQUENCY) {
        CDialog::OnOK();
        return;
    }
    MessageBox(this, "Please enter a number from 430 to 450 Hz, or press cancel", "Invalid Number",
               MB_OK | MB_ICONEXCLAMATION);
}

void CFrequencyDialog::TakeSliderPosition() {
    constexpr float fUnit = 0.1F;
    m_fFrequency = static_cast<float>(static_cast<double>(m_slider.GetPos()) * fUnit);
}

// The text that this sets runs OnEditChange, which has the last word on slider and value.
void CFrequencyDialog::ShowFrequency() {
    m_edit.SetWindowText(FormatText("%.1f", static_cast<double>(m_fFrequency)));
}

float CFrequencyDialog::GetTypedFrequency() const {
    return static_cast<float>(NumberAtFront(m_edit.GetWindowText().substr(0, MAX_CHARACTERS)));
}
