// What the display costs in a frame: the three live widgets together, drawn into a window's picture under its
// lock.

#include "platform/windows/ClientDc.h"
#include "platform/windows/Wnd.h"
#include "widgets/PictureDirectory.h"
#include "widgets/WidgetSet.h"

#include <benchmark/benchmark.h>

#include <mutex>

namespace {

class CBenchWnd : public CWnd {
public:
    CBenchWnd() { SetClientSize(500, 396); }
};

// The widgets with the program's own bitmaps, drawn in full once.
class CDisplay {
public:
    CDisplay() {
        m_widgets.Create(&m_wnd);
        m_widgets.SetAll(m_state);
        const std::lock_guard lock(m_wnd.GetPictureLock());
        CClientDC dc(&m_wnd);
        m_widgets.DrawFull(&dc);
    }

    void Frame(bool bColorChanged) {
        m_widgets.SetReading(m_state);
        CClientDC dc(&m_wnd);
        {
            const std::lock_guard lock(m_wnd.GetPictureLock());
            m_widgets.m_meter.Draw(&dc, false);
        }
        {
            const std::lock_guard lock(m_wnd.GetPictureLock());
            m_widgets.m_coarse.Draw(&dc, false);
        }
        const std::lock_guard lock(m_wnd.GetPictureLock());
        if (bColorChanged) {
            m_widgets.m_dial.SetColor(m_state.clrDialNeedle);
        }
        m_widgets.m_dial.Draw(&dc, false, bColorChanged);
    }
    void Paint() {
        const std::lock_guard lock(m_wnd.GetPictureLock());
        CClientDC dc(&m_wnd);
        m_widgets.m_meter.Draw(&dc, true);
        m_widgets.m_coarse.Draw(&dc, true);
        m_widgets.m_dial.Draw(&dc, true, false);
    }

    DisplayState m_state;

private:
    CDataDirectory m_directory;
    CBenchWnd m_wnd;
    CWidgetSet m_widgets;
};

void FrameUnchanged(benchmark::State& state) {
    CDisplay display;
    display.m_state.fHz = 110.0F;
    display.m_state.fLevel = 0.5F;
    for (auto _ : state) {
        display.Frame(false);
    }
}
BENCHMARK(FrameUnchanged);

void FrameWithNewCents(benchmark::State& state) {
    CDisplay display;
    int i = 0;
    for (auto _ : state) {
        ++i;
        display.m_state.nCents = i % 103 - 51;
        display.m_state.fHz = 110.0F + static_cast<float>(i % 103) / 16.0F;
        display.m_state.fLevel = 0.5F + static_cast<float>(i % 16) / 64.0F;
        display.Frame(false);
    }
}
BENCHMARK(FrameWithNewCents);

void FrameWithNewNoteAndCents(benchmark::State& state) {
    CDisplay display;
    int i = 0;
    for (auto _ : state) {
        ++i;
        display.m_state.nSemitone = i % SEMITONES;
        display.m_state.nCents = i % 103 - 51;
        display.m_state.fHz = i % 2 == 0 ? 82.0F : 330.0F;
        display.m_state.fLevel = i % 2 == 0 ? 0.1F : 0.9F;
        display.Frame(false);
    }
}
BENCHMARK(FrameWithNewNoteAndCents);

void FrameWhileFading(benchmark::State& state) {
    CDisplay display;
    display.m_state.nCents = 30;
    COLORREF clr = 0;
    for (auto _ : state) {
        display.m_state.clrDialNeedle = ++clr & 0xFFFFFF;
        display.Frame(true);
    }
}
BENCHMARK(FrameWhileFading);

// The same three widgets as a paint draws them, to compare.
void PaintInFull(benchmark::State& state) {
    CDisplay display;
    for (auto _ : state) {
        display.Paint();
    }
}
BENCHMARK(PaintInFull);

}  // namespace
