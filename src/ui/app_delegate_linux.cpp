// Window managers on Linux do all this by themselves.

#include "ui/app_delegate.h"

namespace vesk {

void AppDelegate::applicationDidFinishLaunching() const {
}

double AppDelegate::extendIntoTitleBar(QWindow& /*window*/) const {
    return 0;
}

}  // namespace vesk
