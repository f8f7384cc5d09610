#include "darwin/model/core_foundation.h"

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>
#include <sys/statvfs.h>

#include <map>
#include <memory>
#include <mutex>
#include <string_view>

#include "darwin/model/misuse.h"
#include "platform/text.h"

namespace vesk::darwin {

namespace {

// Core Foundation's own numbers are nobody's business; these tell the types apart.
enum Type : CFTypeID { stringType = 7, dataType = 20, booleanType = 21, numberType = 22, urlType = 29 };

struct Counted {
    CFTypeID type = 0;
    DefaultsValue value;
    long count = 1;
    bool isConstant = false;
};

struct Foundation {
    // Recursive: misuse may be told of while an object is looked at.
    std::recursive_mutex lock;
    std::map<const void*, std::unique_ptr<Counted>> objects;
    std::map<std::string, const void*> defaults;
    bool savingIsRefused = false;
    bool importantSpaceIsSet = false;
    std::optional<std::int64_t> importantSpace;
    std::vector<std::string> opened;
};

Foundation& foundation() {
    static Foundation& instance = *new Foundation;
    return instance;
}

const void* addCounted(CFTypeID type, DefaultsValue value, bool isConstant = false) {
    const std::lock_guard guard(foundation().lock);
    auto object = std::make_unique<Counted>(Counted{type, std::move(value), 1, isConstant});
    const void* address = object.get();
    foundation().objects[address] = std::move(object);
    return address;
}

const void* constant(const char* name) {
    return addCounted(stringType, std::string(name), true);
}

Counted* countedAt(const void* address, const char* function) {
    const std::lock_guard guard(foundation().lock);
    const auto found = foundation().objects.find(address);
    if (found == foundation().objects.end()) {
        misuse(std::string(function) + " is called with what is no object, or no longer");
        return nullptr;
    }
    return found->second.get();
}

template <typename Value>
const Value* read(const void* address, CFTypeID type, const char* function) {
    const Counted* object = countedAt(address, function);
    if (object == nullptr) {
        return nullptr;
    }
    if (object->type != type) {
        misuse(std::string(function) + " is called with an object of another type");
        return nullptr;
    }
    return std::get_if<Value>(&object->value);
}

CFTypeID typeOf(const DefaultsValue& value) {
    constexpr CFTypeID types[] = {stringType, dataType, numberType, numberType, booleanType};
    return types[value.index()];
}

void release(const void* address) {
    const std::lock_guard guard(foundation().lock);
    if (Counted* object = countedAt(address, "CFRelease");
        object != nullptr && !object->isConstant && --object->count == 0) {
        foundation().objects.erase(address);
    }
}

void checkDomain(CFStringRef application, CFStringRef user, CFStringRef host) {
    if (application != kCFPreferencesCurrentApplication || user != kCFPreferencesCurrentUser ||
        host != kCFPreferencesAnyHost) {
        misuse("the user defaults are asked for another domain than the program's own");
    }
}

std::string textOf(CFStringRef text, const char* function) {
    const auto* read_ = read<std::string>(text, stringType, function);
    return read_ == nullptr ? std::string() : *read_;
}

std::optional<std::int64_t> volumeFigure(const std::string& path, CFStringRef key) {
    struct statvfs found {};
    if (statvfs(path.c_str(), &found) != 0) {
        return std::nullopt;
    }
    if (key == kCFURLVolumeTotalCapacityKey) {
        return static_cast<std::int64_t>(found.f_blocks * found.f_frsize);
    }
    return foundation().importantSpaceIsSet ? foundation().importantSpace
                                            : static_cast<std::int64_t>(found.f_bavail * found.f_frsize);
}

}  // namespace

void setDefault(const std::string& key, const DefaultsValue& value) {
    const std::lock_guard guard(foundation().lock);
    if (const auto old = foundation().defaults.find(key); old != foundation().defaults.end()) {
        release(old->second);
    }
    foundation().defaults[key] = addCounted(typeOf(value), value);
}

std::optional<DefaultsValue> defaultOf(const std::string& key) {
    const std::lock_guard guard(foundation().lock);
    const auto found = foundation().defaults.find(key);
    return found == foundation().defaults.end() ? std::nullopt
                                                : std::optional(countedAt(found->second, "a test")->value);
}

void refuseToSaveDefaults(bool refused) {
    foundation().savingIsRefused = refused;
}

void setImportantSpace(std::optional<std::int64_t> bytes) {
    foundation().importantSpaceIsSet = true;
    foundation().importantSpace = bytes;
}

const std::vector<std::string>& openedLinks() {
    return foundation().opened;
}

void forgetCoreFoundation() {
    const std::lock_guard guard(foundation().lock);
    for (const auto& [key, value] : foundation().defaults) {
        release(value);
    }
    foundation().defaults.clear();
    std::erase_if(foundation().objects, [](const auto& entry) {
        if (!entry.second->isConstant) {
            misuse("an object of Core Foundation's was never released");
        }
        return !entry.second->isConstant;
    });
    foundation().savingIsRefused = false;
    foundation().importantSpaceIsSet = false;
    foundation().opened.clear();
}

}  // namespace vesk::darwin

