// The one call into the Objective-C runtime that sends a message; objective_c.h has the rest.
#pragma once

#include <objc/message.h>
#include <objc/runtime.h>

namespace vesk {

/// Sends a message whose arguments and result are of the given types.
template <typename Result = id, typename... Arguments>
Result send(id receiver, const char* message, Arguments... arguments) {
    return reinterpret_cast<Result (*)(id, SEL, Arguments...)>(objc_msgSend)(receiver, sel_registerName(message),
                                                                             arguments...);
}

}  // namespace vesk
