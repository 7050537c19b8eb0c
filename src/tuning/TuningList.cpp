#include "tuning/TuningList.h"

#include <algorithm>

bool CTuningList::AddTail(const Tuning& tuning) {
    m_tunings.push_back(tuning);
    return true;
}

bool CTuningList::GetAt(Tuning& out, int nIndex) {
    if (!HasEntry(nIndex)) {
        m_nCursor = AT_END;
        return false;
    }
    m_nCursor = static_cast<std::size_t>(nIndex);
    return GetNext(out);
}

bool CTuningList::GetNext(Tuning& out) {
    if (m_nCursor == AT_END) {
        return false;
    }
    out = m_tunings[m_nCursor];
    SetCursor(m_nCursor + 1);
    return true;
}

bool CTuningList::RemoveAt(int nIndex) {
    if (!HasEntry(nIndex)) {
        return false;
    }
    m_tunings.erase(m_tunings.begin() + nIndex);
    if (m_nCursor != AT_END) {
        SetCursor(m_nCursor > static_cast<std::size_t>(nIndex) ? m_nCursor - 1 : m_nCursor);
    }
    return true;
}

void CTuningList::RemoveAll() {
    m_tunings.clear();
    m_nCursor = AT_END;
}

int CTuningList::Find(const Tuning& tuning) const {
    const auto found = std::find_if(m_tunings.begin(), m_tunings.end(),
                                    [&tuning](const Tuning& entry) { return entry.IsEqual(tuning); });
    return found == m_tunings.end() ? -1 : static_cast<int>(found - m_tunings.begin());
}
