#pragma once

#include "platform/base/Types.h"
#include "tuning/Tuning.h"

#include <cstddef>
#include <string_view>

// A name in the tuning files has at most this many bytes; longer ones are cut at the end of a character.
inline constexpr std::size_t MAX_NAME_BYTES = 254;

// The longest beginning of a UTF-8 name that fits.
std::string_view CutName(std::string_view strName);

// Takes a text apart into the fields of the tuning files: numbers with any white space before them, names
// that end at a TAB. The text must outlive the reader; its line ends are LF. Whatever the text, every
// operation comes to an end, and none reads outside it.
class CTuningReader {
public:
    explicit CTuningReader(std::string_view strText) : m_strText(strText) {}

    // A decimal number, stopping at the limits of 32 bits. False, with nothing but white space taken, if
    // there is no number.
    bool ReadInt(int& nOut);
    bool ReadUnsigned(DWORD& dwOut);
    // As ReadInt; false also for a number outside the limits, both of which are allowed.
    bool ReadIntWithin(int nLow, int nHigh, int& nOut);
    // What stands before the next TAB, cut to what a name may have; takes the TAB as well.
    CString ReadName();
    // A tuning's tag and notes, ranges unchecked. False at the first thing that is no number.
    bool ReadTagAndNotes(Tuning& tuning);

    void SkipCharacter();
    void SkipLine();
    // After a record whose numbers began at nNumbersStart, behind the name's TAB, broke off here: goes to the
    // line that broke it, which may be the next record, or behind this line if the numbers began in it.
    void SkipBrokenRecord(std::size_t nNumbersStart);

    std::size_t GetPosition() const { return m_nPosition; }
    // True once an operation needed a character behind the last and found none.
    bool HasMetEnd() const { return m_bMetEnd; }

private:
    bool ReadNumber(long long& nOut);

    std::string_view m_strText;
    std::size_t m_nPosition = 0;
    bool m_bMetEnd = false;
};
