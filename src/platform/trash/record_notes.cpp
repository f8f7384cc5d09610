#include "platform/trash/record_notes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "platform/files/content.h"
#include "platform/files/moving.h"
#include "platform/trash/trash_info.h"
#include "platform/trash/trash_record.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

constexpr unsigned notesMode = 0700;
// Far more than a batch needs.
constexpr std::size_t mostNotes = std::size_t{64} << 20U;
// Ends each place and each text, neither of which can contain it.
constexpr char fieldEnd = '\0';

std::optional<std::string> takeField(std::string_view& text) {
    const std::size_t end = text.find(fieldEnd);
    if (end == std::string_view::npos) {
        return std::nullopt;  // truncated, or the end
    }
    std::string field(text.substr(0, end));
    text.remove_prefix(end + 1);
    return field;
}

// Up to that many bytes, which may be none.
std::string contentOf(int file, std::size_t atMost) {
    std::string content;
    readAll(file, atMost, content);
    return content;
}

// The place in the Trash of a record's item; empty if the path is not a record's.
fs::path itemOf(const fs::path& record) {
    const std::string name = record.filename().string();
    if (!record.is_absolute() || record.parent_path().filename() != trashInfoName || !name.ends_with(trashInfoSuffix)) {
        return {};
    }
    return record.parent_path().parent_path() / trashFilesName / name.substr(0, name.size() - trashInfoSuffix.size());
}

// Whether no other process has the file open and may be writing it. False if that is not known.
bool isOpenHereAlone(int file) {
#ifdef F_SETLEASE
    return fcntl(file, F_SETLEASE, F_WRLCK) == 0;
#else
    return false;
#endif
}

void takeBack(const fs::path& record, const std::string& text) {
    const fs::path item = itemOf(record);
    struct stat found {};
    if (item.empty() || lstat(item.c_str(), &found) == 0 || errno != ENOENT) {
        return;
    }
    const Descriptor file(open(record.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        return;
    }
    const std::string content = contentOf(file.get(), text.size() + 1);
    if (content == text || (text.starts_with(content) && isOpenHereAlone(file.get()))) {
        removeRecord(AT_FDCWD, record.string(), file);
    }
}

}  // namespace

RecordNotes::~RecordNotes() {
    if (file_) {
        unlink(path_.c_str());
    }
}

void RecordNotes::add(const fs::path& record, std::string_view text) {
    if (!std::exchange(isBegun_, true) && !path_.empty() && makeFolders(path_.parent_path(), notesMode) == 0) {
        file_ = Descriptor(open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600));
    }
    if (file_) {
        std::string note = record.string();
        note += fieldEnd;
        note += text;
        note += fieldEnd;
        writeAll(file_.get(), note);
    }
}

void takeBackNotedRecords(const fs::path& file) {
    const Descriptor opened(open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!opened) {
        return;
    }
    const std::string notes = contentOf(opened.get(), mostNotes);
    std::string_view rest = notes;
    while (const std::optional<std::string> record = takeField(rest)) {
        const std::optional<std::string> text = takeField(rest);
        if (!text) {
            break;
        }
        takeBack(*record, *text);
    }
    unlink(file.c_str());
}

}  // namespace vesk
