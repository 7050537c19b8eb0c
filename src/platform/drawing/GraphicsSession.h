#pragma once

#include <memory>

// Lets a program without windows (a test, a benchmark, a generator of pictures) draw text: as long as it
// lives there is an application object of the toolkit, without a display where it had to make one itself. On
// the main thread only.
class CGraphicsSession {
public:
    CGraphicsSession();
    ~CGraphicsSession();
    CGraphicsSession(const CGraphicsSession&) = delete;
    CGraphicsSession& operator=(const CGraphicsSession&) = delete;

private:
    struct Application;
    std::unique_ptr<Application> m_pApplication;
};
