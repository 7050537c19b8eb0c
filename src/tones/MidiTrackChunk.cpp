#include "tones/MidiTrackChunk.h"

#include "platform/base/Exceptions.h"
#include "tones/MidiBytes.h"
#include "tones/MidiChannelEvent.h"
#include "tones/MidiMetaEvent.h"
#include "tones/MidiSysexEvent.h"

#include <utility>

namespace {

constexpr BYTE STATUS_BIT = 0x80;

std::unique_ptr<CMidiEvent> MakeEvent(DWORD nDelta, BYTE nStatus) {
    if (nStatus == MIDI_STATUS_META) {
        return std::make_unique<CMidiMetaEvent>(nDelta, nStatus);
    }
    if (nStatus >= MIDI_STATUS_SYSEX) {
        return std::make_unique<CMidiSysexEvent>(nDelta, nStatus);
    }
    return std::make_unique<CMidiChannelEvent>(nDelta, nStatus);
}

}  // namespace

CMidiTrackChunk::~CMidiTrackChunk() {
    for (const auto& pEvent : m_events) {
        pEvent->Unlink();
    }
}

bool CMidiTrackChunk::Serialize(CArchive& archive) {
    try {
        return archive.IsLoading() ? Load(archive) : Store(archive);
    } catch (const CFileException&) {
        return false;
    }
}

bool CMidiTrackChunk::Load(CArchive& archive) {
    m_bWhole = false;
    if (!ReadChunkHeader(archive) || m_nKind != CHUNK_TRACK) {
        return false;
    }
    CMidiEvent* pTail = &m_head;
    DWORD nPosition = 0;
    BYTE nStatus = 0;
    while (nPosition < m_nLength) {
        DWORD nDelta = 0;
        const DWORD nDeltaBytes = ReadVarLen(archive, nDelta);
        nPosition += nDeltaBytes;
        m_nOutputSize += nDeltaBytes;
        BYTE nByte = 0;
        if (nDelta == NO_QUANTITY || !ReadByte(archive, nByte)) {
            return false;
        }
        if ((nByte & STATUS_BIT) == 0) {
            // Running status, after any kind of event; only the first has none to run on.
            if (nStatus == 0) {
                return false;
            }
            archive.StepBack();
        } else {
            nPosition += 1;
            if (nByte >= MIDI_STATUS_SYSEX || nByte != nStatus) {
                m_nOutputSize += 1;
            }
            nStatus = nByte;
        }
        auto pEvent = MakeEvent(nDelta, nStatus);
        DWORD nEventBytes = 0;
        if (!pEvent->Read(archive, nEventBytes)) {
            return true;
        }
        pEvent->InsertAfter(*pTail);
        pTail = pEvent.get();
        m_events.push_back(std::move(pEvent));
        nPosition += nEventBytes;
        m_nOutputSize += nEventBytes;
    }
    m_bWhole = true;
    return true;
}

bool CMidiTrackChunk::Store(CArchive& archive) const {
    archive.Write(m_chunkId.data(), m_chunkId.size());
    WriteBigEndian(archive, m_nOutputSize);
    for (const CMidiEvent* pEvent = GetFirstEvent(); pEvent != nullptr; pEvent = pEvent->GetNext()) {
        if (!pEvent->Write(archive)) {
            return false;
        }
    }
    return true;
}
