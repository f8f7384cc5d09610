#include "faults/fault_run.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include "support/reachable_copy.h"
#include "support/temporary_home.h"
#include "support/trash_home.h"

namespace vesk::testing {

namespace {

const ReachableCopy driver(VESK_DRIVER);
const ReachableCopy faultLibrary(VESK_FAULT_LIBRARY);

std::string setting(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody changes the environment
    return value == nullptr ? otherwise : value;
}

std::filesystem::path reportFile() {
    return testFolder() / "fault-report";
}

void readReport(FaultRun& run) {
    std::istringstream lines(contentOf(reportFile()));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string kind;
        words >> kind;
        if (kind == "hit") {
            run.hit = line.substr(kind.size() + 1);
        } else if (kind == "call") {
            run.calls.push_back(line.substr(kind.size() + 1, line.size() - kind.size() - 2));
        } else {
            std::string error;
            long count = 0;
            words >> error >> count;
            run.counts[error] = count;
        }
    }
}

}  // namespace

std::string FaultPoint::text() const {
    return phase + ", call " + std::to_string(at) + ": " + error + (lasts ? " from then on" : "") +
           (made ? " though made" : "") + (old ? ", old file system" : "");
}

FaultRun runDriver(const std::vector<std::string>& steps, const FaultPoint& point) {
    std::ofstream(reportFile()).close();
    std::vector<std::string> environment = {
        "LD_PRELOAD=" + faultLibrary.path(),
        // The address sanitizer insists on being loaded first, before any preloaded library.
        "ASAN_OPTIONS=" + setting("ASAN_OPTIONS", "verify_asan_link_order=1") + ":verify_asan_link_order=0",
        // The thread sanitizer would make each of these many runs wait for a second at exit.
        "TSAN_OPTIONS=" + setting("TSAN_OPTIONS", "history_size=7") + ":atexit_sleep_ms=0",
        "VESK_FAULT_PHASE=" + point.phase,
        "VESK_FAULT_ERROR=" + point.error,
        "VESK_FAULT_AT=" + std::to_string(point.at),
        "VESK_FAULT_REPORT=" + reportFile().string(),
    };
    if (point.at == 0) {
        environment.emplace_back("VESK_FAULT_TRACE=1");
    }
    if (point.unordered) {
        environment.emplace_back("VESK_FAULT_UNORDERED=1");
    }
    if (point.lasts) {
        environment.emplace_back("VESK_FAULT_LASTS=1");
    }
    if (point.old) {
        environment.emplace_back("VESK_FAULT_OLD=1");
    }
    if (point.made) {
        environment.emplace_back("VESK_FAULT_MADE=1");
    }
    if (point.alike) {
        environment.emplace_back("VESK_FAULT_ALIKE=1");
    }
    if (!point.emptied.empty()) {
        environment.emplace_back("VESK_FAULT_EMPTIED=" + point.emptied);
    }
    std::vector<std::string> arguments = {testRoot().string(), testHome().string()};
    arguments.insert(arguments.end(), steps.begin(), steps.end());
    FaultRun run;
    run.program = runProgram(driver.path(), arguments, environment);
    run.told = nlohmann::json::parse(run.program.output, nullptr, false);
    if (run.told.is_discarded()) {
        run.told = nullptr;
    }
    readReport(run);
    return run;
}

std::vector<FaultPoint> pointsOf(const FaultRun& counted, const FaultPoint& like,
                                 const std::vector<std::string>& errors, std::size_t atMost) {
    std::vector<FaultPoint> points;
    for (const std::string& error : errors) {
        const auto count = counted.counts.find(error);
        for (long at = 1; count != counted.counts.end() && at <= count->second; ++at) {
            FaultPoint point = like;
            point.error = error;
            point.at = at;
            points.push_back(point);
        }
    }
    if (setting("VESK_FAULTS", "") != "all" && points.size() > atMost) {
        std::mt19937 random(static_cast<unsigned>(std::stoul(setting("VESK_FAULT_SEED", "20261121"))));
        std::shuffle(points.begin(), points.end(), random);
        points.resize(atMost);
    }
    return points;
}

void printPoints(const std::string& what, const std::map<std::string, long>& tried) {
    long sum = 0;
    std::printf("points: %s:", what.c_str());
    for (const auto& [error, count] : tried) {
        std::printf(" %s %ld", error.c_str(), count);
        sum += count;
    }
    std::printf(", together %ld\n", sum);
}

}  // namespace vesk::testing
