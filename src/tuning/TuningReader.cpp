#include "tuning/TuningReader.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace {

constexpr std::string_view WHITE_SPACE = " \t\n\v\f\r";

// A character of UTF-8 has one byte and up to this many that continue it.
constexpr std::size_t MAX_CONTINUATIONS = 3;

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace

std::string_view CutName(std::string_view strName) {
    if (strName.size() <= MAX_NAME_BYTES) {
        return strName;
    }
    std::size_t nEnd = MAX_NAME_BYTES;
    while (IsContinuation(strName[nEnd]) && nEnd > MAX_NAME_BYTES - MAX_CONTINUATIONS) {
        --nEnd;
    }
    return strName.substr(0, IsContinuation(strName[nEnd]) ? MAX_NAME_BYTES : nEnd);
}

bool CTuningReader::ReadNumber(long long& nOut) {
    m_nPosition = std::min(m_strText.find_first_not_of(WHITE_SPACE, m_nPosition), m_strText.size());
    const char* pEnd = m_strText.data() + m_strText.size();
    const char* pStart = m_strText.data() + m_nPosition;
    const char* pNumber = pStart;
    if (pEnd - pStart > 1 && *pStart == '+' && pStart[1] != '-') {
        ++pNumber;
    }
    long long nNumber = 0;
    const auto [pBehind, error] = std::from_chars(pNumber, pEnd, nNumber);
    m_bMetEnd = m_bMetEnd || pStart == pEnd;
    if (error == std::errc::invalid_argument) {
        return false;
    }
    if (error == std::errc::result_out_of_range) {
        nNumber =
            *pStart == '-' ? std::numeric_limits<long long>::min() : std::numeric_limits<long long>::max();
    }
    m_nPosition = static_cast<std::size_t>(pBehind - m_strText.data());
    nOut = nNumber;
    return true;
}

bool CTuningReader::ReadInt(int& nOut) {
    long long nNumber = 0;
    if (!ReadNumber(nNumber)) {
        return false;
    }
    nOut = static_cast<int>(
        std::clamp<long long>(nNumber, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    return true;
}

bool CTuningReader::ReadUnsigned(DWORD& dwOut) {
    long long nNumber = 0;
    if (!ReadNumber(nNumber)) {
        return false;
    }
    // Below 0 the number counts back from the top, as everywhere where unsigned numbers are read.
    constexpr long long LIMIT = std::numeric_limits<DWORD>::max();
    dwOut = static_cast<DWORD>(std::clamp(nNumber, -LIMIT, LIMIT));
    return true;
}

bool CTuningReader::ReadIntWithin(int nLow, int nHigh, int& nOut) {
    int nNumber = 0;
    if (!ReadInt(nNumber) || nNumber < nLow || nNumber > nHigh) {
        return false;
    }
    nOut = nNumber;
    return true;
}

CString CTuningReader::ReadName() {
    const std::size_t nTab = std::min(m_strText.find('\t', m_nPosition), m_strText.size());
    CString strName(CutName(m_strText.substr(m_nPosition, nTab - m_nPosition)));
    m_nPosition = std::min(nTab + 1, m_strText.size());
    return strName;
}

bool CTuningReader::ReadTagAndNotes(Tuning& tuning) {
    return ReadUnsigned(tuning.m_dwTag) &&
           std::all_of(tuning.m_strings.begin(), tuning.m_strings.end(),
                       [this](StringNote& note) { return ReadInt(note.semitone) && ReadInt(note.octave); });
}

void CTuningReader::SkipCharacter() {
    if (m_nPosition < m_strText.size()) {
        ++m_nPosition;
    } else {
        m_bMetEnd = true;
    }
}

void CTuningReader::SkipLine() {
    const std::size_t nLineEnd = m_strText.find('\n', m_nPosition);
    m_bMetEnd = m_bMetEnd || nLineEnd == std::string_view::npos;
    m_nPosition = nLineEnd == std::string_view::npos ? m_strText.size() : nLineEnd + 1;
}

void CTuningReader::SkipBrokenRecord(std::size_t nNumbersStart) {
    const std::size_t nLineEnd = m_strText.substr(nNumbersStart, m_nPosition - nNumbersStart).rfind('\n');
    if (nLineEnd == std::string_view::npos) {
        SkipLine();
    } else {
        m_nPosition = nNumbersStart + nLineEnd + 1;
    }
}
