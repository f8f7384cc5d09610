#include "darwin/model/appkit.h"

#include <QGuiApplication>
#include <QMargins>
#include <QString>
#include <QtGlobal>

#include "darwin/model/misuse.h"

// The linker gives functions of C++ names like C's.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" {
WId __real__ZNK7QWindow5winIdEv(const QWindow* window);
void __real__ZN7QWindow8setFlagsE6QFlagsIN2Qt10WindowTypeEE(QWindow* window, Qt::WindowFlags flags);
QString __real__ZN15QGuiApplication12platformNameEv();
}

namespace vesk::darwin {

namespace {

struct AppKit {
    bool isCocoa = false;
    bool lessMotion = false;
    std::string symbolPicture;
    std::map<const QWindow*, id> views;
    id application = nullptr;
    id workspace = nullptr;
};

AppKit& appKit() {
    static AppKit& instance = *new AppKit;
    return instance;
}

id shared(id& object, const char* className) {
    if (object == nullptr) {
        object = makeShared(className);
    }
    return object;
}

// A method that remembers what it was sent.
template <typename Type>
DeclaredMethod setter(std::string types, std::string name) {
    return {std::move(types), [name](id self, const Arguments& sent) {
                valueOf(self, name) = sent[0];
                return std::any();
            }};
}

template <typename Type>
DeclaredMethod getter(std::string types, std::string name) {
    return {std::move(types), [name](id self, const Arguments&) { return std::any(valueOr<Type>(self, name)); }};
}

DeclaredMethod nothing(std::string types) {
    return {std::move(types), [](id, const Arguments&) { return std::any(); }};
}

// A method that makes an object of a class for the innermost autorelease pool.
DeclaredMethod maker(std::string types, std::string className) {
    return {std::move(types), [className](id, const Arguments&) { return std::any(makeAutoreleased(className)); }};
}

void declareApplication() {
    ModelClass application{"NSApplication", "NSObject", {}, {}};
    application.ofClass["sharedApplication"] = {
        "@", [](id, const Arguments&) { return std::any(shared(appKit().application, "NSApplication")); }};
    application.ofObjects["setActivationPolicy:"] = {"Bq", [](id self, const Arguments& sent) {
                                                         valueOf(self, "policy") = sent[0];
                                                         return std::any(true);
                                                     }};
    application.ofObjects["activateIgnoringOtherApps:"] = nothing("vB");
    application.ofObjects["orderFrontStandardAboutPanel:"] = nothing("v@");
    // The menu that Qt has made for itself.
    application.ofObjects["mainMenu"] = {"@", [](id self, const Arguments&) {
                                             if (!valueOf(self, "menu").has_value()) {
                                                 valueOf(self, "menu") = makeShared("NSMenu");
                                             }
                                             return valueOf(self, "menu");
                                         }};
    declareClass(std::move(application));
    ModelClass menu{"NSMenu", "NSObject", {}, {}};
    menu.ofObjects["numberOfItems"] = {"q", [](id, const Arguments&) { return std::any(1L); }};
    menu.ofObjects["itemAtIndex:"] = {"@q", [](id self, const Arguments&) { return std::any(self); }};
    menu.ofObjects["submenu"] = {"@", [](id self, const Arguments&) { return std::any(self); }};
    menu.ofObjects["insertItem:atIndex:"] = nothing("v@q");
    declareClass(std::move(menu));
    ModelClass item{"NSMenuItem", "NSObject", {}, {}};
    item.ofClass["alloc"] = {"@", [](id, const Arguments&) { return std::any(makeOwned("NSMenuItem")); }};
    item.ofObjects["initWithTitle:action:keyEquivalent:"] = {"@@:@",
                                                             [](id self, const Arguments&) { return std::any(self); }};
    declareClass(std::move(item));
    ModelClass workspace{"NSWorkspace", "NSObject", {}, {}};
    workspace.ofClass["sharedWorkspace"] = {
        "@", [](id, const Arguments&) { return std::any(shared(appKit().workspace, "NSWorkspace")); }};
    workspace.ofObjects["accessibilityDisplayShouldReduceMotion"] = {
        "B", [](id, const Arguments&) { return std::any(appKit().lessMotion); }};
    declareClass(std::move(workspace));
}

void declareWindow() {
    ModelClass view{"NSView", "NSObject", {}, {}};
    view.ofObjects["window"] = getter<id>("@", "window");
    declareClass(std::move(view));
    ModelClass window{"NSWindow", "NSObject", {}, {}};
    window.ofObjects["styleMask"] = getter<unsigned long>("Q", "styleMask");
    window.ofObjects["setStyleMask:"] = {"vQ", [](id self, const Arguments& sent) {
                                             const auto before = valueOr<unsigned long>(self, "styleMask");
                                             const auto after = std::any_cast<unsigned long>(sent[0]);
                                             // AppKit answers this with an exception.
                                             if (((before ^ after) & fullScreen) != 0) {
                                                 misuse("a style mask changes full screen outside of a transition");
                                             }
                                             valueOf(self, "styleMask") = after;
                                             return std::any();
                                         }};
    window.ofObjects["setTitlebarAppearsTransparent:"] = setter<bool>("vB", "transparent");
    window.ofObjects["setTitleVisibility:"] = setter<long>("vq", "titleVisibility");
    declareClass(std::move(window));
}

void declarePictures() {
    ModelClass image{"NSImage", "NSObject", {}, {}};
    image.ofClass["imageWithSystemSymbolName:accessibilityDescription:"] = {
        "@@@", [](id, const Arguments&) {
            return appKit().symbolPicture.empty() ? std::any() : std::any(makeAutoreleased("NSImage"));
        }};
    image.ofObjects["imageWithSymbolConfiguration:"] = maker("@@", "NSImage");
    image.ofObjects["TIFFRepresentation"] = maker("@", "NSData");
    declareClass(std::move(image));
    ModelClass configuration{"NSImageSymbolConfiguration", "NSObject", {}, {}};
    configuration.ofClass["configurationWithPointSize:weight:"] = maker("@dd", "NSImageSymbolConfiguration");
    declareClass(std::move(configuration));
    ModelClass bitmap{"NSBitmapImageRep", "NSObject", {}, {}};
    bitmap.ofClass["imageRepWithData:"] = maker("@@", "NSBitmapImageRep");
    bitmap.ofObjects["representationUsingType:properties:"] = maker("@Q@", "NSData");
    declareClass(std::move(bitmap));
    ModelClass dictionary{"NSDictionary", "NSObject", {}, {}};
    dictionary.ofClass["dictionary"] = maker("@", "NSDictionary");
    declareClass(std::move(dictionary));
    ModelClass data{"NSData", "NSObject", {}, {}};
    data.ofObjects["bytes"] = {
        "*", [](id, const Arguments&) { return std::any(static_cast<const char*>(appKit().symbolPicture.data())); }};
    data.ofObjects["length"] = {
        "Q", [](id, const Arguments&) { return std::any(static_cast<unsigned long>(appKit().symbolPicture.size())); }};
    declareClass(std::move(data));
}

const bool isDeclared = (declareApplication(), declareWindow(), declarePictures(), true);

// What Qt does whenever it sets a window's flags.
void applyFlags([[maybe_unused]] id frame, [[maybe_unused]] const QWindow& window) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
    const auto mask = valueOr<unsigned long>(frame, "styleMask") & ~fullSizeContentView;
    valueOf(frame, "styleMask") =
        window.flags().testFlag(Qt::ExpandedClientAreaHint) ? mask | fullSizeContentView : mask;
    valueOf(frame, "transparent") = window.flags().testFlag(Qt::NoTitleBarBackgroundHint);
#endif
}

// What Qt makes for a window, again whenever it was closed.
id viewOf(const QWindow& window) {
    id& view = appKit().views[&window];
    if (view == nullptr) {
        view = makeShared("NSView");
        const id frame = makeShared("NSWindow");
        valueOf(frame, "styleMask") = 0xFUL;  // titled, closable, miniaturizable, resizable
        applyFlags(frame, window);
        valueOf(view, "window") = frame;
    }
    return view;
}

// Qt sets the window's flags anew, and with them these.
void changeFullScreen(QWindow& window, unsigned long mask, Qt::WindowState state) {
    const id frame = frameOf(window);
    valueOf(frame, "styleMask") = mask;
    valueOf(frame, "transparent") = false;
    applyFlags(frame, window);
    window.setWindowState(state);
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
    emit window.safeAreaMarginsChanged(window.safeAreaMargins());
#endif
    QCoreApplication::processEvents();
}

}  // namespace

