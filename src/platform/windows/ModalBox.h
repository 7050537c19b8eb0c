#pragma once

#include <functional>

class CWnd;

// The modal boxes that are open and have no CWnd: each goes with its owner, or with the end of the
// application.
class CModalBox {
public:
    CModalBox(const CWnd* pOwner, std::function<void()> fnEnd);
    ~CModalBox();
    CModalBox(const CModalBox&) = delete;
    CModalBox& operator=(const CModalBox&) = delete;
    CModalBox(CModalBox&&) = delete;
    CModalBox& operator=(CModalBox&&) = delete;

    static void EndAllOf(const CWnd& owner);
    static void EndAll();

private:
    const CWnd* const m_pOwner;
    const std::function<void()> m_fnEnd;
    CModalBox* const m_pOuter;
};
