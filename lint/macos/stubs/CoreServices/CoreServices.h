// Stands in for the framework's header when macOS sources are compiled on Linux; see CoreFoundation/CoreFoundation.h.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

OSStatus LSOpenCFURLRef(CFURLRef place, CFURLRef* opened);

}  // extern "C"
