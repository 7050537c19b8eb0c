#pragma once

#include "platform/windows/Button.h"
#include "platform/windows/PropertyPage.h"
#include "widgets/ColorSwatch.h"

#include <array>
#include <cstddef>

// The page of the four colours that the user can choose. A square that is pressed and released opens the
// colour dialog. The page works on colours of its own; whoever opens the sheet copies them in and out.
class CColorPage : public CPropertyPage {
public:
    CColorPage();
    ~CColorPage() override;

    static constexpr std::size_t NEEDLE = 0;
    static constexpr std::size_t HIGH = 1;
    static constexpr std::size_t LOW = 2;
    static constexpr std::size_t TEXT = 3;
    static constexpr std::size_t COLORS = 4;

    // By the indices above. Fill it before DoModal.
    std::array<COLORREF, COLORS> m_clr = {};

protected:
    const CMessageMap& GetMessageMap() const override;
    void DoDataExchange(CDataExchange* pDX) override;
    bool OnInitDialog() override;

private:
    void OnPaint();
    void OnLButtonDown(UINT nFlags, POINT pt);
    void OnLButtonUp(UINT nFlags, POINT pt);
    void OnDefaults();

    // The number of the first square, from 1, that holds the point of the client area; 0 if none does.
    int FindSwatch(POINT pt) const;
    void ChooseColor(std::size_t nColor);
    void FillSwatch(std::size_t nColor);

    std::array<CColorSwatch, COLORS> m_swatch;
    CButton m_btnDefaults;
    int m_nPressed = 0;  // the square where the button went down, from 1; 0 for none
};
