#pragma once

#include <QtGui/QGuiApplication>
#include <array>

// Lets a test without windows draw text: while it lives there is an application object of the toolkit,
// without a display. One at a time, on the main thread.
class CGraphicsSession {
private:
    // The toolkit keeps references to these, and writes to them.
    std::array<char, 9> m_szProgram{"fretvane"};
    std::array<char, 10> m_szOption{"-platform"};
    std::array<char, 10> m_szPlatform{"offscreen"};
    int m_nArguments = 3;
    std::array<char*, 4> m_arguments{m_szProgram.data(), m_szOption.data(), m_szPlatform.data(), nullptr};
    QGuiApplication m_application{m_nArguments, m_arguments.data()};
};
