// RapidJSON, set up for the history. For history_codec*.cpp.
#pragma once

// Strings are then read sixteen bytes at a time. Such a read may pass the end of the text, though never the end of its
// memory page; the address sanitizer would report that.
#if defined(__SSE2__) && !defined(VESK_SANITIZED)
#define RAPIDJSON_SSE2
#endif

#include <rapidjson/reader.h>
#include <rapidjson/writer.h>
