#pragma once

#include "platform/windows/Button.h"
#include "platform/windows/Wnd.h"

#include <cstddef>
#include <memory>
#include <vector>

class CModalLoop;
class CPropertyPage;

// A modal window with pages behind tabs, and the buttons OK, Cancel and Apply below them. Apply is a command
// (ID_APPLY_NOW) for the derived class, disabled until a page says that it is modified. Enter is OK, Escape
// and the close box are Cancel.
class CPropertySheet : public CWnd {
public:
    // Without a parent the application's main window is the owner, and GetParent() while the sheet is open.
    explicit CPropertySheet(CString strCaption, CWnd* pParent = nullptr, std::size_t nFirstPage = 0);
    ~CPropertySheet() override;

    // Before DoModal. The page must outlive the sheet's window.
    void AddPage(CPropertyPage* pPage);
    // Shows the sheet, modal to its owner; IDOK or IDCANCEL. If the owner's window goes meanwhile:
    // IDCANCEL. -1 if the sheet can't be made.
    int DoModal();
    // Null while the sheet isn't open.
    CPropertyPage* GetActivePage() const;

protected:
    const CMessageMap& GetMessageMap() const override;
    LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;
    void PostNcDestroy() override;

private:
    friend class CPropertyPage;

    bool CreateControls();
    bool CreateButtons(const RECT& rcTabs);
    void ShowPage(int nPage);
    void EnableApply();
    void OnOK();
    void OnCancel();

    const CString m_strCaption;
    CWnd* const m_pOwner;
    const std::size_t m_nFirstPage;
    std::vector<CPropertyPage*> m_pages;
    CButton m_btnOK;
    CButton m_btnCancel;
    CButton m_btnApply;
    std::unique_ptr<CModalLoop> m_pLoop;
};
