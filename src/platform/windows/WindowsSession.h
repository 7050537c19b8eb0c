#pragma once

#include <memory>

// The connection to the display, with the look of our windows: as long as it lives, windows can be made. A
// display that can't be opened ends the process with a message on stderr and exit code 1. If the toolkit has
// an application object already (that of a test), the session takes that and only gives it the look. Main
// thread only.
class CWindowsSession {
public:
    CWindowsSession();
    ~CWindowsSession();
    CWindowsSession(const CWindowsSession&) = delete;
    CWindowsSession& operator=(const CWindowsSession&) = delete;
    CWindowsSession(CWindowsSession&&) = delete;
    CWindowsSession& operator=(CWindowsSession&&) = delete;

private:
    struct Application;
    std::unique_ptr<Application> m_pApplication;
};
