#include "state/receipts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <system_error>
#include <utility>

#include "platform/files/files.h"
#include "platform/files/moving.h"
#include "platform/system/preference_files.h"

namespace vesk {

namespace {

constexpr std::string_view firstLine = "vesk receipt 1\n";
constexpr std::string_view folderKey = "folder ";
constexpr char nothing = '-';

constexpr std::array<std::pair<FileType, std::string_view>, 4> typeNames = {{
    {FileType::file, "file"},
    {FileType::folder, "folder"},
    {FileType::link, "link"},
    {FileType::other, "other"},
}};

void addNumber(std::string& text, const std::optional<std::uint64_t>& number) {
    text += ' ';
    text += number ? std::to_string(*number) : std::string(1, nothing);
}

void addDate(std::string& text, const std::optional<Date>& date) {
    text += ' ';
    text += date ? std::to_string(date->time_since_epoch().count()) : std::string(1, nothing);
}

void addIdentity(std::string& text, const LastingIdentity& identity) {
    const auto* const name = std::find_if(typeNames.begin(), typeNames.end(),
                                          [&](const auto& known) { return known.first == identity.type; });
    text += name->second;
    addNumber(text, identity.inode);
    addDate(text, identity.made);
}

// Reads the fields of a line, which are separated by spaces.
class Fields {
public:
    explicit Fields(std::string_view line) : line_(line) {}

    bool take(std::optional<std::uint64_t>& number) { return takeNumber(number); }

    bool take(std::optional<Date>& date) {
        std::optional<std::int64_t> count;
        if (!takeNumber(count)) {
            return false;
        }
        date = count ? std::optional(Date(std::chrono::nanoseconds(*count))) : std::nullopt;
        return true;
    }

    bool take(LastingIdentity& identity) {
        const std::optional<std::string_view> field = next();
        const auto* const known =
            std::find_if(typeNames.begin(), typeNames.end(), [&](const auto& type) { return type.second == field; });
        if (known == typeNames.end()) {
            return false;
        }
        identity.type = known->first;
        return take(identity.inode) && take(identity.made);
    }

    bool areTaken() const { return !line_; }

private:
    std::optional<std::string_view> next() {
        if (!line_) {
            return std::nullopt;
        }
        const std::size_t end = line_->find(' ');
        const std::string_view field = line_->substr(0, end);
        line_ = end == std::string_view::npos ? std::nullopt : std::optional(line_->substr(end + 1));
        return field;
    }

    template <typename Number>
    bool takeNumber(std::optional<Number>& number) {
        const std::optional<std::string_view> field = next();
        number.reset();
        if (!field || *field == std::string_view(&nothing, 1)) {
            return field.has_value();
        }
        const char* const start = field->data();
        const char* const end = start + field->size();
        const auto read = std::from_chars(start, end, number.emplace());
        return read.ec == std::errc() && read.ptr == end;
    }

    std::optional<std::string_view> line_;
};

bool takeItem(std::string_view line, std::optional<TrashedIdentity>& item) {
    if (line == std::string_view(&nothing, 1)) {
        return true;
    }
    Fields fields(line);
    TrashedIdentity& identity = item.emplace();
    if (!fields.take(identity.item)) {
        return false;
    }
    return fields.areTaken() ||
           (fields.take(identity.record.emplace()) && fields.take(identity.recorded) && fields.areTaken());
}

bool takeFolder(std::string_view line, std::optional<LastingIdentity>& folder) {
    if (!line.starts_with(folderKey)) {
        return false;
    }
    line.remove_prefix(folderKey.size());
    if (line == std::string_view(&nothing, 1)) {
        return true;
    }
    Fields fields(line);
    return fields.take(folder.emplace()) && fields.areTaken();
}

// Removes and returns the first line, without its line feed; absent if it has none.
std::optional<std::string_view> takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

}  // namespace

std::string encodeReceipt(const StoredReceipt& receipt) {
    std::string text(firstLine);
    text += folderKey;
    if (receipt.folder) {
        addIdentity(text, *receipt.folder);
    } else {
        text += nothing;
    }
    text += '\n';
    for (const std::optional<TrashedIdentity>& item : receipt.items) {
        if (item) {
            addIdentity(text, item->item);
        } else {
            text += nothing;
        }
        if (item && item->record) {
            text += ' ';
            addIdentity(text, *item->record);
            addDate(text, item->recorded);
        }
        text += '\n';
    }
    return text;
}

std::optional<StoredReceipt> decodeReceipt(std::string_view bytes) {
    if (!bytes.starts_with(firstLine)) {
        return std::nullopt;
    }
    bytes.remove_prefix(firstLine.size());
    StoredReceipt receipt;
    const std::optional<std::string_view> folder = takeLine(bytes);
    if (!folder || !takeFolder(*folder, receipt.folder)) {
        return std::nullopt;
    }
    while (!bytes.empty()) {
        const std::optional<std::string_view> line = takeLine(bytes);
        if (!line || !takeItem(*line, receipt.items.emplace_back())) {
            return std::nullopt;
        }
    }
    return receipt;
}

bool Receipts::write(const Uuid& run, const Receipt& receipt) const {
    constexpr unsigned ownerOnly = 0700;
    if (makeFolders(folder_, ownerOnly) != 0) {
        return false;
    }
    return writePreferenceFile(folder_, run.text(), encodeReceipt({lastingIdentity(folder_), receipt}));
}

Receipt Receipts::read(const Uuid& run, std::size_t moves) const {
    const std::optional<std::string> bytes = readPreferenceFile(folder_, run.text()).bytes;
    std::optional<StoredReceipt> stored = bytes ? decodeReceipt(*bytes) : std::nullopt;
    const std::optional<LastingIdentity> folder = lastingIdentity(folder_);
    const bool isCopy = stored && stored->folder && folder && !mayBeSame(*stored->folder, *folder);
    return stored && !isCopy && stored->items.size() == moves ? std::move(stored->items) : Receipt(moves);
}

void Receipts::removeAllBut(const std::vector<HistoryEntry>& runs) const {
    for (const FolderItem& item : listFolder(folder_, ListingDetail::kinds).items) {
        // The temporary file of an interrupted write has a longer name that starts with the run's id.
        const std::optional<Uuid> run = Uuid::parse(item.name.substr(0, Uuid().text().size()));
        if (run && std::none_of(runs.begin(), runs.end(), [&](const HistoryEntry& entry) { return entry.id == run; })) {
            removePreferenceFile(folder_, item.name);
        }
    }
}

std::vector<TrashedItem> trashedItems(const std::vector<HistoryEntry::Move>& moves, Date cleaned,
                                      const Receipt& receipt) {
    std::vector<TrashedItem> items;
    items.reserve(moves.size());
    for (std::size_t i = 0; i < moves.size(); ++i) {
        items.push_back({moves[i].trashed, moves[i].original, cleaned, receipt.at(i)});
    }
    return items;
}

}  // namespace vesk
