// What directory_linux.cpp and directory_macos.cpp share.
#pragma once

#include <functional>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"

namespace vesk {

bool isDotOrDotDot(const char* name);

/// Calls `visit` with one listed name, unless it is "." or "..". `type` is one of readdir(3)'s DT_ values.
void visitListed(const char* name, unsigned char type, const std::function<void(ListedItem)>& visit);

/// Opens a child folder, not following a link; one on another device fails with EXDEV. A bind mount of the same device
/// is not detected.
Descriptor openComparingDevices(int parent, const char* name);

}  // namespace vesk
