// What rules have in common: listing folders, gathering entries, and making cards of them.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "core/scanner.h"
#include "platform/files/files.h"

namespace vesk::rules {

/// Appends the card of these entries, unless all of them are empty.
void addCard(std::vector<Card>& cards, const CardDescription& description, std::vector<Entry> entries);

/// What a rule with at most one card returns.
std::vector<Card> cardOf(const CardDescription& description, std::vector<Entry> entries);

/// A child of a place that is to be offered.
struct Offer {
    /// The entry's name.
    std::string name;
    /// The child's own dates, where its age is why it is offered.
    ItemDates judgedBy = {};
};

/// What of a place's children is offered: asked for each in byte order of their names; absent for one that is left.
using Filter = std::function<std::optional<Offer>(const FolderItem&)>;

/// What rules do with a place: lists it, and appends an entry for each child that the filter takes, measured whole. A
/// denial of permission sets the probe's `blocked`.
void addChildren(std::vector<Entry>& entries, Probe& probe, const std::filesystem::path& place, ListingDetail detail,
                 const Filter& filter);

/// The same for one place of the home, as all the entries there are.
std::vector<Entry> childrenIn(Probe& probe, std::string_view placeInHome, ListingDetail detail, const Filter& filter);

/// The same for children that a rule has listed already.
void addListed(std::vector<Entry>& entries, Probe& probe, const std::filesystem::path& place,
               const std::vector<FolderItem>& children, const Filter& filter);

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
