#include "platform/error.h"

namespace vesk {

PlatformError posixError(int number) {
    return PlatformError{std::string(posixErrorDomain), number, nullptr};
}

}  // namespace vesk
