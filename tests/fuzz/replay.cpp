// Runs a fuzz target on every file of its corpus, without a fuzzer: REPLAY FOLDER. Fails if there is no file.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz.h"

int main(int argc, char** argv) {
    std::error_code failure;
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argc == 2 ? argv[1] : "", failure)) {
        std::ifstream stream(entry.path(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        bytes.shrink_to_fit();
        std::printf("%s\n", entry.path().filename().c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++files;
    }
    std::printf("%d files\n", files);
    return files > 0 && !failure ? 0 : 1;
}
