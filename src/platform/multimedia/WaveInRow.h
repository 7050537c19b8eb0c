#pragma once

#include "platform/base/Types.h"

// Recording devices by the rows from which a user chooses them: 0 is the preferred device, n the device n - 1
// of the latest list. Lists change while devices come and go; a device is known again by its key
// (WAVEINCAPS::strKey).

// Empty for the preferred device, which may be another one tomorrow, and for a row without a device.
CString KeyOfWaveRow(int nRow);

// The row of the device with that key, -1 while it is away. A device without a key is known by its row alone.
int FindWaveRow(const CString& strKey, int nRow);
