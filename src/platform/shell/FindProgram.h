#pragma once

#include "platform/base/Types.h"

// The file that a program's name means: the first of this name in PATH that may be executed, or the name
// itself if it holds a slash. Empty if there is none.
CString FindProgram(const CString& strName);
