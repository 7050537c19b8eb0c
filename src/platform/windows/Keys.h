#pragma once

#include "platform/base/Types.h"

class QKeyEvent;

// The virtual-key code of a key of the toolkit; 0 for keys that nobody asks for.
UINT VirtualKeyOf(const QKeyEvent& event);

// The characters that a key types, as WM_CHAR carries them; none for one that moves or switches something, or
// that is held with Alt.
std::u32string CharactersOf(const QKeyEvent& event);

// To be told of every key that goes down or comes up, in order; more than once of one that goes down does no
// harm. True for a key for mnemonics and menus, as are those that go down while Alt is held. Such a key stays
// one until it comes up, even if Alt is let go of first: its WM_KEYUP is nobody's.
bool FollowAltKey(const QKeyEvent& event);
