// With a real display: what the layer draws reaches the screen, and the modal dialogs and
// menus that the layer shows through the toolkit take a user's answer. These tests skip
// headless; ctest runs them once more on a virtual X server when one is installed.
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <functional>
#include <string>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxmenu.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/surface_p.h"
#include "support/orlex_test.h"

namespace {

// Runs the toolkit's events until `done` holds or two seconds have passed.
bool WaitFor(const std::function<bool()>& done) {
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < 2000) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        orlex::test::Pump();
    }
    return done();
}

// A top-level window whose client area shows four coloured quarters and a diagonal line.
class Painted : public CWnd {
public:
    COLORREF quarters[4] = {RGB(200, 0, 0), RGB(0, 160, 0), RGB(0, 0, 220), RGB(240, 200, 0)};

protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        const int mx = r.Width() / 2, my = r.Height() / 2;
        dc.FillSolidRect(0, 0, mx, my, quarters[0]);
        dc.FillSolidRect(mx, 0, r.Width() - mx, my, quarters[1]);
        dc.FillSolidRect(0, my, mx, r.Height() - my, quarters[2]);
        dc.FillSolidRect(mx, my, r.Width() - mx, r.Height() - my, quarters[3]);
        dc.MoveTo(0, 0);
        dc.LineTo(r.Width(), r.Height());
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Painted, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

class Display : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        if (orlex::IsHeadless()) GTEST_SKIP() << "no display";
    }
    void TearDown() override {
        if (win.m_hWnd) win.DestroyWindow();
        orlex::test::Pump();
    }
    // Makes the window and waits until the display shows it.
    QWidget* Show(const CRect& r) {
        LPCSTR cls = AfxRegisterWndClass(0, nullptr, reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1)));
        if (!win.CreateEx(0, cls, "display test", WS_OVERLAPPEDWINDOW | WS_VISIBLE, r, nullptr, 0)) return nullptr;
        win.UpdateWindow();
        QWidget* w = orlex::test::PresenterOf(win.m_hWnd);
        if (!w || !WaitFor([w] { return w->windowHandle() && w->windowHandle()->isExposed(); })) return nullptr;
        return w;
    }
    // What the layer holds for the whole window, and what the screen shows of it.
    static QImage Surface(HWND top) {
        orlex::detail::DrawTarget t;
        return orlex::detail::WindowDrawTarget(top, false, t) && t.image ? t.image->copy() : QImage();
    }
    static QImage OnScreen(QWidget* w) {
        return w->screen()->grabWindow(w->winId()).toImage().convertToFormat(QImage::Format_RGB32);
    }
    // Waits until the screen shows exactly the layer's pixels; the count of those that differ.
    static long Differences(QWidget* w, HWND top) {
        long diff = -1;
        WaitFor([&] {
            const QImage want = Surface(top), got = OnScreen(w);
            if (want.size() != got.size()) return false;
            diff = 0;
            for (int y = 0; y < want.height(); ++y) {
                const auto* a = reinterpret_cast<const QRgb*>(want.constScanLine(y));
                const auto* b = reinterpret_cast<const QRgb*>(got.constScanLine(y));
                for (int x = 0; x < want.width(); ++x) diff += (a[x] & 0xFFFFFF) != (b[x] & 0xFFFFFF);
            }
            return diff == 0;
        });
        return diff;
    }
    // Once the modal of type T is up, hands it to `act`.
    template <class T>
    static void WhenShown(std::function<void(T*)> act) {
        auto* timer = new QTimer;
        QObject::connect(timer, &QTimer::timeout, [timer, act] {
            T* m = qobject_cast<T*>(QApplication::activeModalWidget());
            if (!m) m = qobject_cast<T*>(QApplication::activePopupWidget());
            if (!m) return;
            timer->stop();
            timer->deleteLater();
            act(m);
        });
        timer->start(20);
    }

    Painted win;
};

