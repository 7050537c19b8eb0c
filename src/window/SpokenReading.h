#pragma once

#include "platform/base/Types.h"
#include "tuning/NoteReading.h"

#include <atomic>
#include <cstdint>

// What the dial shows, for those who hear it read out. A frame publishes it, without waiting; the message
// loop asks for the text when it wants one.
class CSpokenReading {
public:
    // On the capture thread. The cents as the dial has them, cut to whole ones.
    void Publish(const NoteReading& reading, bool bHolding);
    // "A2, 12 cents sharp", "E4, in tune", "D3, 5 cents flat, held"; empty before anything was heard. On any
    // thread.
    CString GetText() const;

private:
    // All of it in one word: semitone, octave, cents and whether the reading is held; 0 at first.
    std::atomic<std::uint32_t> m_nWord = 0;
};
