#pragma once

#include <cstdint>

using UInt8 = std::uint8_t;
using UInt32 = std::uint32_t;
using OSStatus = std::int32_t;
using Boolean = unsigned char;
