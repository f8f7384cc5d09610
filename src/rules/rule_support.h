// Shared by the rules: listing folders, collecting entries, and making cards of them. Called on a rule's thread.
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

/// Appends a card with these entries, unless all are empty.
void addCard(std::vector<Card>& cards, const CardDescription& description, std::vector<Entry> entries);

/// The same as a list, for a rule with at most one card.
std::vector<Card> cardOf(const CardDescription& description, std::vector<Entry> entries);

/// How to offer a child of a place.
struct Offer {
    /// The entry's name.
    std::string name;
    /// The child's own dates, if it is offered for its age.
    ItemDates judgedBy = {};
};

/// Decides whether to offer a child; absent if not. Called in byte order of the names.
using Filter = std::function<std::optional<Offer>(const FolderItem&)>;

/// Lists a place and appends a measured entry for each child that the filter offers. A denied permission sets the
/// probe's `blocked`.
void addChildren(std::vector<Entry>& entries, Probe& probe, const std::filesystem::path& place, ListingDetail detail,
                 const Filter& filter);

/// The same for a place given relative to the home; returns the entries.
std::vector<Entry> childrenIn(Probe& probe, std::string_view placeInHome, ListingDetail detail, const Filter& filter);

/// The same for children already listed.
void addListed(std::vector<Entry>& entries, Probe& probe, const std::filesystem::path& place,
               const std::vector<FolderItem>& children, const Filter& filter);

/// The children of a folder in byte order of their names; empty if it cannot be listed.
std::vector<FolderItem> childrenOf(const std::filesystem::path& folder, ListingDetail detail);

/// The same; a denied permission also sets the probe's `blocked`.
std::vector<FolderItem> childrenOrBlocked(Probe& probe, const std::filesystem::path& folder, ListingDetail detail);

/// Whether an item was last changed before the cut-off; false without a date, since it may be new.
bool changedBefore(Date cutOff, const std::optional<Date>& modified);

/// Whether an item was neither changed nor opened since the cut-off. Not every file system keeps access dates; without
/// one, only the change counts.
bool untouchedSince(Date cutOff, const ResourceValues& values);

/// A file name for display: file names are bytes, labels are valid UTF-8.
std::string label(std::string_view fileName);

/// Whether a name is one of these. Compares bytes.
bool isAmong(std::string_view name, std::span<const std::string_view> names);

/// Whether a name starts with one of these. Compares bytes.
bool startsWithAny(std::string_view name, std::span<const std::string_view> prefixes);

/// What follows the last "." of a file name; empty if there is no "." after the first character.
std::string_view pathExtension(std::string_view fileName);

}  // namespace vesk::rules
