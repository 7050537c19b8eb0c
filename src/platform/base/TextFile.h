#pragma once

#include "platform/base/Types.h"

enum class TextFileResult {
    Read,
    Missing,     // there is no such file
    Unreadable,  // it is there, but can't be read, is no plain file, or is larger than any text of ours
};

// Reads a whole text file: CR LF becomes LF, a byte order mark in front is dropped. Never waits for a pipe or
// a device. `strText` is empty unless the file was read.
TextFileResult ReadTextFile(const CString& strPath, CString& strText);
