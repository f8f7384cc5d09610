// AppKit asked through the Objective-C runtime's C interface, which needs no Objective-C compiler. Main thread only,
// as AppKit itself. A message to nothing is no error: it answers with nothing.
#pragma once

#include "platform/system/objective_c_send.h"

namespace vesk {

inline id classNamed(const char* name) {
    return reinterpret_cast<id>(objc_getClass(name));
}

/// A string that lives as long as the pool around it.
inline id stringOf(const char* utf8) {
    return send<id, const char*>(classNamed("NSString"), "stringWithUTF8String:", utf8);
}

/// Everything made in between is released at the end.
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