void pretendCocoa(bool isCocoa) {
    appKit().isCocoa = isCocoa;
}

id frameOf(const QWindow& window) {
    return valueOr<id>(viewOf(window), "window");
}

void enterFullScreen(QWindow& window) {
    const auto mask = valueOr<unsigned long>(frameOf(window), "styleMask");
    changeFullScreen(window, (mask & ~fullSizeContentView) | fullScreen, Qt::WindowFullScreen);
}

void leaveFullScreen(QWindow& window) {
    const auto mask = valueOr<unsigned long>(frameOf(window), "styleMask");
    changeFullScreen(window, mask & ~(fullScreen | fullSizeContentView), Qt::WindowNoState);
}

void wantLessMotion(bool wanted) {
    appKit().lessMotion = wanted;
}

void setSymbolPicture(const std::string& png) {
    appKit().symbolPicture = png;
}

void forgetAppKit() {
    appKit() = AppKit();
}

}  // namespace vesk::darwin

using namespace vesk::darwin;

extern "C" {

WId __wrap__ZNK7QWindow5winIdEv(const QWindow* window) {
    return appKit().isCocoa ? reinterpret_cast<WId>(viewOf(*window)) : __real__ZNK7QWindow5winIdEv(window);
}

void __wrap__ZN7QWindow8setFlagsE6QFlagsIN2Qt10WindowTypeEE(QWindow* window, Qt::WindowFlags flags) {
    __real__ZN7QWindow8setFlagsE6QFlagsIN2Qt10WindowTypeEE(window, flags);
    if (appKit().isCocoa) {
        applyFlags(frameOf(*window), *window);
    }
}

// Since Qt 6.9: how much of the content the title bar covers.
QMargins __wrap__ZNK7QWindow15safeAreaMarginsEv(const QWindow* window) {
    constexpr int titleBarHeight = 28;
    const auto mask = appKit().isCocoa ? valueOr<unsigned long>(frameOf(*window), "styleMask") : 0;
    return {0, (mask & (fullSizeContentView | fullScreen)) == fullSizeContentView ? titleBarHeight : 0, 0, 0};
}

QString __wrap__ZN15QGuiApplication12platformNameEv() {
    return appKit().isCocoa ? QStringLiteral("cocoa") : __real__ZN15QGuiApplication12platformNameEv();
}

}  // extern "C"
