// The catalogue of cleanup rules.
#pragma once

#include <vector>

#include "core/spec.h"

namespace vesk::Scanner {

/// The thirteen rules in order. Callable from any thread.
std::vector<Spec> specs();

}  // namespace vesk::Scanner
