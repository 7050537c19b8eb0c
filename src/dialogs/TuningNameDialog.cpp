#include "dialogs/TuningNameDialog.h"

#include <array>

namespace {

constexpr int g_nNameEdit = 1000;

constexpr std::array g_controls{
    DialogControl{DialogControlKind::Static, -1, "新的调弦规则名称:", 7, 7, 112, 8},
    DialogControl{DialogControlKind::Edit, g_nNameEdit, "新的调弦规则名称", 7, 21, 112, 14,
                  WS_BORDER | ES_AUTOHSCROLL},
    DialogControl{DialogControlKind::DefaultButton, IDOK, "确定", 69, 41, 50, 14},
    DialogControl{DialogControlKind::Button, IDCANCEL, "取消", 7, 41, 50, 14},
};

constexpr DialogTemplate g_template{101, "新增调弦规则", 126, 62, g_controls};

}  // namespace

CTuningNameDialog::CTuningNameDialog(CWnd* pParent) : CDialog(g_template, pParent) {}

CTuningNameDialog::~CTuningNameDialog() = default;

bool CTuningNameDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    SetDlgItemText(g_nNameEdit, m_strName);
    return true;
}

void CTuningNameDialog::OnOK() {
    m_strName = GetDlgItemText(g_nNameEdit);
    CDialog::OnOK();
}
