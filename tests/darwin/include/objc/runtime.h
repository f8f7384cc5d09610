// The Objective-C runtime's types, as on an arm64 Mac; messages are sent by tests/darwin/model/objective_c.h.
#pragma once

using id = struct objc_object*;
using SEL = const struct objc_selector*;
using BOOL = bool;
#define YES true
#define NO false

extern "C" {
id objc_getClass(const char* name);
SEL sel_registerName(const char* name);
}
