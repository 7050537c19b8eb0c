#pragma once

#include "platform/base/Types.h"

#include <optional>

// The default value of a key below HKEY_CLASSES_ROOT, by its path; nothing if there is no such key. The one
// that there is, where the desktop can show pages: the command line of the system's HTML viewer,
// "htmlfile\shell\open\command". A file or an address goes behind it, after a blank.
std::optional<CString> RegQueryClassValue(const CString& strKey);
