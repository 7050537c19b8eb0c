#include "platform/windows/support/Toolkit.h"

#include "platform/windows/WindowsSession.h"
#include "platform/windows/WndState.h"

#include <gtest/gtest.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QApplication>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

namespace toolkit {
namespace {

constexpr int LONG = 10000;

class CSessionEnvironment final : public ::testing::Environment {
public:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        m_pSession = std::make_unique<CWindowsSession>();
    }
    void TearDown() override {
        RunPending();
        m_pSession.reset();
    }

private:
    std::unique_ptr<CWindowsSession> m_pSession;
};

const auto* const g_pEnvironment = ::testing::AddGlobalTestEnvironment(new CSessionEnvironment);

QWidget& WidgetOf(const CWnd& wnd) {
    return *CWndState::Of(wnd).pWidget;
}

// Lists take the mouse with their viewport.
QWidget& MouseWidgetOf(const CWnd& wnd) {
    QWidget& widget = WidgetOf(wnd);
    auto* const pArea = qobject_cast<QAbstractScrollArea*>(&widget);
    return pArea != nullptr ? *pArea->viewport() : widget;
}

QPoint ToPoint(POINT pt) {
    return {pt.x, pt.y};
}

void SendKey(const CWnd& wnd, QEvent::Type type, int nKey, const CString& strText, bool bKeypad) {
    QKeyEvent event(type, nKey, bKeypad ? Qt::KeypadModifier : Qt::NoModifier,
                    QString::fromStdString(strText));
    QApplication::sendEvent(&WidgetOf(wnd), &event);
}

// Also on a page of a sheet.
CWnd* ModalItem(int nId) {
    const QWidget* const pModal = QApplication::activeModalWidget();
    const auto widgets = pModal != nullptr ? pModal->findChildren<QWidget*>() : QList<QWidget*>();
    const auto found = std::find_if(widgets.begin(), widgets.end(), [nId](const QWidget* pWidget) {
        return pWidget->property("controlId") == QVariant(nId);
    });
    return found != widgets.end() ? CWndState::Find(*found) : nullptr;
}

// The widget that the window system would give the mouse to.
std::pair<QWidget*, QPoint> Under(const CWnd& topLevel, POINT pt) {
    QWidget& top = WidgetOf(topLevel);
    QWidget* pUnder = top.childAt(ToPoint(pt));
    if (pUnder == nullptr) {
        pUnder = &top;
    }
    return {pUnder, pUnder->mapFrom(&top, ToPoint(pt))};
}

}  // namespace

bool WaitUntil(const std::function<bool()>& fnHolds) {
    return QTest::qWaitFor([&fnHolds] { return fnHolds(); }, LONG);
}

void RunPending() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void RunFor(int nMilliseconds) {
    QTest::qWait(nMilliseconds);
}

void Later(std::function<void()> fnAction) {
    QTimer::singleShot(20, std::move(fnAction));
}

void Press(const CWnd& wnd, POINT pt, bool bRight) {
    QTest::mousePress(&MouseWidgetOf(wnd), bRight ? Qt::RightButton : Qt::LeftButton, {}, ToPoint(pt));
}

void Release(const CWnd& wnd, POINT pt, bool bRight) {
    QTest::mouseRelease(&MouseWidgetOf(wnd), bRight ? Qt::RightButton : Qt::LeftButton, {}, ToPoint(pt));
}

void Click(const CWnd& wnd, POINT pt, bool bControl) {
    QTest::mouseClick(&MouseWidgetOf(wnd), Qt::LeftButton, bControl ? Qt::ControlModifier : Qt::NoModifier,
                      ToPoint(pt));
}

void DoubleClick(const CWnd& wnd, POINT pt) {
    QTest::mouseDClick(&MouseWidgetOf(wnd), Qt::LeftButton, {}, ToPoint(pt));
}

void Move(const CWnd& wnd, POINT pt) {
    QTest::mouseMove(&MouseWidgetOf(wnd), ToPoint(pt));
    RunPending();
}

