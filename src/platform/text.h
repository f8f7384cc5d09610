// What the platform knows of Unicode text. All texts taken and returned are UTF-8; bytes that are not UTF-8 are read as
// replacement characters. None depends on the language the user has set. Callable from any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vesk {

/// The bytes as valid UTF-8, with one U+FFFD for each maximal ill-formed subpart
/// (The Unicode Standard, section 3.9, "U+FFFD Substitution of Maximal Subparts").
std::string decodedUtf8(std::string_view bytes);

/// Whether the bytes are valid UTF-8 as they stand.
bool isUtf8(std::string_view bytes);

/// The text without these characters at its start and end.
std::string_view trimmed(std::string_view text, std::string_view blanks = " \t");

/// Lower case, by Unicode's full mappings.
std::string lowercased(std::string_view text);

/// The text with its first user-perceived character in upper case.
std::string withFirstCharacterUppercased(std::string_view text);

/// The text reduced to the user-perceived characters that are letters or numbers, in Unicode's composed form (NFC),
/// so that canonically equivalent texts come out equal. The first scalar of a character decides.
std::string lettersAndNumbers(std::string_view text);

/// Whether a character must not be shown as it stands in a name: what is obeyed rather than shown (control characters,
/// separators of lines and paragraphs), what turns round the text beside it (the bidirectional marks), and what nobody
/// sees. Invisible characters that words and emoji are spelled with stay: the joiners, variation selectors, tags.
bool isUnsafeToShow(char32_t character);

/// The text with each such character replaced by what `replacement` gives for it; both are handed over as UTF-8.
std::string replacingUnsafe(std::string_view text, const std::function<std::string(std::string_view)>& replacement);

/// The text with U+FFFD for each such character.
std::string showable(std::string_view text);

/// The number of user-perceived characters.
std::size_t characterCount(std::string_view text);

}  // namespace vesk
