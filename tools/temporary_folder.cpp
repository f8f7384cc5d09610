#include "temporary_folder.h"

#include <cstdlib>
#include <system_error>

namespace vesk {

TemporaryFolder::TemporaryFolder(const std::string& name) {
    std::error_code error;
    std::string pattern = (std::filesystem::temp_directory_path(error) / (name + "-XXXXXX")).string();
    if (mkdtemp(pattern.data()) != nullptr) {
        path_ = std::filesystem::canonical(pattern, error);
    }
}

TemporaryFolder::~TemporaryFolder() {
    remove();
}

void TemporaryFolder::remove() {
    std::error_code ignored;
    if (!path_.empty()) {
        std::filesystem::remove_all(path_, ignored);
    }
}

}  // namespace vesk
