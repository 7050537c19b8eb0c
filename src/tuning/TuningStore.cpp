#include "tuning/TuningStore.h"

#include "platform/base/FileReplacement.h"
#include "platform/base/TextFile.h"
#include "tuning/TuningReader.h"

#include <algorithm>
#include <limits>

namespace {

constexpr const char* FIRST_LINE = "USED DIRECTLY BY FRETVANE, DO NOT EDIT!";
constexpr const char* REJECTED_MARK = ".rejected";

constexpr int LARGEST_COLOR = 0xFFFFFF;
constexpr COLORREF COLOR_BITS = LARGEST_COLOR;
constexpr int LARGEST_INT = std::numeric_limits<int>::max();

// The A frequency stands in the file in hundredths of a hertz.
constexpr int LOWEST_A_HUNDREDTHS = static_cast<int>(LOWEST_A_FREQUENCY * 100.0F);
constexpr int HIGHEST_A_HUNDREDTHS = static_cast<int>(HIGHEST_A_FREQUENCY * 100.0F);
constexpr float HUNDREDTH = 0.01F;

// Truncates into a range; what is no number becomes its lower end.
DWORD Truncate(double dValue, int nLow, int nHigh) {
    return static_cast<DWORD>(dValue >= nLow ? std::min<double>(dValue, nHigh) : nLow);
}

CString ToText(int nValue) {
    return std::to_string(static_cast<DWORD>(nValue));
}

// The name as the file can hold it: neither TAB nor line end, and short enough.
CString NameForFile(const CString& strName) {
    CString strWritten(CutName(strName));
    std::replace_if(
        strWritten.begin(), strWritten.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; },
        ' ');
    return strWritten;
}

CString TuningLine(const Tuning& tuning) {
    CString strLine = NameForFile(tuning.m_strName) + '\t' + std::to_string(tuning.m_dwTag);
    for (const StringNote& note : tuning.m_strings) {
        strLine += '\t' + ToText(note.semitone) + '\t' + ToText(note.octave);
    }
    return strLine + '\n';
}

}  // namespace

bool CTuningStore::Load(const CString& strPath) {
    CFileReplacement::RemoveAbandoned(strPath);
    m_strRefusedPath.clear();
    CString strText;
    const TextFileResult result = ReadTextFile(strPath, strText);
    if (result == TextFileResult::Missing) {
        m_customTunings.RemoveAll();
        return false;
    }
    // What can't be read is worth keeping as well: it counts as an empty text, which is refused.
    if (!LoadText(strText)) {
        m_strRefusedPath = strPath;
        return false;
    }
    return true;
}

bool CTuningStore::LoadText(std::string_view strText) {
    m_customTunings.RemoveAll();
    CTuningReader reader(strText);
    reader.SkipLine();

    int nNumber = 0;
    if (!reader.ReadIntWithin(LOWEST_A_HUNDREDTHS, HIGHEST_A_HUNDREDTHS, nNumber)) {
        return false;
    }
    m_fAFrequency = static_cast<float>(nNumber * static_cast<double>(HUNDREDTH));
    if (!reader.ReadIntWithin(0, LARGEST_COLOR, nNumber)) {
        return false;
    }
    SetNeedleColor(static_cast<COLORREF>(nNumber));
    for (COLORREF* pColor : {&m_clrHigh, &m_clrLow, &m_clrText}) {
        if (!reader.ReadIntWithin(0, LARGEST_COLOR, nNumber)) {
            return false;
        }
        *pColor = static_cast<COLORREF>(nNumber);
    }
    for (int* pChoice : {&m_nMidiDevice, &m_nWaveDevice, &m_nListIndex}) {
        if (!reader.ReadIntWithin(0, LARGEST_INT, *pChoice)) {
            return false;
        }
    }
    if (!reader.ReadIntWithin(0, LARGEST_INT, nNumber)) {
        return false;
    }
    m_fHop = static_cast<float>(nNumber);
    int nTunings = 0;
    if (!reader.ReadIntWithin(0, LARGEST_INT, nTunings)) {
        return false;
    }

    for (int i = 0; i < nTunings; ++i) {
        reader.SkipCharacter();
        Tuning tuning;
        tuning.m_strName = reader.ReadName();
        if (!reader.ReadTagAndNotes(tuning) || !tuning.IsInRange()) {
            m_customTunings.RemoveAll();
            return false;
        }
        m_customTunings.AddTail(tuning);
    }
    return true;
}

bool CTuningStore::Save(const CString& strPath) {
    CFileReplacement replacement;
    if (!replacement.Prepare(strPath, SaveText())) {
        return false;
    }
    if (strPath == m_strRefusedPath && !replacement.KeepOld(REJECTED_MARK)) {
        return false;
    }
    if (!replacement.Commit()) {
        return false;
    }
    m_strRefusedPath.clear();
    return true;
}

CString CTuningStore::SaveText() {
    // A tuning that Load would refuse would cost all others with it.
    CString strLines;
    int nTunings = 0;
    Tuning tuning;
    for (bool bMore = m_customTunings.GetAt(tuning, 0); bMore; bMore = m_customTunings.GetNext(tuning)) {
        if (tuning.IsInRange()) {
            strLines += TuningLine(tuning);
            ++nTunings;
        }
    }

    CString strText = CString(FIRST_LINE) + '\n';
    const double dHundredths = static_cast<double>(m_fAFrequency) * 100.0;
    strText += std::to_string(Truncate(dHundredths, LOWEST_A_HUNDREDTHS, HIGHEST_A_HUNDREDTHS));
    for (const COLORREF clr : {GetNeedleColor(), m_clrHigh, m_clrLow, m_clrText}) {
        strText += '\t' + std::to_string(clr & COLOR_BITS);
    }
    for (const int nChoice : {m_nMidiDevice, m_nWaveDevice, m_nListIndex}) {
        strText += '\t' + ToText(nChoice);
    }
    strText += '\t' + std::to_string(Truncate(m_fHop, 0, LARGEST_INT)) + '\t' + ToText(nTunings) + '\n';
    return strText + strLines;
}

void CTuningStore::SetDefaults() {
    SetAFrequency(DEFAULT_A_FREQUENCY);
    SetListIndex(0);
    SetHighColor(DEFAULT_HIGH_COLOR);
    SetLowColor(DEFAULT_LOW_COLOR);
    SetNeedleColor(DEFAULT_NEEDLE_COLOR);
    SetTextColor(DEFAULT_TEXT_COLOR);
    SetMidiDevice(0);
    SetWaveDevice(0);
    SetHop(DEFAULT_HOP);
}
