#pragma once

// How often the calling thread has taken something from the heap. Only in programs that link the counter.
int CountAllocations();
