#pragma once

#include "platform/windows/Wnd.h"

#include <memory>
#include <span>
#include <vector>

enum class DialogControlKind { Static, Edit, Button, DefaultButton };

// One control of a dialog template. The rectangle is in dialog units.
struct DialogControl {
    DialogControlKind nKind;
    int nId;  // -1 for a label that nobody asks for
    const char* szText;
    int x;
    int y;
    int cx;
    int cy;
    DWORD dwStyle = 0;
};

// A dialog as data. Sizes are in dialog units: horizontally a quarter of the dialog font's average character
// width, vertically an eighth of its height.
struct DialogTemplate {
    int nId;
    const char* szTitle;
    int cx;
    int cy;
    std::span<const DialogControl> controls;
    int nPointSize = 8;
    const char* szFace = "MS Sans Serif";
};

// A dialog made from a template. Its controls are tabbed through in the order of the template; Enter is the
// default button, Escape and the close box are Cancel.
class CDialog : public CWnd {
public:
    // The template must outlive the object. Without a parent the application's main window is the owner.
    explicit CDialog(const DialogTemplate& dialogTemplate, CWnd* pParent = nullptr);
    ~CDialog() override;

    // Shows the dialog over its disabled owner until EndDialog; its result, that is, IDOK or IDCANCEL. If the
    // owner's window goes meanwhile: IDCANCEL. -1 if the dialog can't be made.
    int DoModal();
    void EndDialog(int nResult);

    void SetDlgItemText(int nId, const CString& strText);
    CString GetDlgItemText(int nId) const;

protected:
    const CMessageMap& GetMessageMap() const override;
    LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;
    void PostNcDestroy() override;

    // Before the dialog shows, all controls made. True: the first control that takes the keyboard gets it.
    virtual bool OnInitDialog();
    // IDOK, by button or Enter: ends with IDOK.
    virtual void OnOK();
    // IDCANCEL, by button, Escape or close box: ends with IDCANCEL.
    virtual void OnCancel();

private:
    struct CModalLoop;

    bool CreateControls();
    void OnOKCommand();
    void OnCancelCommand();

    const DialogTemplate& m_template;
    CWnd* const m_pOwner;
    std::vector<std::unique_ptr<CWnd>> m_controls;
    std::unique_ptr<CModalLoop> m_pLoop;
    int m_nResult = IDCANCEL;
};
