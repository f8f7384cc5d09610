// What an application's bundle says of itself. Callable from any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The bundle identifier (CFBundleIdentifier) of the application at `bundle`, as UTF-8. Looks for Info.plist in
/// Contents, "Support Files", Resources and the bundle's own top, in this order; the first one that can be read counts.
/// Absent when there is none, it is larger than 16 MB, or it tells no identifier.
std::optional<std::string> bundleIdentifier(const std::filesystem::path& bundle);

/// The identifier in the bytes of an Info.plist: XML, binary, or the text form older than XML. Absent when the bytes
/// are none of these, or broken before their end, or the identifier is missing or not a text.
std::optional<std::string> bundleIdentifierIn(std::string_view informationPropertyList);

}  // namespace vesk
