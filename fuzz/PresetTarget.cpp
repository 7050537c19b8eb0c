#include "fuzz/Require.h"
#include "tuning/PresetFile.h"
#include "tuning/TuningReader.h"

#include <cstddef>
#include <cstdint>

// Whatever the bytes, only tunings that the rest can rely on come out of them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const CString strText(pData, pData + nSize);
    CTuningList presets;
    int nDropped = -1;
    const bool bRead = LoadPresetText(strText, presets, nDropped);
    Require(!bRead || presets.GetCount() > 0);
    Require(nDropped >= 0 && static_cast<std::size_t>(nDropped + presets.GetCount()) <= nSize);
    Tuning tuning;
    for (bool bMore = presets.GetAt(tuning, 0); bMore; bMore = presets.GetNext(tuning)) {
        Require(tuning.IsInRange() && !tuning.m_strName.empty() && tuning.m_strName.size() <= MAX_NAME_BYTES);
    }
    return 0;
}
