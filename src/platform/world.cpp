#include "platform/world.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/system/folder_variables.h"

namespace vesk {

namespace {

World& currentWorld() {
    // Never destroyed: a rule that hangs may outlive main.
    static auto& instance = *new World(World::ofCurrentUser());
    return instance;
}

std::filesystem::path absoluteFromEnvironment(const char* name) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): read before any thread starts
    std::filesystem::path path = value == nullptr ? "" : value;
    return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path homeFromUserDatabase() {
    std::vector<char> buffer(16384);
    passwd record{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &record, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return {};
    }
    return found->pw_dir;
}

// Whether a path lies in the folder that a snap or a Flatpak has to itself.
bool isSandboxes(const std::filesystem::path& folder, const std::filesystem::path& home) {
    std::error_code failure;
    for (const std::filesystem::path& sandboxes : {home / "snap", home / ".var/app"}) {
        for (std::filesystem::path above = folder.lexically_normal(); above.has_relative_path();
             above = above.parent_path()) {
            if (above == sandboxes.lexically_normal() || std::filesystem::equivalent(above, sandboxes, failure)) {
                return true;
            }
        }
    }
    return false;
}

// One of the XDG folders. A Flatpak passes the value that its user had set as `variable` with "HOST_" before it.
std::filesystem::path xdgFolder(const std::string& variable, const char* standard, const std::filesystem::path& home) {
    for (const std::string& name : {variable, "HOST_" + variable}) {
        std::filesystem::path folder = absoluteFromEnvironment(name.c_str());
        if (!folder.empty() && !isSandboxes(folder, home)) {
            return folder;
        }
    }
    return home / standard;
}

}  // namespace

World World::ofCurrentUser() {
    World result;
    result.home = absoluteFromEnvironment("HOME");
    if (result.home.empty()) {
        result.home = homeFromUserDatabase();
    }
    result.configHome = xdgFolder("XDG_CONFIG_HOME", ".config", result.home);
    result.dataHome = xdgFolder("XDG_DATA_HOME", ".local/share", result.home);
    result.cacheHome = xdgFolder("XDG_CACHE_HOME", ".cache", result.home);
    result.runtimeHome = absoluteFromEnvironment("XDG_RUNTIME_DIR");
#ifndef __APPLE__
    result.layout = Layout::linuxDesktop;
    result.variableFolders = vesk::variableFolders(environ, result.home);
#endif
    return result;
}

World World::below(std::filesystem::path root, std::filesystem::path home, Layout layout) {
    World result;
    result.layout = layout;
    result.cacheHome = home / ".cache";
    result.configHome = home / ".config";
    result.dataHome = home / ".local/share";
    result.runtimeHome = root;
    result.root = std::move(root);
    result.home = std::move(home);
    return result;
}

World::HomeFault World::homeFault() const {
    if (!home.is_absolute()) {
        return HomeFault::unknown;
    }
    std::error_code failure;
    if (home.lexically_normal() == "/" || std::filesystem::equivalent(home, "/", failure)) {
        return HomeFault::wholeDisk;
    }
    struct stat found {};
    return stat(home.c_str(), &found) == 0 && found.st_uid != geteuid() ? HomeFault::anothers : HomeFault::none;
}

bool World::isReal() const {
    return isRealWith(homeFromUserDatabase());
}

bool World::isRealWith(const std::filesystem::path& homeOfUser) const {
    std::error_code failure;
    return root == "/" && std::filesystem::equivalent(home, homeOfUser, failure) && !failure;
}

std::filesystem::path World::rooted(std::string_view absolute) const {
    return root / std::filesystem::path(absolute).relative_path();
}

const World& world() {
    return currentWorld();
}

bool isWorldOfCurrentUser() {
    return world() == World::ofCurrentUser() && world().isReal();
}

void setWorld(World world) {
    currentWorld() = std::move(world);
}

}  // namespace vesk