void Wheel(const CWnd& wnd, int nNotches) {
    QWidget& widget = MouseWidgetOf(wnd);
    const QPointF pt = widget.rect().center();
    QWheelEvent event(pt, widget.mapToGlobal(pt), {}, {0, nNotches * QWheelEvent::DefaultDeltasPerStep},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void MoveOver(const CWnd& topLevel, POINT pt) {
    const auto [pWidget, ptIn] = Under(topLevel, pt);
    QMouseEvent event(QEvent::MouseMove, ptIn, pWidget->mapToGlobal(ptIn), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(pWidget, &event);
}

void ClickInto(const CWnd& topLevel, POINT pt) {
    const auto [pWidget, ptIn] = Under(topLevel, pt);
    QTest::mouseClick(pWidget, Qt::LeftButton, {}, ptIn);
}

void KeyDown(const CWnd& wnd, int nToolkitKey, const CString& strText, bool bKeypad) {
    SendKey(wnd, QEvent::KeyPress, nToolkitKey, strText, bKeypad);
}

void KeyUp(const CWnd& wnd, int nToolkitKey, const CString& strText, bool bKeypad) {
    SendKey(wnd, QEvent::KeyRelease, nToolkitKey, strText, bKeypad);
}

void AltKeyDown(const CWnd& wnd, int nToolkitKey) {
    QTest::keyPress(&WidgetOf(wnd), static_cast<Qt::Key>(nToolkitKey), Qt::AltModifier);
}

void Key(const CWnd& wnd, int nToolkitKey, const CString& strText) {
    KeyDown(wnd, nToolkitKey, strText);
    if (wnd.IsWindow()) {
        KeyUp(wnd, nToolkitKey, strText);
    }
}

void KeyIntoFocus(int nToolkitKey) {
    // A window that was shown just now becomes the active one a little later.
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(nToolkitKey));
}

void TypeText(const CWnd& wnd, const CString& strText) {
    QTest::keyClicks(&WidgetOf(wnd), QString::fromStdString(strText));
}

void Compose(const CWnd& wnd, const CString& strPreedit, const CString& strCommit) {
    QInputMethodEvent preedit(QString::fromStdString(strPreedit), {});
    QApplication::sendEvent(&WidgetOf(wnd), &preedit);
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromStdString(strCommit));
    QApplication::sendEvent(&WidgetOf(wnd), &commit);
}

void CloseBox(const CWnd& wnd) {
    WidgetOf(wnd).close();
}

Screenshot GrabScreen(const CWnd& wnd) {
    const QWidget& widget = WidgetOf(wnd);
    const QImage image =
        widget.screen()->grabWindow(widget.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    Screenshot shot{image.width(), image.height(), {}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            shot.pixels.push_back(image.pixel(x, y));
        }
    }
    return shot;
}

bool SavePicture(const CWnd& wnd, const CString& strName) {
    const std::filesystem::path directory = std::filesystem::path(FRETVANE_BINARY_DIR) / "pictures";
    std::filesystem::create_directories(directory);
    return WidgetOf(wnd).grab().save(QString::fromStdString((directory / strName).string()));
}

CString ModalTitle() {
    const QWidget* const pModal = QApplication::activeModalWidget();
    return pModal != nullptr ? pModal->windowTitle().toStdString() : CString();
}

CString ModalText() {
    const auto* const pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return pBox != nullptr ? pBox->text().toStdString() : CString();
}

RECT ModalFrame() {
    const QWidget* const pModal = QApplication::activeModalWidget();
    const QRect frame = pModal != nullptr ? pModal->frameGeometry() : QRect();
    return {frame.x(), frame.y(), frame.x() + frame.width(), frame.y() + frame.height()};
}

void CloseModal() {
    if (QWidget* const pModal = QApplication::activeModalWidget()) {
        pModal->close();
    }
}

std::vector<CString> PopupItems() {
    std::vector<CString> items;
    if (const auto* const pMenu = qobject_cast<const QMenu*>(QApplication::activePopupWidget())) {
        for (const QAction* const pAction : pMenu->actions()) {
            items.push_back(pAction->text().toStdString() + (pAction->isChecked() ? " *" : "") +
                            (pAction->menu() != nullptr ? " >" : ""));
        }
    }
    return items;
}

void PopupKey(int nToolkitKey) {
    QTest::keyClick(QApplication::activePopupWidget(), static_cast<Qt::Key>(nToolkitKey));
}

POINT PopupOrigin() {
    const QPoint pt = QApplication::activePopupWidget()->pos();
    return {pt.x(), pt.y()};
}

void ClickPopupItem(int nItem, bool bRight) {
    auto* const pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    const QPoint pt = pMenu->actionGeometry(pMenu->actions().at(nItem)).center();
    QTest::mouseMove(pMenu, pt);
    QTest::mouseClick(pMenu, bRight ? Qt::RightButton : Qt::LeftButton, {}, pt);
}

void TypeIntoModal(int nId, const CString& strText) {
    TypeText(*ModalItem(nId), strText);
}

void ClickInModal(int nId) {
    constexpr POINT ptInside{5, 5};
    Click(*ModalItem(nId), ptInside);
}

void ClickTab(const CWnd& sheet, int nTab) {
    auto* const pBar = WidgetOf(sheet).findChild<QTabBar*>();
    QTest::mouseClick(pBar, Qt::LeftButton, {}, pBar->tabRect(nTab).center());
}

void PickRow(const CWnd& combo, int nRow) {
    auto& widget = dynamic_cast<QComboBox&>(WidgetOf(combo));
    widget.showPopup();
    QAbstractItemView& list = *widget.view();
    const QModelIndex row = widget.model()->index(nRow, 0);
    list.scrollTo(row);
    QTest::mouseMove(list.viewport(), list.visualRect(row).center());
    // Right behind the click that opens it the list takes none.
    QTest::qWait(QApplication::doubleClickInterval() + 1);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(row).center());
}

