// What the platform knows of Unicode text. All functions take and return UTF-8; bytes that are not UTF-8 are read as
// replacement characters. None depends on the language the user has set. Callable from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vesk {

/// The bytes as valid UTF-8, with one U+FFFD for each maximal ill-formed subpart
/// (The Unicode Standard, section 3.9, "U+FFFD Substitution of Maximal Subparts").
std::string decodedUtf8(std::string_view bytes);

/// Whether the bytes are valid UTF-8 as they stand.
bool isUtf8(std::string_view bytes);

/// Lower case, by Unicode's full mappings.
std::string lowercased(std::string_view text);

/// The text with its first user-perceived character in upper case.
std::string withFirstCharacterUppercased(std::string_view text);

/// The text reduced to the user-perceived characters that are letters or numbers, in Unicode's composed form (NFC),
/// so that canonically equivalent texts come out equal. The first scalar of a character decides.
std::string lettersAndNumbers(std::string_view text);

/// The number of user-perceived characters.
std::size_t characterCount(std::string_view text);

}  // namespace vesk
