#include "window/TunerWnd.h"

namespace {

constexpr BYTE VELOCITY = 127;
// The octave of MIDI note 0 lies three below the lowest of a tuning.
constexpr int OCTAVES_BELOW = 3;
// A run over all strings is bent down by a semitone, so that its notes stand one higher.
constexpr int RUN_OFFSET = OCTAVES_BELOW * SEMITONES + 1;

int RunNoteOf(const StringNote& note) {
    return static_cast<BYTE>(note.semitone + SEMITONES * note.octave + RUN_OFFSET);
}

}  // namespace

void CTunerWnd::OnPlay() {
    const auto& strings = m_store.GetCurrentTuning()->m_strings;
    m_tonePlayer.PlayAllStrings(RunNoteOf(strings[0]), RunNoteOf(strings[1]), RunNoteOf(strings[2]),
                                RunNoteOf(strings[3]), RunNoteOf(strings[4]), RunNoteOf(strings[5]),
                                VELOCITY);
}

void CTunerWnd::PlayString(std::size_t nString) {
    const StringNote& note = m_store.GetCurrentTuning()->m_strings.at(nString);
    m_tonePlayer.PlayString(note.semitone + SEMITONES * (note.octave + OCTAVES_BELOW), VELOCITY);
}
