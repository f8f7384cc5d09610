// Reads an application bundle's identifier. Callable from any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The bundle identifier (CFBundleIdentifier) of the application at `bundle`, in UTF-8. Looks for Info.plist in
/// Contents, "Support Files", Resources and the bundle's top folder, in this order, and uses the first that can be
/// read. Absent if there is none, it is larger than 16 MB, or it has no identifier.
std::optional<std::string> bundleIdentifier(const std::filesystem::path& bundle);

/// The identifier in an Info.plist: XML, binary, or the older text form. Absent if the bytes are none of these, are
/// broken before the identifier, or it is missing or not a string.
std::optional<std::string> bundleIdentifierIn(std::string_view informationPropertyList);

}  // namespace vesk
