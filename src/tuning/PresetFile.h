#pragma once

#include "platform/base/Types.h"
#include "tuning/TuningList.h"

#include <string_view>

// Reads a file of preset tunings and appends them to `presets`: records of name, TAB, tag and six pairs of
// semitone and octave index, without header or count. A record with a note out of range or with something
// that is no number is dropped and counted in `nDropped`; the rest stay.
//
// True if the file ends directly behind the last number and `presets` holds a tuning. False if the file can't
// be read, and also, with what was read before in `presets`, if a record has an empty name, as it looks when
// a line end stands behind the last record.
bool LoadPresetFile(const CString& strPath, CTuningList& presets, int& nDropped);

// The same on the text alone, its line ends being LF.
bool LoadPresetText(std::string_view strText, CTuningList& presets, int& nDropped);
