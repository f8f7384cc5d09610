#include "platform/files/descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace vesk {

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        number_ = std::exchange(other.number_, -1);
    }
    return *this;
}

void Descriptor::close() {
    if (number_ >= 0) {
        const int kept = errno;
        ::close(std::exchange(number_, -1));
        errno = kept;
    }
}

}  // namespace vesk
