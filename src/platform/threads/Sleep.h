#pragma once

// Lets the calling thread rest for at least that long; 0 and less return at once.
void Sleep(int nMilliseconds);