using namespace vesk::darwin;

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = static_cast<CFBooleanRef>(addCounted(booleanType, true, true));
const CFBooleanRef kCFBooleanFalse = static_cast<CFBooleanRef>(addCounted(booleanType, false, true));
const CFStringRef kCFURLVolumeTotalCapacityKey = static_cast<CFStringRef>(constant("total"));
const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey = static_cast<CFStringRef>(constant("important"));
const CFStringRef kCFPreferencesCurrentApplication = static_cast<CFStringRef>(constant("application"));
const CFStringRef kCFPreferencesCurrentUser = static_cast<CFStringRef>(constant("user"));
const CFStringRef kCFPreferencesAnyHost = static_cast<CFStringRef>(constant("any host"));

void CFRelease(CFTypeRef object) {
    release(object);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    const Counted* found = countedAt(object, "CFGetTypeID");
    return found == nullptr ? 0 : found->type;
}

CFTypeID CFBooleanGetTypeID() {
    return booleanType;
}

CFTypeID CFDataGetTypeID() {
    return dataType;
}

CFTypeID CFNumberGetTypeID() {
    return numberType;
}

CFTypeID CFStringGetTypeID() {
    return stringType;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding encoding,
                                    Boolean) {
    const std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    if (encoding != kCFStringEncodingUTF8) {
        misuse("CFStringCreateWithBytes is called with another encoding than UTF-8");
    }
    return vesk::isUtf8(text) ? static_cast<CFStringRef>(addCounted(stringType, text)) : nullptr;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding) {
    const std::string text = textOf(string, "CFStringGetCString");
    if (encoding != kCFStringEncodingUTF8 || text.size() >= static_cast<std::size_t>(size)) {
        return false;
    }
    text.copy(buffer, text.size());
    buffer[text.size()] = '\0';
    return true;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    const bool* value = read<bool>(boolean, booleanType, "CFBooleanGetValue");
    return value != nullptr && *value;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const Counted* object = countedAt(number, "CFNumberGetValue");
    if (object == nullptr || object->type != numberType) {
        misuse("CFNumberGetValue is called with an object of another type");
        return false;
    }
    const auto* whole = std::get_if<std::int64_t>(&object->value);
    const double fraction = whole == nullptr ? std::get<double>(object->value) : static_cast<double>(*whole);
    if (type == kCFNumberFloat64Type) {
        *static_cast<double*>(value) = fraction;
        return true;
    }
    if (type != kCFNumberSInt64Type) {
        misuse("CFNumberGetValue is called for another type than the model knows");
        return false;
    }
    *static_cast<std::int64_t*>(value) = whole == nullptr ? static_cast<std::int64_t>(fraction) : *whole;
    return whole != nullptr;  // otherwise something was lost
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    return static_cast<CFDataRef>(addCounted(
        dataType, Bytes{std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length))}));
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    const Bytes* value = read<Bytes>(data, dataType, "CFDataGetBytePtr");
    return value == nullptr ? nullptr : reinterpret_cast<const UInt8*>(value->bytes.data());
}

CFIndex CFDataGetLength(CFDataRef data) {
    const Bytes* value = read<Bytes>(data, dataType, "CFDataGetLength");
    return value == nullptr ? 0 : static_cast<CFIndex>(value->bytes.size());
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef text, CFURLRef) {
    return static_cast<CFURLRef>(addCounted(urlType, textOf(text, "CFURLCreateWithString")));
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length, Boolean) {
    if (length == 0) {
        return nullptr;
    }
    return static_cast<CFURLRef>(
        addCounted(urlType, std::string(reinterpret_cast<const char*>(path), static_cast<std::size_t>(length))));
}

Boolean CFURLCopyResourcePropertyForKey(CFURLRef place, CFStringRef key, void* value, CFErrorRef*) {
    const auto* path = read<std::string>(place, urlType, "CFURLCopyResourcePropertyForKey");
    struct statvfs found {};
    if (path == nullptr || statvfs(path->c_str(), &found) != 0) {
        return false;
    }
    const std::optional<std::int64_t> figure = volumeFigure(*path, key);
    *static_cast<CFTypeRef*>(value) = figure ? addCounted(numberType, *figure) : nullptr;
    return true;
}

CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user, CFStringRef host) {
    const std::lock_guard guard(foundation().lock);
    checkDomain(application, user, host);
    const auto stored = foundation().defaults.find(textOf(key, "CFPreferencesCopyValue"));
    if (stored == foundation().defaults.end()) {
        return nullptr;
    }
    ++countedAt(stored->second, "CFPreferencesCopyValue")->count;
    return stored->second;
}

void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application, CFStringRef user,
                           CFStringRef host) {
    const std::lock_guard guard(foundation().lock);
    checkDomain(application, user, host);
    const std::string name = textOf(key, "CFPreferencesSetValue");
    if (value != nullptr) {
        ++countedAt(value, "CFPreferencesSetValue")->count;
    }
    if (const auto old = foundation().defaults.find(name); old != foundation().defaults.end()) {
        release(old->second);
        foundation().defaults.erase(old);
    }
    if (value != nullptr) {
        foundation().defaults[name] = value;
    }
}

Boolean CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host) {
    checkDomain(application, user, host);
    return !foundation().savingIsRefused;
}

OSStatus LSOpenCFURLRef(CFURLRef place, CFURLRef*) {
    if (const auto* link = read<std::string>(place, urlType, "LSOpenCFURLRef")) {
        foundation().opened.push_back(*link);
    }
    return 0;
}

}  // extern "C"
