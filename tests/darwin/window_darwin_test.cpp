// The window's side of macOS: title bar, menus, the Dock, pictograms, font, less motion.

#include <gmock/gmock.h>
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QKeySequence>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QWindow>

#include <algorithm>
#include <memory>
#include <optional>

#include "app/app_delegate.h"
#include "darwin/model/appkit.h"
#include "platform/system/desktop.h"
#include "support/temporary_home.h"
#include "ui/pictogram.h"
#include "ui/window_font.h"

namespace vesk {
namespace {

using namespace darwin;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

// Qt shows windows on no screen, and the model says that it does so by Cocoa.
class Application : public ::testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static char name[] = "darwin_tests";
        static char* arguments[] = {name, nullptr};
        application_ = std::make_unique<QGuiApplication>(count, arguments);
    }
    void TearDown() override { application_.reset(); }

private:
    std::unique_ptr<QGuiApplication> application_;
};

const ::testing::Environment* const registered = ::testing::AddGlobalTestEnvironment(new Application);

class WindowTest : public ::testing::Test {
protected:
    WindowTest() { pretendCocoa(true); }
    ~WindowTest() override { QGuiApplication::setQuitOnLastWindowClosed(true); }

    void show() {
        window.show();
        delegate.extendIntoTitleBar(window, [this](double height) { inset = height; });
    }

    bool contentReachesTop() const {
        const id frame = frameOf(window);
        return (valueOr<unsigned long>(frame, "styleMask") & fullSizeContentView) != 0 &&
               valueOr<bool>(frame, "transparent") && valueOr<long>(frame, "titleVisibility") == 1;
    }

    static long countOf(const std::string& message) {
        return std::count(sentMessages().begin(), sentMessages().end(), message);
    }

    AppDelegate delegate;
    QWindow window;
    std::optional<double> inset;
};

TEST_F(WindowTest, ContentRunsBeneathATitleBarWithoutATitle) {
    show();
    EXPECT_TRUE(contentReachesTop());
    EXPECT_EQ(inset, 28);
}

// A window's id is a number then, and no object.
TEST_F(WindowTest, NothingIsSentToAWindowOfAnotherPlatform) {
    pretendCocoa(false);
    show();
    delegate.applicationDidFinishLaunching();
    delegate.bringForward(window);
    delegate.outliveWindow(window, [] {});
    EXPECT_THAT(sentMessages(), IsEmpty());
    EXPECT_EQ(inset, std::nullopt);
    EXPECT_TRUE(QGuiApplication::quitOnLastWindowClosed());
}

TEST_F(WindowTest, FullScreenHasNoInsetAndTheTitleBarIsAsBeforeAfterwards) {
    show();
    enterFullScreen(window);
    EXPECT_EQ(inset, 0);
    leaveFullScreen(window);
    EXPECT_EQ(inset, 28);
    EXPECT_TRUE(contentReachesTop());
}

TEST_F(WindowTest, AWindowThatIsShownAgainHasItsTitleBarToo) {
    show();
    window.close();
    forgetAppKit();  // Qt makes another NSWindow
    pretendCocoa(true);
    window.show();
    EXPECT_TRUE(contentReachesTop());
}

TEST_F(WindowTest, ComingForwardAddsNothingToTheMenu) {
    show();
    delegate.applicationDidFinishLaunching();
    delegate.bringForward(window);
    delegate.bringForward(window);
    EXPECT_EQ(countOf("NSMenu insertItem:atIndex:"), 0);
    EXPECT_EQ(countOf("NSApplication activateIgnoringOtherApps:"), 3);
}

TEST_F(WindowTest, TheApplicationOutlivesItsWindowAndTheDockBringsItBack) {
    show();
    int reopened = 0;
    delegate.outliveWindow(window, [&] {
        ++reopened;
        window.show();
    });
    EXPECT_FALSE(QGuiApplication::quitOnLastWindowClosed());
    QEvent activate(QEvent::ApplicationActivate);
    QCoreApplication::sendEvent(qGuiApp, &activate);
    EXPECT_EQ(reopened, 0) << "it is there";
    window.close();
    EXPECT_FALSE(window.isVisible());
    QCoreApplication::sendEvent(qGuiApp, &activate);
    EXPECT_EQ(reopened, 1);
    EXPECT_TRUE(window.isVisible());
}

class MenusTest : public WindowTest {
protected:
    MenusTest() {
        engine.addImportPath(QStringLiteral("qrc:/model"));
        window.show();
        delegate.offerMenus(engine, window, QUrl(QStringLiteral("qrc:/model/SystemMenus.qml")));
        for (QObject* child : window.children()) {
            bar = child->inherits("QQmlComponent") || !child->property("menus").isValid() ? bar : child;
        }
    }

