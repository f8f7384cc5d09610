// Ownership of Core Foundation's objects, and its texts and places; for this folder's macOS sources alone. Any thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace vesk {

struct CoreFoundationRelease {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns an object that a function with Create or Copy in its name returned; null when it returned none.
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, CoreFoundationRelease>;

/// A text; null when the bytes are not UTF-8.
inline Owned<CFStringRef> makeString(std::string_view text) {
    return Owned<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                                      static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

/// The place of a folder; null when its path cannot be one.
inline Owned<CFURLRef> makeFolderPlace(const std::filesystem::path& folder) {
    const std::string& path = folder.native();
    return Owned<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), true));
}

}  // namespace vesk
