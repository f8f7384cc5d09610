#include "platform/files/content.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace vesk {

int readAll(int file, std::size_t atMost, std::string& bytes) {
    std::array<char, std::size_t{64} * 1024> buffer{};
    for (std::size_t left = atMost;;) {
        const ssize_t got = ::read(file, buffer.data(), buffer.size());
        if (got == 0) {
            return 0;
        }
        if (got < 0) {
            if (errno != EINTR) {
                return errno;
            }
            continue;
        }
        const std::size_t taken = std::min(left, static_cast<std::size_t>(got));
        bytes.append(buffer.data(), taken);
        left -= taken;
        if (taken < static_cast<std::size_t>(got)) {
            return EFBIG;
        }
    }
}

int writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return 0;
}

}  // namespace vesk