    // The item of a menu with this text; null when there is none.
    QObject* item(const QString& menu, const QString& text) const {
        if (bar == nullptr) {
            return nullptr;
        }
        const QQmlListReference menus(bar, "menus");
        for (qsizetype i = 0; i < menus.count(); ++i) {
            if (menus.at(i)->property("title") != menu) {
                continue;
            }
            const QQmlListReference items(menus.at(i), "items");
            for (qsizetype j = 0; j < items.count(); ++j) {
                if (items.at(j)->property("text") == text) {
                    return items.at(j);
                }
            }
        }
        return nullptr;
    }

    static QKeySequence shortcutOf(const QObject* item) {
        const QVariant shortcut = item->property("shortcut");
        return shortcut.typeId() == QMetaType::QString
                   ? QKeySequence(shortcut.toString())
                   : QKeySequence(static_cast<QKeySequence::StandardKey>(shortcut.toInt()));
    }

    static void choose(QObject* item) { QMetaObject::invokeMethod(item, "triggered"); }

    QQmlEngine engine;
    QObject* bar = nullptr;
};

TEST_F(MenusTest, FileClosesTheWindow) {
    QObject* close = item("File", "Close");
    ASSERT_NE(close, nullptr);
    EXPECT_EQ(shortcutOf(close), QKeySequence(QKeySequence::Close));
    choose(close);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MenusTest, EditHasWhatPeopleLookForThere) {
    for (const char* text : {"Undo", "Redo", "Cut", "Copy", "Paste", "Select All"}) {
        const QObject* found = item("Edit", text);
        ASSERT_NE(found, nullptr) << text;
        EXPECT_FALSE(found->property("enabled").toBool()) << text << ": nothing can be written";
    }
}

TEST_F(MenusTest, WindowMinimizesAndZooms) {
    QObject* minimize = item("Window", "Minimize");
    QObject* zoom = item("Window", "Zoom");
    ASSERT_TRUE(minimize != nullptr && zoom != nullptr);
    EXPECT_EQ(shortcutOf(minimize), QKeySequence(Qt::CTRL | Qt::Key_M));
    choose(zoom);
    EXPECT_EQ(window.visibility(), QWindow::Maximized);
    choose(zoom);
    EXPECT_EQ(window.visibility(), QWindow::Windowed);
    choose(minimize);
    EXPECT_EQ(window.visibility(), QWindow::Minimized);
}

TEST_F(MenusTest, AboutIsTheApplicationsOwnAndShowsTheSystemsPanel) {
    QObject* about = item("File", "About Vesk");
    ASSERT_NE(about, nullptr);
    constexpr int aboutRole = 4;  // MenuItem.AboutRole, which has the system move it to the application's menu
    EXPECT_EQ(about->property("role").toInt(), aboutRole);
    choose(about);
    EXPECT_EQ(countOf("NSApplication orderFrontStandardAboutPanel:"), 1);
}

TEST_F(WindowTest, LessMotionIsAskedOfTheSystem) {
    EXPECT_FALSE(reducedMotionWanted());
    wantLessMotion(true);
    EXPECT_TRUE(reducedMotionWanted());
}

TEST_F(WindowTest, APictogramIsTheSystemsInTheColourAskedFor) {
    QImage drawn(20, 10, QImage::Format_ARGB32);
    drawn.fill(Qt::black);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(drawn.save(&buffer, "PNG"));
    setSymbolPicture(png.toStdString());
    const QImage image = pictogram(QStringLiteral("trash"), Qt::red, 32);
    EXPECT_EQ(image.size(), QSize(32, 32));
    EXPECT_EQ(image.pixelColor(16, 16), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(16, 2).alpha(), 0) << "twice as wide as high";
    setSymbolPicture({});
    EXPECT_TRUE(pictogram(QStringLiteral("no such symbol"), Qt::red, 32).isNull());
}

// By a name with a dot in front, Qt would find nothing and search all fonts for it.
TEST_F(WindowTest, TheFontIsTheOneInTheFileOrTheSystemsOwn) {
    const QFont none = fontInFile(QStringLiteral("/no such file.ttf"));
    EXPECT_EQ(none.families(), QFont().families());
    EXPECT_EQ(windowFont().families(), QFont().families()) << "there is no such file here";
    const QString file = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    if (!QFile::exists(file)) {
        GTEST_SKIP() << "there is no font to try";
    }
    EXPECT_EQ(fontInFile(file).families(), QStringList(QStringLiteral("DejaVu Sans")));
}

}  // namespace
}  // namespace vesk
