#include "dialogs/TuningNameDialog.h"

#include <array>

namespace {

constexpr int NAME_EDIT = 1000;

constexpr std::array CONTROLS{
    DialogControl{DialogControlKind::Static, -1, "新的调弦规则名称:", 7, 7, 112, 8},
    DialogControl{DialogControlKind::Edit, NAME_EDIT, "新的调弦规则名称", 7, 21, 112, 14,
                  WS_BORDER | ES_AUTOHSCROLL},
    DialogControl{DialogControlKind::DefaultButton, IDOK, "确定", 69, 41, 50, 14},
    DialogControl{DialogControlKind::Button, IDCANCEL, "取消", 7, 41, 50, 14},
};

constexpr DialogTemplate TEMPLATE{101, "新增调弦规则", 126, 62, CONTROLS};

}  // namespace

CTuningNameDialog::CTuningNameDialog(CWnd* pParent) : CDialog(TEMPLATE, pParent) {}

CTuningNameDialog::~CTuningNameDialog() = default;

bool CTuningNameDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    SetDlgItemText(NAME_EDIT, m_strName);
    return true;
}

void CTuningNameDialog::OnOK() {
    m_strName = GetDlgItemText(NAME_EDIT);
    CDialog::OnOK();
}
