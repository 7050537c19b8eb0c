#include "tones/MidiTrackList.h"

#include "platform/base/Exceptions.h"

#include <utility>

CMidiTrackList::~CMidiTrackList() {
    Clear();
}

bool CMidiTrackList::Serialize(CArchive& archive) {
    return archive.IsLoading() ? Load(archive) : Store(archive);
}

void CMidiTrackList::Clear() {
    for (const auto& pTrack : m_chunks) {
        pTrack->Unlink();
    }
    m_chunks.clear();
    m_pIter = nullptr;
    m_nCount = 0;
}

CMidiTrackChunk* CMidiTrackList::NextTrack() {
    CMidiTrackChunk* const pTrack = m_pIter;
    if (pTrack != nullptr) {
        m_pIter = pTrack->GetNext();
    }
    return pTrack;
}

bool CMidiTrackList::Load(CArchive& archive) {
    Clear();
    bool bWhole = true;
    CMidiTrackChunk* pTail = &m_head;
    for (;;) {
        try {
            BYTE nNext = 0;
            if (archive.Read(&nNext, 1) == 0) {
                return bWhole;
            }
            archive.StepBack();
        } catch (const CFileException&) {
            return false;
        }
        auto pTrack = std::make_unique<CMidiTrackChunk>(m_nCount + 1);
        if (!pTrack->Serialize(archive)) {
            return false;
        }
        ++m_nCount;
        bWhole = bWhole && pTrack->IsWhole();
        pTrack->InsertAfter(*pTail);
        pTail = pTrack.get();
        m_chunks.push_back(std::move(pTrack));
    }
}

bool CMidiTrackList::Store(CArchive& archive) {
    ResetIteration();
    while (CMidiTrackChunk* const pTrack = NextTrack()) {
        if (!pTrack->Serialize(archive)) {
            return false;
        }
    }
    return true;
}
