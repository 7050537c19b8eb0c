#pragma once

#include "platform/base/Types.h"

// Text from a printf pattern. An invalid pattern gives an empty text. Numbers come out in the "C" form,
// whatever the user's locale: what is written into a file must be readable in every country.
[[gnu::format(printf, 1, 2)]] CString FormatText(const char* szPattern, ...);
