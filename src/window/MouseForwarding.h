#pragma once

#include "platform/base/Types.h"

class CWnd;

// A control keeps the mouse moves over it from its parent: sends the parent a WM_MOUSEMOVE for a point on the
// screen that the control was asked about.
void ForwardMouseMove(const CWnd& control, POINT ptScreen);
