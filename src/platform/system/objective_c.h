// Calls AppKit through the Objective-C runtime's C interface, which needs no Objective-C compiler. Main thread only,
// like AppKit. A message to nil is not an error: it returns nil.
#pragma once

#include "platform/system/objective_c_send.h"

namespace vesk {

inline id classNamed(const char* name) {
    return reinterpret_cast<id>(objc_getClass(name));
}

/// A string that lives as long as the enclosing pool.
inline id stringOf(const char* utf8) {
    return send<id, const char*>(classNamed("NSString"), "stringWithUTF8String:", utf8);
}

/// Releases at its end everything autoreleased since its start.
class AutoreleasePool {
public:
    AutoreleasePool() : pool_(send(send(classNamed("NSAutoreleasePool"), "alloc"), "init")) {}
    ~AutoreleasePool() { send<void>(pool_, "drain"); }
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

private:
    id pool_;
};

}  // namespace vesk
