// One cleanup rule, as the catalogue lists it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/card.h"

namespace vesk {

class Probe;

struct Spec {
    /// The rule's name, shown to the user as the area it searches.
    std::string label;
    /// The rule's body. Called on any thread, while other rules run; never throws.
    std::function<std::vector<Card>(Probe&)> run;
};

}  // namespace vesk
