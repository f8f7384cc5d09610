// Settings of other programs that a scan of a Linux home reads: user-dirs.dirs, key files, and variables that name
// folders. Whatever stands in them, what comes out is an absolute path in its plain form, or nothing.

#include "fuzz.h"
#include "platform/system/folder_variables.h"
#include "platform/system/key_file.h"
#include "platform/system/user_folders.h"

namespace {

bool isPlainPath(const std::filesystem::path& path) {
    return path.is_absolute() && path == path.lexically_normal() && (path.has_filename() || !path.has_relative_path());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = vesk::testing::bytesOf(data, size);

    for (const auto& [name, folder] : vesk::userFoldersIn(bytes, "/home/u")) {
        VESK_HOLDS(isPlainPath(folder) && folder != "/home/u" && !name.empty());
    }
    for (const vesk::KeyFileLine& line : vesk::keyFileLines(bytes)) {
        VESK_HOLDS(line.key.find_first_of("=\n") == std::string::npos && line.value.find('\n') == std::string::npos);
        VESK_HOLDS(line.group.size() + line.key.size() + line.value.size() < bytes.size());
    }
    // Variables cannot hold a zero.
    const std::string text = bytes.substr(0, bytes.find('\0'));
    const std::string expanding = "HF_HOME=" + text;
    const std::string trimming = "OLLAMA_MODELS=" + text;
    const char* const environment[] = {expanding.c_str(), trimming.c_str(), "A=/a", text.c_str(), nullptr};
    for (const auto& [name, folder] : vesk::variableFolders(environment, "/home/u")) {
        VESK_HOLDS(isPlainPath(folder));
    }
    return 0;
}
