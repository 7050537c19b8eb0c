#include "platform/windows/WindowsSession.h"

#include "platform/drawing/SysColors.h"
#include "platform/drawing/ToolkitFont.h"
#include "platform/windows/WndState.h"

#include <QtGui/QFont>
#include <QtGui/QPalette>
#include <QtGui/QPixmapCache>
#include <QtWidgets/QApplication>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int DIALOG_FONT_TENTHS = 80;
// The toolkit draws the arrow of a chosen menu item anew each time, under a name of its own, and keeps
// picture and name for good. It keeps what finds room; nothing else here needs any.
constexpr int PICTURE_CACHE_KB = 0;

// What the toolkit says while it can't open the display, so that our own message can give the reason.
QString& Reason() {
    static QString reason;
    return reason;
}

void OnStartMessage(QtMsgType nType, const QMessageLogContext& /*context*/, const QString& message) {
    if (nType == QtFatalMsg) {
        const QString& reason = Reason().isEmpty() ? message : Reason();
        static_cast<void>(
            std::fprintf(stderr, "The display cannot be opened: %s\n", reason.toUtf8().constData()));
        std::_Exit(EXIT_FAILURE);
    }
    if (Reason().isEmpty()) {
        Reason() = message;
    }
}

// While it lives, the toolkit's giving up is ours.
class CStartGuard {
public:
    CStartGuard() : m_pfnPrevious(qInstallMessageHandler(&OnStartMessage)) {}
    ~CStartGuard() { qInstallMessageHandler(m_pfnPrevious); }
    CStartGuard(const CStartGuard&) = delete;
    CStartGuard& operator=(const CStartGuard&) = delete;
    CStartGuard(CStartGuard&&) = delete;
    CStartGuard& operator=(CStartGuard&&) = delete;

private:
    QtMessageHandler m_pfnPrevious;
};

// The classic light colours, whatever the desktop's theme: the display's pictures are made for them.
QPalette ClassicPalette() {
    const QColor face(0xD4, 0xD0, 0xC8);
    const QColor shadow(0x80, 0x80, 0x80);
    QPalette palette(face, face);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Light, Qt::white);
    palette.setColor(QPalette::Midlight, QColor(0xE8, 0xE4, 0xDC));
    palette.setColor(QPalette::Dark, shadow);
    palette.setColor(QPalette::Mid, QColor(0xA8, 0xA4, 0x9C));
    palette.setColor(QPalette::Shadow, QColor(0x40, 0x40, 0x40));
    palette.setColor(QPalette::Highlight, QColor(0x0A, 0x24, 0x6A));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(QPalette::Disabled, role, shadow);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, face);
    return palette;
}

COLORREF ToColorRef(const QColor& color) {
    return MakeColor(color.red(), color.green(), color.blue());
}

}  // namespace

struct CWindowsSession::Application {
    // The toolkit keeps references to both, and writes to them.
    std::array<char, 9> szProgram{"fretvane"};
    int nArguments = 1;
    std::array<char*, 2> arguments{szProgram.data(), nullptr};
    QApplication application{nArguments, arguments.data()};
};

CWindowsSession::CWindowsSession() {
    if (QCoreApplication::instance() == nullptr) {
        QApplication::setDesktopSettingsAware(false);
        // A pixel of ours is a whole number of pixels of a dense screen.
        QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
        // By this name the desktop finds the menu entry of the window, and its icon.
        QGuiApplication::setDesktopFileName("fretvane");
        const CStartGuard guard;
        m_pApplication = std::make_unique<Application>();
    }
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle("Windows");
    QApplication::setPalette(ClassicPalette());
    QPixmapCache::setCacheLimit(PICTURE_CACHE_KB);
    CFont font;
    if (font.CreatePointFont(DIALOG_FONT_TENTHS, "MS Sans Serif")) {
        QApplication::setFont(ToToolkitFont(font));
    }
    ReadSystemColors(QApplication::palette());
}

CWindowsSession::~CWindowsSession() = default;

void ReadSystemColors(const QPalette& palette) {
    struct Pair {
        int nIndex;
        QPalette::ColorRole role;
    };
    constexpr std::array pairs{
        Pair{COLOR_WINDOW, QPalette::Base},         Pair{COLOR_WINDOWTEXT, QPalette::Text},
        Pair{COLOR_HIGHLIGHT, QPalette::Highlight}, Pair{COLOR_HIGHLIGHTTEXT, QPalette::HighlightedText},
        Pair{COLOR_BTNFACE, QPalette::Button},      Pair{COLOR_BTNSHADOW, QPalette::Dark},
        Pair{COLOR_BTNTEXT, QPalette::ButtonText},  Pair{COLOR_BTNHILIGHT, QPalette::Light},
        Pair{COLOR_3DDKSHADOW, QPalette::Shadow},   Pair{COLOR_3DLIGHT, QPalette::Midlight},
    };
    for (const Pair& pair : pairs) {
        SetSysColor(pair.nIndex, ToColorRef(palette.color(QPalette::Active, pair.role)));
    }
    SetSysColor(COLOR_GRAYTEXT, ToColorRef(palette.color(QPalette::Disabled, QPalette::WindowText)));
}
