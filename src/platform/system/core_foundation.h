// Ownership of Core Foundation objects, strings and URLs; only for macOS sources of this layer. Callable from any
// thread.
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

/// Owns an object returned by a function with Create or Copy in its name; null if it returned none.
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, CoreFoundationRelease>;

/// A string; null if the bytes are not UTF-8.
inline Owned<CFStringRef> makeString(std::string_view text) {
    return Owned<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                                      static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

/// The URL of a folder; null if its path is invalid.
inline Owned<CFURLRef> makeFolderPlace(const std::filesystem::path& folder) {
    const std::string& path = folder.native();
    return Owned<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), true));
}

}  // namespace vesk
