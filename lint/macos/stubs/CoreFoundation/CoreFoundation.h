// Stands in for the framework's header when macOS sources are compiled on Linux (lint/macos/run.sh): only what
// Vesk calls, declared as Apple's documentation gives it. Never part of a build on macOS.
#pragma once

#include <MacTypes.h>

extern "C" {

using CFTypeRef = const void*;
using CFPropertyListRef = CFTypeRef;
using CFAllocatorRef = const struct __CFAllocator*;
using CFStringRef = const struct __CFString*;
using CFURLRef = const struct __CFURL*;
using CFDataRef = const struct __CFData*;
using CFNumberRef = const struct __CFNumber*;
using CFBooleanRef = const struct __CFBoolean*;
using CFErrorRef = struct __CFError*;

using CFIndex = long;
using CFTypeID = unsigned long;
using CFStringEncoding = UInt32;
using CFNumberType = CFIndex;

// NOLINTNEXTLINE: unscoped, as in the original
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
// NOLINTNEXTLINE
enum : CFNumberType { kCFNumberSInt64Type = 4, kCFNumberFloat64Type = 6 };

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFBooleanGetTypeID();
CFTypeID CFDataGetTypeID();
CFTypeID CFNumberGetTypeID();
CFTypeID CFStringGetTypeID();

CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size, CFStringEncoding encoding);
Boolean CFBooleanGetValue(CFBooleanRef boolean);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
const UInt8* CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);

CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base);
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* path, CFIndex length,
                                                 Boolean isDirectory);
Boolean CFURLCopyResourcePropertyForKey(CFURLRef place, CFStringRef key, void* value, CFErrorRef* error);
extern const CFStringRef kCFURLVolumeTotalCapacityKey;
extern const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey;

extern const CFStringRef kCFPreferencesCurrentApplication;
extern const CFStringRef kCFPreferencesCurrentUser;
extern const CFStringRef kCFPreferencesAnyHost;
CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user, CFStringRef host);
void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application, CFStringRef user,
                           CFStringRef host);
Boolean CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host);

}  // extern "C"
