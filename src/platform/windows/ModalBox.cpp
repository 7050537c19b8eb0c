#include "platform/windows/ModalBox.h"

#include <utility>

namespace {

// The innermost box that is open.
CModalBox*& Innermost() {
    static CModalBox* pInnermost = nullptr;
    return pInnermost;
}

}  // namespace

CModalBox::CModalBox(const CWnd* pOwner, std::function<void()> fnEnd)
    : m_pOwner(pOwner), m_fnEnd(std::move(fnEnd)), m_pOuter(std::exchange(Innermost(), this)) {}

CModalBox::~CModalBox() {
    Innermost() = m_pOuter;
}

void CModalBox::EndAllOf(const CWnd& owner) {
    for (const CModalBox* pBox = Innermost(); pBox != nullptr; pBox = pBox->m_pOuter) {
        if (pBox->m_pOwner == &owner) {
            pBox->m_fnEnd();
        }
    }
}

void CModalBox::EndAll() {
    for (const CModalBox* pBox = Innermost(); pBox != nullptr; pBox = pBox->m_pOuter) {
        pBox->m_fnEnd();
    }
}
