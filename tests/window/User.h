#pragma once

#include "platform/base/Types.h"

#include <memory>
#include <optional>
#include <vector>

// What stood in a message box.
struct ShownBox {
    CString strCaption;
    CString strText;
    friend bool operator==(const ShownBox&, const ShownBox&) = default;
};
void PrintTo(const ShownBox& box, std::ostream* pStream);

// Sits in front of the screen: as long as it lives, it reads each message box and closes it, and answers the
// dialog that asks for a tuning's name.
class CUser {
public:
    CUser();
    ~CUser();
    CUser(const CUser&) = delete;
    CUser& operator=(const CUser&) = delete;
    CUser(CUser&&) = delete;
    CUser& operator=(CUser&&) = delete;

    // What the user types before OK; nothing at all for Cancel.
    void SetNameToType(std::optional<CString> strName);
    // Leaves the dialogs to the test.
    void LeaveDialogs() { m_bLeaveDialogs = true; }
    // Leaves whatever opens to the test.
    void LookAway();

    const std::vector<ShownBox>& GetBoxes() const { return m_boxes; }
    // The titles of the dialogs that were answered.
    const std::vector<CString>& GetDialogs() const { return m_dialogs; }

private:
    struct Watch;
    void Look();

    bool m_bLeaveDialogs = false;
    std::optional<CString> m_strName;
    std::vector<ShownBox> m_boxes;
    std::vector<CString> m_dialogs;
    std::unique_ptr<Watch> m_pWatch;
};
