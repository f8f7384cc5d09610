#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "platform/system/core_foundation.h"
#include "platform/system/preference_files.h"
#include "platform/system/preferences.h"
#include "platform/world.h"

namespace vesk {

namespace {

// The user defaults' own place for a program: its domain, this user, any host.
Owned<CFPropertyListRef> storedValue(CFStringRef key) {
    return Owned<CFPropertyListRef>(CFPreferencesCopyValue(key, kCFPreferencesCurrentApplication,
                                                           kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
}

void setValue(CFStringRef key, CFPropertyListRef value) {
    CFPreferencesSetValue(key, value, kCFPreferencesCurrentApplication, kCFPreferencesCurrentUser,
                          kCFPreferencesAnyHost);
}

bool storeValue(std::string_view key, CFPropertyListRef value) {
    const Owned<CFStringRef> name = makeString(key);
    if (!name || value == nullptr) {
        return false;
    }
    const Owned<CFPropertyListRef> old = storedValue(name.get());
    setValue(name.get(), value);
    if (CFPreferencesSynchronize(kCFPreferencesCurrentApplication, kCFPreferencesCurrentUser, kCFPreferencesAnyHost)) {
        return true;
    }
    // What could not be written must not be read back either. No value at all removes the key.
    setValue(name.get(), old.get());
    return false;
}

Owned<CFPropertyListRef> storedOfType(std::string_view key, CFTypeID type) {
    const Owned<CFStringRef> name = makeString(key);
    Owned<CFPropertyListRef> value = name ? storedValue(name.get()) : nullptr;
    return value && CFGetTypeID(value.get()) == type ? std::move(value) : nullptr;
}

std::size_t sizeOf(CFPropertyListRef data) {
    return static_cast<std::size_t>(CFDataGetLength(static_cast<CFDataRef>(data)));
}

// Whether a text means yes, as -[NSString boolValue] reads it: white space, a sign and zeros first mean nothing; then
// one of these does.
bool meansYes(CFStringRef text) {
    std::array<char, 64> buffer{};
    if (!CFStringGetCString(text, buffer.data(), static_cast<CFIndex>(buffer.size()), kCFStringEncodingUTF8)) {
        return false;  // too long to be any word for it
    }
    std::string_view rest(buffer.data());
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\n\v\f\r"), rest.size()));
    rest.remove_prefix(rest.starts_with('+') || rest.starts_with('-') ? 1 : 0);
    rest.remove_prefix(std::min(rest.find_first_not_of('0'), rest.size()));
    return !rest.empty() && std::string_view("YyTt123456789").find(rest.front()) != std::string_view::npos;
}

// As -[NSUserDefaults boolForKey:] reads a value, which somebody may have set by hand (defaults(1)).
std::optional<bool> yesOrNo(CFPropertyListRef value) {
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFBooleanGetTypeID()) {
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
    }
    if (type == CFNumberGetTypeID()) {
        double number = 0;
        return CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberFloat64Type, &number) != 0 &&
               std::fpclassify(number) != FP_ZERO;
    }
    return type == CFStringGetTypeID() ? std::optional(meansYes(static_cast<CFStringRef>(value))) : std::nullopt;
}

}  // namespace

// A made-up world has files of its own; an empty folder stands for the user defaults, which it must not reach.
Preferences::Preferences() : folder_(isWorldOfCurrentUser() ? std::filesystem::path() : world().configHome / "vesk") {
}

Preferences::Preferences(std::filesystem::path folder) : folder_(std::move(folder)) {
}

// Not beside the user defaults, whose folder belongs to the system, nor among the caches, which are for the taking.
std::filesystem::path Preferences::lockFile() const {
    return (folder_.empty() ? world().home / "Library/Application Support/Vesk" : folder_) / "in-use.lock";
}

std::optional<bool> Preferences::boolean(std::string_view key) const {
    if (!folder_.empty()) {
        return booleanFromPreferenceFile(data(key));
    }
    const Owned<CFStringRef> name = makeString(key);
    const Owned<CFPropertyListRef> value = name ? storedValue(name.get()) : nullptr;
    return value ? yesOrNo(value.get()) : std::nullopt;
}

bool Preferences::setBoolean(std::string_view key, bool value) {
    if (!folder_.empty()) {
        return setData(key, preferenceFileText(value));
    }
    return storeValue(key, value ? kCFBooleanTrue : kCFBooleanFalse);
}

std::size_t Preferences::size(std::string_view key) const {
    if (!folder_.empty()) {
        return preferenceFileSize(folder_, key);
    }
    const Owned<CFPropertyListRef> value = storedOfType(key, CFDataGetTypeID());
    return value ? sizeOf(value.get()) : 0;
}

StoredBytes Preferences::read(std::string_view key) const {
    if (!folder_.empty()) {
        return readPreferenceFile(folder_, key);
    }
    const Owned<CFPropertyListRef> value = storedOfType(key, CFDataGetTypeID());
    if (!value) {
        return {};  // the system does not tell whether it failed
    }
    const std::size_t size = sizeOf(value.get());
    if (size > largestValue) {
        return {};
    }
    return {std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(static_cast<CFDataRef>(value.get()))), size)};
}

bool Preferences::setData(std::string_view key, std::string_view bytes) {
    if (!folder_.empty()) {
        return writePreferenceFile(folder_, key, bytes);
    }
    if (bytes.size() > largestValue) {
        return false;
    }
    const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                             static_cast<CFIndex>(bytes.size())));
    return storeValue(key, data.get());
}

void Preferences::removeUnfinished() {
    if (!folder_.empty()) {
        removeUnfinishedPreferenceFiles(folder_);
    }
}

}  // namespace vesk
