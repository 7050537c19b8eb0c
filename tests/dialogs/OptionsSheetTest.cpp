#include "dialogs/OptionsSheet.h"
#include "platform/drawing/Pixel.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/windows/WinApp.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"
#include "tuning/TuningStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int FIRST_SWATCH = 1006;
constexpr int DEFAULTS = 1015;
constexpr POINT PT_IN_BUTTON{5, 5};
using Colors = std::array<COLORREF, 4>;  // needle, high, low, text
constexpr Colors CHOSEN{0x123456, 0x0000FF, 0x00FF00, 0x563412};
constexpr Colors DEFAULT_COLORS{0xA00000, 0xFF0000, 0x008000, 0xFF0000};

Colors ColorsOf(const CTuningStore& store) {
    return {store.GetNeedleColor(), store.GetHighColor(), store.GetLowColor(), store.GetTextColor()};
}

class OptionsSheet : public ::testing::Test {
protected:
    void SetUp() override {
        m_store.SetNeedleColor(CHOSEN[0]);
        m_store.SetHighColor(CHOSEN[1]);
        m_store.SetLowColor(CHOSEN[2]);
        m_store.SetTextColor(CHOSEN[3]);
        auto pMain = std::make_unique<CRecordingWnd>(m_log);
        pMain->m_on[COptionsSheet::COLORS_CHANGED] = [this] {
            m_told.push_back(ColorsOf(m_store));
            return 0;
        };
        pMain->Open(500, 400);
        pMain->ShowWindow(SW_SHOW);
        m_app.SetMainWnd(std::move(pMain));
    }
    // What DoModal returns when the user does this in the sheet; Cancel ends what the user leaves open.
    int Run(const std::function<void()>& fnUser) {
        m_pSheet = std::make_unique<COptionsSheet>();
        m_pSheet->m_pStore = &m_store;
        Page().m_clr = ColorsOf(m_store);
        toolkit::Later([&] {
            fnUser();
            Click(IDCANCEL);
        });
        return m_pSheet->DoModal();
    }
    CColorPage& Page() { return m_pSheet->m_colorPage; }
    void Click(int nId) {
        if (CWnd* const pButton = m_pSheet->GetDlgItem(nId)) {
            toolkit::Click(*pButton, PT_IN_BUTTON);
        }
    }
    void ClickDefaults() { toolkit::Click(*Page().GetDlgItem(DEFAULTS), PT_IN_BUTTON); }
    bool CanApply() { return m_pSheet->GetDlgItem(12321)->IsWindowEnabled(); }
    // On the page, relative to a square's upper left corner.
    POINT PointAt(int nSwatch, POINT ptOffset = {8, 8}) {
        const RECT rc = Page().GetDlgItem(FIRST_SWATCH + nSwatch)->GetWindowRect();
        POINT pt{rc.left + ptOffset.x, rc.top + ptOffset.y};
        Page().ScreenToClient(pt);
        return pt;
    }
    // Whether what the user does opens the colour dialog, which is then answered.
    bool Opens(const std::function<void()>& fnUser, std::optional<COLORREF> clrAnswer = {}) {
        bool bOpened = false;
        toolkit::Later([&] {
            bOpened = toolkit::ModalTitle() == "颜色";
            if (bOpened) {
                m_clrFirst = toolkit::AnswerColorDialog(clrAnswer);
            }
        });
        fnUser();
        toolkit::RunFor(40);
        return bOpened;
    }
    bool ReleaseOpens(POINT pt) {
        return Opens([&] { toolkit::Release(Page(), pt); });
    }
    // In its colour dialog the square gets this colour. It lets the mouse through to the page.
    void ClickSquare(int nSwatch, COLORREF clr) {
        EXPECT_TRUE(Opens([&] { toolkit::ClickInto(Page(), PointAt(nSwatch)); }, clr));
    }
    // As the screen shows them.
    Colors ShownColors() {
        toolkit::RunFor(50);
        const toolkit::Screenshot shot = toolkit::GrabScreen(*m_pSheet);
        Colors colors;
        for (std::size_t i = 0; i < colors.size(); ++i) {
            POINT pt = PointAt(static_cast<int>(i));
            Page().ClientToScreen(pt);
            m_pSheet->ScreenToClient(pt);
            colors.at(i) = ColorFromPixel(shot.At(pt.x, pt.y) & 0xFFFFFFU);
        }
        return colors;
    }

    CFakeWaveInScope m_wave;
    CTuningStore m_store;
    CWinApp m_app;
    Log m_log;
    std::vector<Colors> m_told;  // what the store held when the main window was told of new colours
    std::unique_ptr<COptionsSheet> m_pSheet;
    COLORREF m_clrFirst = 0;
};

