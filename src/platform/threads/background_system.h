// What background.cpp needs and each system has in its own way (background_linux.cpp, background_macos.cpp).
#pragma once

namespace vesk {

/// Gives the calling thread the system's priority for background work. A refusal is ignored.
void lowerPriority();

}  // namespace vesk
