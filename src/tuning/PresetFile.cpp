#include "tuning/PresetFile.h"

#include "platform/base/TextFile.h"
#include "tuning/TuningReader.h"

#include <utility>

bool LoadPresetFile(const CString& strPath, CTuningList& presets, int& nDropped) {
    nDropped = 0;
    CString strText;
    return ReadTextFile(strPath, strText) == TextFileResult::Read &&
           LoadPresetText(strText, presets, nDropped);
}

bool LoadPresetText(std::string_view strText, CTuningList& presets, int& nDropped) {
    nDropped = 0;
    CTuningReader reader(strText);
    std::size_t nLastBreak = std::string_view::npos;
    while (!reader.HasMetEnd()) {
        Tuning tuning;
        tuning.m_strName = reader.ReadName();
        if (tuning.m_strName.empty()) {
            return false;
        }
        const std::size_t nNumbersStart = reader.GetPosition();
        if (!reader.ReadTagAndNotes(tuning)) {
            // The line that broke a record, tried as a record of its own, may break at the same place again.
            const std::size_t nBreak = std::exchange(nLastBreak, reader.GetPosition());
            nDropped += nBreak != nLastBreak ? 1 : 0;
            reader.SkipBrokenRecord(nNumbersStart);
            continue;
        }
        reader.SkipCharacter();
        if (tuning.IsInRange()) {
            presets.AddTail(tuning);
        } else {
            ++nDropped;
        }
    }
    return presets.GetCount() > 0;
}
