// Vesk without its window, run while its calls fail as a plan says.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/child_program.h"

namespace vesk::testing {

/// One place where a run goes wrong; see faults/fault_library.cpp.
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
    /// Whether the call is made all the same; then only calls that change names fail.
    bool made = false;
    /// Whether all files have one inode number.
    bool alike = false;
    /// Whether the record of each item vanishes just before the item comes into the Trash: "yes", or "taken" when there
    /// is another item's then, or "always" when that goes on for as long as Vesk tries other names.
    std::string emptied{};
    /// Whether file systems keep no order of changes to names.
    bool unordered = false;

    std::string text() const;
};

struct FaultRun {
    ProgramRun program;
    /// What Vesk showed; null when it did not come to its end.
    nlohmann::json told;
    /// The call that failed; empty when none did.
    std::string hit;
    /// How many calls of the phase can fail with each error.
    std::map<std::string, long> counts;
    /// The calls of the phase in order, by the names that the table in fault_fits.h gives them.
    std::vector<std::string> calls;
};

/// Runs the driver in the made-up world of the test, with these steps ("scan", "clean", "undo").
FaultRun runDriver(const std::vector<std::string>& steps, const FaultPoint& point = {});

/// All points of a phase, or as many of them as a test has time for, by the numbers that a run without a fault counted;
/// VESK_FAULTS=all has all. Which ones these are is told by VESK_FAULT_SEED.
std::vector<FaultPoint> pointsOf(const FaultRun& counted, const FaultPoint& like,
                                 const std::vector<std::string>& errors, std::size_t atMost);

/// Tells how many points each error had.
void printPoints(const std::string& what, const std::map<std::string, long>& tried);

}  // namespace vesk::testing