TEST_F(OptionsSheet, OpensTheColorDialogForAPressAndReleaseOnOneSquare) {
    struct Drag {
        int nFrom;
        POINT ptFrom;
        int nTo;
        POINT ptTo;
        bool bOpens;
    };
    constexpr POINT ptMiddle{8, 8};
    constexpr POINT ptBeside{60, 8};  // on the label
    constexpr std::array drags{Drag{0, ptMiddle, 0, {0, 0}, true},    Drag{3, {0, 0}, 3, ptMiddle, true},
                               Drag{0, ptMiddle, 1, ptMiddle, false}, Drag{0, ptBeside, 0, ptBeside, false},
                               Drag{0, ptMiddle, 0, {-1, 8}, false},  Drag{1, {-1, 8}, 1, ptMiddle, false}};
    Run([&] {
        for (std::size_t i = 0; i < drags.size(); ++i) {
            const Drag& drag = drags.at(i);
            toolkit::Press(Page(), PointAt(drag.nFrom, drag.ptFrom));
            toolkit::Move(Page(), PointAt(drag.nTo, ptBeside));
            EXPECT_EQ(ReleaseOpens(PointAt(drag.nTo, drag.ptTo)), drag.bOpens) << i;
            EXPECT_FALSE(ReleaseOpens(PointAt(drag.nFrom))) << i << ": a press counts once";
        }
        EXPECT_EQ(Page().m_clr, CHOSEN);
        EXPECT_FALSE(CanApply()) << "each was cancelled";
    });
}

TEST_F(OptionsSheet, TakesAndShowsTheColorOfTheDialog) {
    Run([this] {
        EXPECT_EQ(toolkit::ModalTitle(), "[高音 ]");
        EXPECT_EQ(m_pSheet->GetActivePage(), &Page());
        EXPECT_EQ(ShownColors(), CHOSEN);
        EXPECT_FALSE(CanApply());
        for (const int nId : {-1, DEFAULTS}) {
            EXPECT_FALSE(toolkit::IsTextCut(*Page().GetDlgItem(nId))) << nId;
        }
        toolkit::SavePicture(*m_pSheet, "options-colors.png");
        Colors expected = CHOSEN;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            expected.at(i) = i == 0 ? CHOSEN[0] : 0x804020;
            ClickSquare(static_cast<int>(i), expected.at(i));
            EXPECT_EQ(m_clrFirst, CHOSEN.at(i));
            EXPECT_EQ(Page().m_clr, expected);
            EXPECT_TRUE(CanApply()) << "also where the colour is the same";
        }
        EXPECT_EQ(ShownColors(), expected);
    });
    EXPECT_EQ(ColorsOf(m_store), CHOSEN);
}

TEST_F(OptionsSheet, AppliesAndDropsColors) {
    EXPECT_EQ(Run([this] {
                  ClickDefaults();
                  EXPECT_EQ(ShownColors(), DEFAULT_COLORS);
                  EXPECT_TRUE(CanApply());
              }),
              IDCANCEL);
    EXPECT_EQ(ColorsOf(m_store), CHOSEN);
    EXPECT_THAT(m_told, IsEmpty());

    EXPECT_EQ(Run([this] {
                  m_pSheet->m_devicePage.m_nWaveChoice = 7;
                  Click(IDOK);
              }),
              IDOK);
    EXPECT_EQ(Page().m_clr, CHOSEN);
    EXPECT_EQ(m_pSheet->m_devicePage.m_nWaveChoice, 7) << "nobody has looked at that page";

    EXPECT_EQ(Run([this] {
                  ClickDefaults();
                  Click(12321);
                  EXPECT_THAT(m_told, ElementsAre(DEFAULT_COLORS)) << "before Apply is done";
                  EXPECT_FALSE(CanApply());
                  EXPECT_TRUE(m_pSheet->IsWindow());
                  ClickSquare(0, 0x010203);
                  EXPECT_TRUE(CanApply());
              }),
              IDCANCEL);
    EXPECT_EQ(ColorsOf(m_store), DEFAULT_COLORS) << "what came behind the last Apply is dropped";
}

TEST_F(OptionsSheet, KnowsEnterEscapeAndTab) {
    constexpr int nEscape = 0x01000000;
    constexpr int nReturn = 0x01000004;
    constexpr int nTab = 0x01000001;
    EXPECT_EQ(Run([this] {
                  toolkit::ClickTab(*m_pSheet, 1);
                  m_pSheet->m_devicePage.GetDlgItem(1014)->SetFocus();
                  toolkit::ClickTab(*m_pSheet, 0);
                  toolkit::KeyIntoFocus(nReturn);
              }),
              IDOK);
    EXPECT_EQ(Page().m_clr, CHOSEN) << "and not the button of the page";
    Run([this] {
        toolkit::ClickTab(*m_pSheet, 1);
        toolkit::ClickTab(*m_pSheet, 0);
        for (const int nId : {DEFAULTS, int{IDOK}, int{IDCANCEL}, 0}) {
            toolkit::KeyIntoFocus(nTab);
            EXPECT_EQ(CWnd::GetFocus()->GetDlgCtrlID(), nId);
        }
    });
    EXPECT_EQ(Run([this] { toolkit::Key(*m_pSheet, nEscape, "\x1b"); }), IDCANCEL);
}

}  // namespace
