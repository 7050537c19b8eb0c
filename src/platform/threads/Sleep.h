#pragma once

// Lets the calling thread rest for at least that long; 0 and less give up the rest of its time slice, once in
// a millisecond.
void Sleep(int nMilliseconds);
