// Takes the place of the one that calls the Objective-C runtime: messages go to the model.
#pragma once

#include "darwin/model/objective_c.h"

namespace vesk {

template <typename Result = id, typename... Arguments>
Result send(id receiver, const char* message, Arguments... arguments) {
    return darwin::sendMessage<Result, Arguments...>(receiver, message, arguments...);
}

}  // namespace vesk
