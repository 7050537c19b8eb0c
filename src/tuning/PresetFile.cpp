#include "tuning/PresetFile.h"

#include "platform/base/TextFile.h"
#include "tuning/TuningReader.h"

bool LoadPresetFile(const CString& strPath, CTuningList& presets, int& nDropped) {
    nDropped = 0;
    CString strText;
    return ReadTextFile(strPath, strText) == TextFileResult::Read &&
           LoadPresetText(strText, presets, nDropped);
}

bool LoadPresetText(std::string_view strText, CTuningList& presets, int& nDropped) {
    nDropped = 0;
    CTuningReader reader(strText);
    while (!reader.HasMetEnd()) {
        const std::size_t nStart = reader.GetPosition();
        Tuning tuning;
        tuning.m_strName = reader.ReadName();
        if (tuning.m_strName.empty()) {
            return false;
        }
        if (!reader.ReadTagAndNotes(tuning)) {
            ++nDropped;
            reader.SkipBrokenRecord(nStart);
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
