#pragma once

#include "platform/base/Types.h"

// Starts a program and leaves it to itself: it outlives the caller, inherits nothing of its files, and nobody
// waits for it. The command line goes through no shell. What stands before the first blank is the program,
// looked for in PATH; all that stands behind it is one argument, blanks included. In an argument that is an
// address ("https:\\host\page") backslashes become slashes. False if there is no such program that may be
// run, or no process.
bool WinExec(const CString& strCommandLine);
