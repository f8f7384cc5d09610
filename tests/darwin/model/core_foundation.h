// Core Foundation's calls that Vesk makes (lint/macos/stubs declares them), over objects that count their references. A
// reference that nobody releases, one too many, or another type than a call takes fails the test. The rules of
// ownership are those of "Memory Management Programming Guide for Core Foundation": who calls a function with Create or
// Copy in its name releases.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vesk::darwin {

/// A value of the user defaults: a text, bytes, a whole number, one with a fraction, or yes or no.
struct Bytes {
    std::string bytes;
    friend bool operator==(const Bytes&, const Bytes&) = default;
};
using DefaultsValue = std::variant<std::string, Bytes, std::int64_t, double, bool>;

/// What the user defaults of this program hold; kept in memory.
void setDefault(const std::string& key, const DefaultsValue& value);
std::optional<DefaultsValue> defaultOf(const std::string& key);
/// Whether the next saves are refused.
void refuseToSaveDefaults(bool refused);

/// The figure of the space for important use that volumes tell from now on; absent: they do not know it.
void setImportantSpace(std::optional<std::int64_t> bytes);

/// The links that Launch Services were asked to open.
const std::vector<std::string>& openedLinks();

/// Fails the test for each object that should have been released; empties the user defaults and all else.
void forgetCoreFoundation();

}  // namespace vesk::darwin
