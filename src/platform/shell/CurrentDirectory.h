#pragma once

#include "platform/base/Types.h"

inline constexpr std::size_t CURRENT_DIRECTORY_ROOM = 255;

// The directory that the process stands in; empty if its name has more than CURRENT_DIRECTORY_ROOM
// characters.
CString GetCurrentDirectory();
