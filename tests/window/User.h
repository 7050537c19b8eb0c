#pragma once

#include "platform/base/Types.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QTimer;

// Sits in front of the screen: as long as it lives, it reads each message box and closes it, and answers the
// dialog that asks for a tuning's name.
class CUser {
public:
    CUser();
    ~CUser();

    // What the user types before OK; nothing at all for Cancel.
    void SetNameToType(std::optional<CString> strName) { m_strName = std::move(strName); }
    // Leaves the dialogs to the test.
    void LeaveDialogs() { m_bLeaveDialogs = true; }

    // Each box as "[caption] text".
    const std::vector<CString>& GetBoxes() const { return m_boxes; }
    std::size_t CountDialogs() const { return m_nDialogs; }

private:
    void Look();

    bool m_bLeaveDialogs = false;
    std::optional<CString> m_strName;
    std::vector<CString> m_boxes;
    std::size_t m_nDialogs = 0;
    std::unique_ptr<QTimer> m_pTimer;
};
