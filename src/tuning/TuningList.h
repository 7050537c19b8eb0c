#pragma once

#include "tuning/Tuning.h"

#include <cstddef>
#include <limits>
#include <vector>

// An ordered list of tunings with one cursor, which makes it unfit for two walkers at once: one thread only.
class CTuningList {
public:
    // Appends a copy. Always true. A cursor at the end stays there.
    bool AddTail(const Tuning& tuning);
    // Copies an entry and sets the cursor behind it. False if there is no such entry: then `out` is untouched
    // and the cursor is at the end.
    bool GetAt(Tuning& out, int nIndex);
    // Copies the entry under the cursor and moves on. False at the end.
    bool GetNext(Tuning& out);
    // Removes one entry; a cursor keeps its entry, or takes the next if that was removed. False if there is
    // no such entry.
    bool RemoveAt(int nIndex);
    void RemoveAll();
    int GetCount() const { return static_cast<int>(m_tunings.size()); }
    // Index of the first entry with the same six notes, or -1.
    int Find(const Tuning& tuning) const;

private:
    static constexpr std::size_t AT_END = std::numeric_limits<std::size_t>::max();

    void SetCursor(std::size_t nIndex) { m_nCursor = nIndex < m_tunings.size() ? nIndex : AT_END; }
    bool HasEntry(int nIndex) const { return nIndex >= 0 && nIndex < GetCount(); }

    std::vector<Tuning> m_tunings;
    std::size_t m_nCursor = AT_END;
};
