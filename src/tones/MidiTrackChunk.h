#pragma once

#include "tones/MidiChunk.h"
#include "tones/MidiEvent.h"
#include "tones/MidiLinked.h"

#include <memory>
#include <vector>

// A track: the list of its events, which it owns.
class CMidiTrackChunk final : public CMidiChunk, public CMidiLinked<CMidiTrackChunk> {
public:
    // Counted from 1; 0 for the head of the track list.
    explicit CMidiTrackChunk(int nNumber) : m_nNumber(nNumber) {}
    ~CMidiTrackChunk() override;

    // In the archive's direction. Loading, false means that there is no track, or that its length is a lie;
    // an event that breaks off ends the track and leaves it true (see IsWhole).
    bool Serialize(CArchive& archive);
    // Every event that the track announced could be read.
    bool IsWhole() const { return m_bWhole; }
    // Null if the track has none.
    CMidiEvent* GetFirstEvent() const { return m_head.GetNext(); }
    int GetNumber() const { return m_nNumber; }

private:
    bool Load(CArchive& archive);
    bool Store(CArchive& archive) const;

    int m_nNumber;
    CMidiEventHead m_head;
    std::vector<std::unique_ptr<CMidiEvent>> m_events;  // what the list links
    bool m_bWhole = false;
};
