// The classes of AppKit's that Vesk sends messages to, as far as it does. Beliefs, by their sources: the signatures are
// those of AppKit's headers; that entering and leaving full screen takes the content out from beneath the title bar,
// unless a window's flags ask for it, is what Qt does from 6.9 on (QCocoaWindow::setWindowFlags). Main thread.
#pragma once

#include <QWindow>

#include "darwin/model/objective_c.h"

namespace vesk::darwin {

/// Whether Qt says that it shows its windows by Cocoa. By any other platform, a window's id is a number that is no
/// object (QWindow::winId).
void pretendCocoa(bool isCocoa);

/// The NSWindow of a window.
id frameOf(const QWindow& window);

/// Masks of NSWindow's (NSWindowStyleMask).
inline constexpr unsigned long fullSizeContentView = 1UL << 15U;
inline constexpr unsigned long fullScreen = 1UL << 14U;

/// What happens when the user changes a window to full screen and back.
void enterFullScreen(QWindow& window);
void leaveFullScreen(QWindow& window);

/// Whether the desktop's settings ask for less motion.
void wantLessMotion(bool wanted);

/// Makes the next pictures of symbols, as PNG files; none for an empty one.
void setSymbolPicture(const std::string& png);

void forgetAppKit();

}  // namespace vesk::darwin