std::vector<CString> ComboRows(const CWnd& combo) {
    const auto& widget = dynamic_cast<const QComboBox&>(WidgetOf(combo));
    std::vector<CString> rows(static_cast<std::size_t>(widget.count()));
    for (int i = 0; CString & strRow : rows) {
        strRow = widget.itemText(i++).toStdString();
    }
    return rows;
}

int MissingWidthOfOpenList(const CWnd& combo) {
    auto& widget = dynamic_cast<QComboBox&>(WidgetOf(combo));
    widget.showPopup();
    const int nMissing = widget.view()->sizeHintForColumn(0) - widget.view()->viewport()->width();
    widget.hidePopup();
    return nMissing;
}

COLORREF AnswerColorDialog(std::optional<COLORREF> clr) {
    auto& dialog = dynamic_cast<QColorDialog&>(*QApplication::activeModalWidget());
    const QColor first = dialog.currentColor();
    if (clr) {
        dialog.setCurrentColor(QColor(GetRed(*clr), GetGreen(*clr), GetBlue(*clr)));
    }
    auto& box = *dialog.findChild<QDialogButtonBox*>();
    box.button(clr ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)->click();
    return MakeColor(first.red(), first.green(), first.blue());
}

CString TextOf(const CWnd& control) {
    const auto* const pLabel = qobject_cast<const QLabel*>(&WidgetOf(control));
    return pLabel != nullptr ? pLabel->text().toStdString() : CString();
}

int RowHeight(const CWnd& list) {
    const auto* const pList = qobject_cast<const QListWidget*>(&WidgetOf(list));
    return pList != nullptr && pList->count() > 0 ? pList->visualItemRect(pList->item(0)).height() : 0;
}

void SetFaceColor(COLORREF clr) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Button, QColor(GetRed(clr), GetGreen(clr), GetBlue(clr)));
    QApplication::setPalette(palette);
}

bool IsTextCut(const CWnd& control) {
    const QWidget& widget = WidgetOf(control);
    if (const auto* const pLabel = qobject_cast<const QLabel*>(&widget)) {
        return pLabel->heightForWidth(pLabel->width()) > pLabel->height();
    }
    const QSize wanted = widget.minimumSizeHint();
    if (const auto* const pButton = qobject_cast<const QPushButton*>(&widget)) {
        return pButton->fontMetrics().horizontalAdvance(pButton->text()) > widget.width() - 8 ||
               pButton->fontMetrics().height() > widget.height() - 4;
    }
    return wanted.height() > widget.height();
}

int CountTopLevelWidgets() {
    return static_cast<int>(QApplication::topLevelWidgets().size());
}

}  // namespace toolkit
