// Unicode text functions. They take and return UTF-8, read invalid bytes as replacement characters, and do not depend
// on the user's language. Callable from any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vesk {

/// The bytes as valid UTF-8, with one U+FFFD for each maximal ill-formed subpart
/// (The Unicode Standard, section 3.9, "U+FFFD Substitution of Maximal Subparts").
std::string decodedUtf8(std::string_view bytes);

/// Whether the bytes are valid UTF-8.
bool isUtf8(std::string_view bytes);

/// The text without these characters at its start and end.
std::string_view trimmed(std::string_view text, std::string_view blanks = " \t");

/// Lower case, by Unicode's full mappings.
std::string lowercased(std::string_view text);

/// The text with its first user-perceived character in upper case.
std::string withFirstCharacterUppercased(std::string_view text);

/// The user-perceived characters that are letters or numbers, in Unicode's composed form (NFC), so that canonically
/// equivalent texts give equal results. A character's first scalar decides.
std::string lettersAndNumbers(std::string_view text);

/// Whether a character in a name is unsafe to show: control characters, line and paragraph separators, bidirectional
/// marks, which reverse the text beside them, and invisible characters. Invisible characters that words and emoji need
/// are safe: joiners, variation selectors, tags.
bool isUnsafeToShow(char32_t character);

/// The text with each unsafe character replaced by what `replacement` returns for it, both in UTF-8.
std::string replacingUnsafe(std::string_view text, const std::function<std::string(std::string_view)>& replacement);

/// The text with U+FFFD for each unsafe character.
std::string showable(std::string_view text);

/// The number of user-perceived characters.
std::size_t characterCount(std::string_view text);

}  // namespace vesk
