#include "platform/system/key_file.h"

#include <algorithm>

#include "platform/text.h"

namespace vesk {

namespace {

constexpr std::string_view keyFileBlanks = " \t\r";

}  // namespace

std::vector<KeyFileLine> keyFileLines(std::string_view text) {
    std::vector<KeyFileLine> lines;
    std::string group;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmed(text.substr(0, end), keyFileBlanks);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('[') && line.ends_with(']')) {
            group = line.substr(1, line.size() - 2);
        } else if (const std::size_t equals = line.find('='); equals != std::string_view::npos && line[0] != '#') {
            lines.push_back({group, std::string(trimmed(line.substr(0, equals), keyFileBlanks)),
                             std::string(trimmed(line.substr(equals + 1), keyFileBlanks))});
        }
    }
    return lines;
}

std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key) {
    for (KeyFileLine& line : keyFileLines(text)) {
        if (line.group == group && line.key == key) {
            return std::move(line.value);
        }
    }
    return std::nullopt;
}

}  // namespace vesk
