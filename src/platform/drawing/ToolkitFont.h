#pragma once

#include "platform/drawing/Font.h"

class QFont;

// The font as the toolkit knows it, in pixels. Only with its application object alive.
QFont ToToolkitFont(const CFont& font);
