#pragma once

#include "platform/windows/DialogTemplate.h"
#include "platform/windows/Wnd.h"

#include <memory>
#include <vector>

class CModalLoop;

// A dialog made from a template. Its controls are tabbed through in the order of the template; Enter is the
// default button, Escape and the close box are Cancel.
class CDialog : public CWnd {
public:
    // The template must outlive the object. Without a parent the application's main window is the
    // owner, or where there is none the window in front.
    explicit CDialog(const DialogTemplate& dialogTemplate, CWnd* pParent = nullptr);
    ~CDialog() override;

    // Shows the dialog, modal to its owner, until EndDialog; its result, that is, IDOK or IDCANCEL. If the
    // owner's window goes meanwhile: IDCANCEL. -1 if the dialog can't be made.
    int DoModal();
    void EndDialog(int nResult);

    const DialogTemplate& GetTemplate() const { return m_template; }

    void SetDlgItemText(int nId, const CString& strText);
    CString GetDlgItemText(int nId) const;

protected:
    const CMessageMap& GetMessageMap() const override;
    LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;
    void PostNcDestroy() override;

    // The same dialog as a page: a child of pParent at its origin, in the size of the template, not shown
    // yet, with its controls made and OnInitDialog run. It goes with its parent, or by DestroyWindow.
    bool CreatePage(CWnd* pParent);

    // Before the dialog shows, all controls made: UpdateData, which binds the members to the controls;
    // if that fails the dialog ends with -1. True: the first control that takes the keyboard gets it.
    virtual bool OnInitDialog();
    // IDOK, by button or Enter: UpdateData, and if that doesn't fail, ends with IDOK.
    virtual void OnOK();
    // IDCANCEL, by button, Escape or close box: ends with IDCANCEL.
    virtual void OnCancel();

private:
    bool CreateControls();
    void OnOKCommand();
    void OnCancelCommand();

    const DialogTemplate& m_template;
    CWnd* const m_pOwner;
    std::vector<std::unique_ptr<CWnd>> m_controls;
    std::unique_ptr<CModalLoop> m_pLoop;
};
