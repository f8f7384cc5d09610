// What directory_linux.cpp and directory_macos.cpp do alike.
#pragma once

#include <functional>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"

namespace vesk {

bool isDotOrDotDot(const char* name);

/// Hands over one name of a folder's own listing, unless it is "." or "..". `type` is one of the DT_ values of
/// readdir(3).
void visitListed(const char* name, unsigned char type, const std::function<void(ListedItem)>& visit);

/// Opens a child folder, not following a link; one on another device fails with EXDEV. A folder mounted a second time
/// has the same device and is entered.
Descriptor openComparingDevices(int parent, const char* name);

}  // namespace vesk
