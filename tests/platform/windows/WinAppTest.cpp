#include "platform/windows/MessageBox.h"
#include "platform/windows/WinApp.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <memory>
#include <utility>

namespace {

using ::testing::ElementsAre;

class CMain : public CRecordingWnd {
public:
    explicit CMain(Log& log) : CRecordingWnd(log), m_log(log) {
        // The object is still whole after the window has gone.
        m_on[WM_CLOSE] = [this] {
            DestroyWindow();
            m_log.emplace_back("closed");
            return 0;
        };
        m_fnGone = [this] { GetApp()->DeleteMainWnd(*this); };
    }
    ~CMain() override { m_log.emplace_back("deleted"); }

private:
    Log& m_log;
};

class CTestApp : public CWinApp {
public:
    explicit CTestApp(std::function<bool(CTestApp&)> fnInit) : m_fnInit(std::move(fnInit)) {}
    bool InitInstance() override { return m_fnInit(*this); }

private:
    std::function<bool(CTestApp&)> m_fnInit;
};

// Makes the main window and shows it, and does something to it once the loop runs.
auto Starting(Log& log, std::function<void(CWnd&)> fnThen = {}) {
    return [&log, fnThen = std::move(fnThen)](CTestApp& app) {
        auto pMain = std::make_unique<CMain>(log);
        EXPECT_TRUE(pMain->Open(100, 100));
        pMain->ShowWindow(app.GetShowCommand());
        app.SetMainWnd(std::move(pMain));
        if (fnThen) {
            toolkit::Later([&app, &log, fnThen] {
                log.clear();
                fnThen(*app.GetMainWnd());
            });
        }
        return true;
    };
}

TEST(WinApp, EndsWithItsMainWindowAndDeletesItWhenItsHandlersAreDone) {
    Log log;
    CTestApp app(Starting(log, [](CWnd& wnd) { toolkit::CloseBox(wnd); }));
    EXPECT_EQ(GetApp(), &app);
    EXPECT_EQ(app.Main(), 0);
    EXPECT_THAT(log, ElementsAre("close", "destroy", "gone", "closed", "deleted"));
    EXPECT_EQ(app.GetMainWnd(), nullptr);
}

TEST(WinApp, AStartThatFailsEndsTheProcessWithAnError) {
    Log log;
    CTestApp refusing([](CTestApp&) { return false; });
    EXPECT_EQ(refusing.Main(), 1);
    // A main window whose creation was refused: nothing stays behind, the object is deleted.
    CTestApp broken([&log](CTestApp& app) {
        auto pMain = std::make_unique<CMain>(log);
        pMain->m_on[WM_CREATE] = [] { return -1; };
        EXPECT_FALSE(pMain->Open(100, 100));
        app.SetMainWnd(std::move(pMain));
        return true;
    });
    EXPECT_EQ(broken.Main(), 1);
    EXPECT_THAT(log, ElementsAre("create", "destroy", "gone", "deleted"));
}

TEST(WinApp, SignalsCloseInOrderAlsoUnderAModalBox) {
    for (const int nSignal : {SIGTERM, SIGHUP, SIGINT}) {
        Log log;
        CTestApp app(Starting(log, [nSignal](CWnd& wnd) {
            toolkit::Later([nSignal] { EXPECT_EQ(raise(nSignal), 0); });
            EXPECT_EQ(MessageBox(&wnd, "still there", "caption", MB_OK), IDOK);
            // The handler that had opened it comes to its end with its object whole.
            EXPECT_FALSE(wnd.IsWindow());
            wnd.SetWindowText("harmless");
        }));
        EXPECT_EQ(app.Main(), 0) << nSignal;
        EXPECT_THAT(log, ElementsAre("close", "destroy", "gone", "closed", "deleted"));
    }
    // While the program is still starting there is no window to close: what waits for an answer gets none.
    Log log;
    CTestApp app([&log](CTestApp& self) {
        toolkit::Later([] { EXPECT_EQ(raise(SIGTERM), 0); });
        MessageBox(nullptr, "no device", "caption", MB_ICONEXCLAMATION);
        return Starting(log)(self);
    });
    EXPECT_EQ(app.Main(), 0);
    EXPECT_EQ(log.back(), "deleted");
}

}  // namespace
