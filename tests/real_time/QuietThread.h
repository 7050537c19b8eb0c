#pragma once

#include <span>
#include <string>

// Watches what a thread must not do once sound runs: take memory or give it back, lock, read, write or open.
// A program that links this stands in front of the C library's own functions; it works in optimised builds
// only, for the sanitizers stand there themselves.
namespace quiet {

// Forgets what was noted; from now on whatever this thread does of that kind is noted, with the stack. Takes
// no memory itself. One thread at a time.
void BeginWatching();
void EndWatching();

// What was noted and not by one of the functions allowed, given as the beginnings of their names: a line for
// each kind and place, with the calls that led there. Empty if there is nothing. While no thread is watched.
std::string Describe(std::span<const char* const> allowed = {});

}  // namespace quiet
