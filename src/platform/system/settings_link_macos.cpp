#include "platform/system/settings_link.h"

#include <CoreServices/CoreServices.h>

#include "platform/system/core_foundation.h"

namespace vesk {

void openFullDiskAccessSettings() {
    const Owned<CFStringRef> text =
        makeString("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
    const Owned<CFURLRef> link(text ? CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr) : nullptr);
    if (link) {
        LSOpenCFURLRef(link.get(), nullptr);
    }
}

}  // namespace vesk
