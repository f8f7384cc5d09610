// What rules have in common: listing folders, gathering entries, and making cards of them.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "platform/files/files.h"

namespace vesk::rules {

/// All of a card that is fixed: each rule has one of these for each of its cards. See Card for the fields.
struct CardDescription {
    const char* id;
    const char* title;
    const char* symbol;
    Bucket bucket;
    double confidence;
    double risk;
    const char* summary;
    const char* why;
};

/// Appends the card of these entries, unless all of them are empty.
void addCard(std::vector<Card>& cards, const CardDescription& description, std::vector<Entry> entries);

/// What a rule with at most one card returns.
std::vector<Card> cardOf(const CardDescription& description, std::vector<Entry> entries);

/// Appends an entry if there is one.
void add(std::vector<Entry>& entries, std::optional<Entry> entry);

/// The children of a folder in byte order of their names; none when it cannot be listed.
std::vector<FolderItem> childrenOf(const std::filesystem::path& folder, ListingDetail detail);

/// The same; a denial of permission also sets the probe's `blocked`.
std::vector<FolderItem> childrenOrBlocked(Probe& probe, const std::filesystem::path& folder, ListingDetail detail);

/// Whether an item was last changed before the cut-off. One without a date may be new.
bool changedBefore(Date cutOff, const std::optional<Date>& modified);

/// The same, and whether it was not opened since either. Not every file system keeps access dates: without one, the
/// change alone decides.
bool untouchedSince(Date cutOff, const ResourceValues& values);

/// A file name as a label: file names are bytes, what is shown is UTF-8.
std::string label(std::string_view fileName);

/// Whether a name is one of these, to the byte.
bool isAmong(std::string_view name, std::span<const std::string_view> names);

/// Whether a name starts with one of these, to the byte.
bool startsWithAny(std::string_view name, std::span<const std::string_view> prefixes);

/// What follows the last "." of a file name, "" for a name without one or with none but at its start.
std::string_view pathExtension(std::string_view fileName);

}  // namespace vesk::rules
