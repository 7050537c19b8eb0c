#include "platform/windows/Menu.h"
#include "window/ControlTable.h"
#include "window/HintTable.h"
#include "window/TunerWnd.h"

#include <array>

namespace {

// The popup comes up in the middle of the string.
constexpr int MIDDLE_OF_STRING = 10;

constexpr std::array<const char*, TUNING_OCTAVES> OCTAVE_CAPTIONS = {"[低音>>>   ]", "[中音>>>    ]",
                                                                     "[低音>>>   ]"};

}  // namespace

void CTunerWnd::OnContextMenu(CWnd* /*pWnd*/, POINT ptScreen) {
    POINT ptClick = ptScreen;
    ScreenToClient(ptClick);
    const int nString = FindString(ptClick);
    if (nString < 0) {
        return;
    }
    m_nMenuString = nString;
    const auto nMenuString = static_cast<std::size_t>(nString);
    const StringNote note = m_store.GetCurrentTuning()->m_strings.at(nMenuString);

    std::array<CMenu, TUNING_OCTAVES> octaves;
    CMenu menu;
    menu.CreatePopupMenu();
    for (int nOctave = 0; nOctave < TUNING_OCTAVES; ++nOctave) {
        CMenu& octave = octaves[static_cast<std::size_t>(nOctave)];
        octave.CreatePopupMenu();
        for (int nSemitone = 0; nSemitone < SEMITONES; ++nSemitone) {
            octave.AppendMenu(note.IsNote(nSemitone, nOctave) ? MF_CHECKED : 0,
                              ID_FIRST_NOTE + nOctave * ID_NOTE_OCTAVE + nSemitone,
                              SEMITONE_NAMES[static_cast<std::size_t>(nSemitone)]);
        }
        menu.AppendMenu(MF_POPUP, octave, OCTAVE_CAPTIONS[static_cast<std::size_t>(nOctave)]);
    }
    POINT ptMenu{STRING_AREAS[nMenuString].left + MIDDLE_OF_STRING, ptClick.y};
    ClientToScreen(ptMenu);
    menu.TrackPopupMenu(TPM_RIGHTBUTTON, ptMenu, *this);
}

void CTunerWnd::OnNoteCommand(int nId) {
    const int nOctave = (nId - ID_FIRST_NOTE) / ID_NOTE_OCTAVE;
    const int nSemitone = (nId - ID_FIRST_NOTE) % ID_NOTE_OCTAVE;
    if (m_nMenuString < 0 || nSemitone >= SEMITONES) {
        return;
    }
    const auto nString = static_cast<std::size_t>(m_nMenuString);
    m_store.GetCurrentTuning()->m_strings.at(nString).Set(nSemitone, nOctave);
    // The note sounds at once, before anything else changes.
    PlayString(nString);
    SyncListToCurrent();
}
