// One cleanup rule, as the catalogue lists it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/card.h"

namespace vesk {

class Probe;

struct Spec {
    /// The rule's name, shown to the user as the area that it searches.
    std::string label;
    /// Runs the rule. Called on any thread, concurrently with other rules; never throws.
    std::function<std::vector<Card>(Probe&)> run;
};

}  // namespace vesk
