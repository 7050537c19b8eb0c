#include "platform/drawing/GraphicsSession.h"

#include <QtGui/QGuiApplication>
#include <array>

struct CGraphicsSession::Application {
    // The toolkit keeps references to both, and writes to them.
    std::array<char, 9> szProgram{"fretvane"};
    std::array<char, 10> szOption{"-platform"};
    std::array<char, 10> szPlatform{"offscreen"};
    int nArguments = 3;
    std::array<char*, 4> arguments{szProgram.data(), szOption.data(), szPlatform.data(), nullptr};
    QGuiApplication application{nArguments, arguments.data()};
};

CGraphicsSession::CGraphicsSession()
    : m_pApplication(QCoreApplication::instance() == nullptr ? std::make_unique<Application>() : nullptr) {}

CGraphicsSession::~CGraphicsSession() = default;