TEST_F(Display, TheScreenShowsTheLayersPixelsAndFollowsARepaint) {
    QWidget* w = Show(CRect(40, 40, 260, 200));
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(Differences(w, win.m_hWnd), 0);
    // The client area really holds the picture (not only a frame that happens to agree).
    CRect c;
    win.GetClientRect(&c);
    EXPECT_EQ(orlex::test::Pixel(win.m_hWnd, POINT{c.right - 5, 2}), win.quarters[1]);
    win.quarters[1] = RGB(10, 20, 30);
    win.InvalidateRect(nullptr, FALSE);
    win.UpdateWindow();
    EXPECT_EQ(orlex::test::Pixel(win.m_hWnd, POINT{c.right - 5, 2}), RGB(10, 20, 30));
    EXPECT_EQ(Differences(w, win.m_hWnd), 0);
}

TEST_F(Display, MovingAndSizingTheWindowMovesTheToolkitWindow) {
    QWidget* w = Show(CRect(40, 40, 260, 200));
    ASSERT_NE(w, nullptr);
    win.MoveWindow(100, 120, 300, 180);
    orlex::test::Pump();
    EXPECT_TRUE(WaitFor([w] { return w->size() == QSize(300, 180); })) << w->width() << " x " << w->height();
    EXPECT_EQ(Differences(w, win.m_hWnd), 0);
    win.ShowWindow(SW_HIDE);
    orlex::test::Pump();
    EXPECT_TRUE(WaitFor([w] { return !w->isVisible(); }));
}

TEST_F(Display, MessageBoxShowsItsTextAndReturnsTheButtonClicked) {
    std::string shown;
    WhenShown<QMessageBox>([&](QMessageBox* box) {
        shown = box->text().toStdString();
        for (QAbstractButton* b : box->buttons())
            if (b->text() == QStringLiteral("&No")) b->click();
    });
    EXPECT_EQ(AfxMessageBox("Save the scan?", MB_YESNO | MB_ICONQUESTION), IDNO);
    EXPECT_EQ(shown, "Save the scan?");
}

TEST_F(Display, PopupMenuReturnsTheCommandChosen) {
    QWidget* w = Show(CRect(40, 40, 260, 200));
    ASSERT_NE(w, nullptr);
    HMENU menu = ::CreatePopupMenu();
    ::AppendMenuA(menu, MF_STRING, 35001, "Zoom in");
    ::AppendMenuA(menu, MF_STRING, 35002, "Zoom out");
    WhenShown<QMenu>([](QMenu* m) {
        // As a user picks it: the item highlighted, then Return.
        for (QAction* a : m->actions())
            if (a->text() == QStringLiteral("Zoom out")) m->setActiveAction(a);
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(m, &enter);
    });
    EXPECT_EQ(::TrackPopupMenu(menu, TPM_RETURNCMD, 60, 60, 0, win.m_hWnd, nullptr), 35002);
    ::DestroyMenu(menu);
}

TEST_F(Display, FileAndColourDialogsGiveWhatTheUserChose) {
    const std::string path = (QDir::tempPath() + QStringLiteral("/orlex-display-scan.txt")).toStdString();
    WhenShown<QFileDialog>([&](QFileDialog* d) {
        d->selectFile(QString::fromStdString(path));
        static_cast<QDialog*>(d)->accept();  // the file dialog's own accept, public on QDialog
    });
    CFileDialog save(FALSE, "txt", nullptr, OFN_HIDEREADONLY, "Text Files (*.txt)|*.txt||");
    ASSERT_EQ(save.DoModal(), IDOK);
    EXPECT_EQ(std::string(save.GetPathName()), path);
    EXPECT_EQ(std::string(save.GetFileExt()), "txt");

    WhenShown<QColorDialog>([](QColorDialog* d) {
        d->setCurrentColor(QColor(12, 34, 56));
        d->accept();
    });
    CColorDialog colour(RGB(255, 0, 0), CC_FULLOPEN);
    ASSERT_EQ(colour.DoModal(), IDOK);
    EXPECT_EQ(colour.GetColor(), RGB(12, 34, 56));

    WhenShown<QColorDialog>([](QColorDialog* d) { d->reject(); });
    CColorDialog cancelled(RGB(255, 0, 0));
    EXPECT_EQ(cancelled.DoModal(), IDCANCEL);
}

}  // namespace
