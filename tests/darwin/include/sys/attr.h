// What getattrlistbulk(2) takes and gives; see tests/darwin/README.md.
#pragma once

#include <sys/types.h>

#include <cstdint>

constexpr std::uint16_t ATTR_BIT_MAP_COUNT = 5;
constexpr std::uint32_t ATTR_CMN_NAME = 0x00000001;
constexpr std::uint32_t ATTR_CMN_OBJTYPE = 0x00000008;
constexpr std::uint32_t ATTR_CMN_MODTIME = 0x00000400;
constexpr std::uint32_t ATTR_CMN_ACCTIME = 0x00001000;
constexpr std::uint32_t ATTR_CMN_ERROR = 0x20000000;
constexpr std::uint32_t ATTR_CMN_RETURNED_ATTRS = 0x80000000;
constexpr std::uint32_t ATTR_FILE_ALLOCSIZE = 0x00000004;
constexpr std::uint32_t ATTR_FILE_DATAALLOCSIZE = 0x00000400;

struct attrlist {
    std::uint16_t bitmapcount;
    std::uint16_t reserved;
    std::uint32_t commonattr;
    std::uint32_t volattr;
    std::uint32_t dirattr;
    std::uint32_t fileattr;
    std::uint32_t forkattr;
};

struct attribute_set_t {
    std::uint32_t commonattr;
    std::uint32_t volattr;
    std::uint32_t dirattr;
    std::uint32_t fileattr;
    std::uint32_t forkattr;
};

struct attrreference_t {
    std::int32_t attr_dataoffset;
    std::uint32_t attr_length;
};

extern "C" int getattrlistbulk(int folder, void* wanted, void* buffer, std::size_t size, std::uint64_t options);
