#include "support/private_mounts.h"

namespace vesk::testing {

bool enterPrivateMounts() {
    return false;
}

bool privateMountsAreAllowed() {
    return false;
}

bool mountTemporaryFileSystem(const std::filesystem::path& /*folder*/, const std::string& /*options*/) {
    return false;
}

bool mountWithoutUseDates(const std::filesystem::path& /*folder*/, bool /*ofFilesEither*/) {
    return false;
}

bool mountFolderAgain(const std::filesystem::path& /*shown*/, const std::filesystem::path& /*at*/) {
    return false;
}

bool remountReadOnly(const std::filesystem::path& /*folder*/) {
    return false;
}

void unmount(const std::filesystem::path& /*folder*/) {
}

}  // namespace vesk::testing
