#include "state/run_report.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/text.h"

namespace vesk {

namespace {

constexpr std::size_t mostLines = 5;

std::string_view reason(TrashState state) {
    switch (state) {
        case TrashState::placeTaken:
            return "something else is in its place now";
        case TrashState::denied:
            return "Vesk may not put it back there";
        case TrashState::failing:
            return "it cannot be put back at the moment";
        case TrashState::gone:
            return "no longer in the Trash";
        case TrashState::ready:
        case TrashState::back:
            break;
    }
    return {};
}

std::string lineOf(const TrashedItem& item, TrashState state) {
    return showable(item.original.filename().string()).append(": ").append(reason(state));
}

}  // namespace

std::string RunReport::summary() const {
    const std::size_t all = inTrash + back + gone;
    const std::size_t away = all - back;
    if (away == 0) {
        return "All items are back where they were.";
    }
    const std::string rest =
        back > 0 ? std::to_string(back) + (back == 1 ? " item is back. " : " items are back. ") : "";
    const std::string still = std::to_string(inTrash) + (inTrash == 1 ? " item is" : " items are") + " in the Trash";
    if (gone == 0) {
        return rest + still + ".";
    }
    if (inTrash == 0) {
        return rest + std::to_string(gone) + (gone == 1 ? " item is" : " items are") + " no longer in the Trash.";
    }
    return rest + still + ", " + std::to_string(gone) + " no longer.";
}

RunReport reportOn(const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested) {
    RunReport report;
    std::vector<std::string> goneLines;
    std::size_t told = 0;
    for (const TrashedItem& item : items) {
        if (stopRequested()) {
            break;
        }
        const TrashState state = stateInTrash(item);
        report.back += state == TrashState::back ? 1 : 0;
        report.gone += state == TrashState::gone ? 1 : 0;
        report.inTrash += state != TrashState::back && state != TrashState::gone ? 1 : 0;
        if (reason(state).empty()) {
            continue;
        }
        ++told;
        std::vector<std::string>& lines = state == TrashState::gone ? goneLines : report.lines;
        if (lines.size() < mostLines) {
            lines.push_back(lineOf(item, state));
        }
    }
    const std::size_t room = mostLines - report.lines.size();
    goneLines.resize(std::min(goneLines.size(), room));
    std::move(goneLines.begin(), goneLines.end(), std::back_inserter(report.lines));
    report.more = told - report.lines.size();
    return report;
}

}  // namespace vesk
