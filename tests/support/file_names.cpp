#include "support/file_names.h"

#include <sys/stat.h>

#include "support/temporary_home.h"
#include "temporary_folder.h"

namespace vesk::testing {

std::vector<std::string> namesHeld(const std::vector<std::string>& names) {
    const std::filesystem::path folder = testFolder() / "names";
    removeTree(folder);
    makeFolder(folder);
    std::vector<std::string> held;
    for (const std::string& name : names) {
        // A folder that is there already under another name answers EEXIST.
        if (mkdir((folder / name).c_str(), 0700) == 0) {
            held.push_back(name);
        }
    }
    removeTree(folder);
    return held;
}

bool holdsNames(const std::vector<std::string>& names) {
    return namesHeld(names) == names;
}

}  // namespace vesk::testing
