// Runs Vesk without its window while a call fails.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/child_program.h"

namespace vesk::testing {

/// Where and how a run goes wrong; see faults/fault_library.cpp.
struct FaultPoint {
    std::string phase{};
    /// "EIO" and its like, or "KILL".
    std::string error{};
    /// Which of the calls that can fail like this, from 1; 0: none.
    long at = 0;
    /// Whether every later call fails like this too.
    bool lasts = false;
    /// Whether file systems have no rename that refuses to replace.
    bool old = false;
    /// Whether the call is made but reports failure; then only calls that change names fail.
    bool made = false;
    /// Whether all files have one inode number.
    bool alike = false;
    /// Whether the record of each item vanishes just before the item is moved into the Trash: "yes"; "taken" if another
    /// item's record then has the name; "always" if that happens with every name that Vesk tries.
    std::string emptied{};
    /// Whether file systems do not preserve the order of renames.
    bool unordered = false;

    std::string text() const;
};

struct FaultRun {
    ProgramRun program;
    /// What Vesk showed; null if it did not run to its end.
    nlohmann::json told;
    /// The call that failed; empty if none did.
    std::string hit;
    /// How many calls of the phase can fail with each error.
    std::map<std::string, long> counts;
    /// The calls of the phase in order, by their names in fault_fits.h.
    std::vector<std::string> calls;
};

/// Runs the driver in the made-up world of the test, with these steps ("scan", "clean", "undo").
FaultRun runDriver(const std::vector<std::string>& steps, const FaultPoint& point = {});

/// A random sample of the points of a phase, as counted by a run without a fault, or with VESK_FAULTS=all every point.
/// VESK_FAULT_SEED selects the sample.
std::vector<FaultPoint> pointsOf(const FaultRun& counted, const FaultPoint& like,
                                 const std::vector<std::string>& errors, std::size_t atMost);

/// Prints how many points each error had.
void printPoints(const std::string& what, const std::map<std::string, long>& tried);

}  // namespace vesk::testing
