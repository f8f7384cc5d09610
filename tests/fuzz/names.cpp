// Scanner::normalize and Scanner::pretty accept any bytes.

#include <QString>
#include <algorithm>

#include "core/scanner.h"
#include "fuzz.h"
#include "platform/text.h"

namespace {

// An equivalent spelling of a text, as another file system or program may write it.
std::string spelled(const std::string& text, QString::NormalizationForm form) {
    return QString::fromStdString(text).normalized(form).toStdString();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = vesk::testing::bytesOf(data, size);
    const std::string text = vesk::decodedUtf8(bytes);

    const std::string normal = vesk::Scanner::normalize(bytes);
    VESK_HOLDS(vesk::isUtf8(normal));
    VESK_HOLDS(normal.size() <= 8 * bytes.size());
    VESK_HOLDS(vesk::Scanner::normalize(text) == normal);
    VESK_HOLDS(vesk::Scanner::normalize(spelled(text, QString::NormalizationForm_C)) ==
               vesk::Scanner::normalize(spelled(text, QString::NormalizationForm_D)));
    VESK_HOLDS(spelled(normal, QString::NormalizationForm_C) == normal);
    VESK_HOLDS(vesk::characterCount(bytes) <= text.size());

    const std::string pretty = vesk::Scanner::pretty(bytes);
    VESK_HOLDS(pretty.empty() == bytes.empty());
    if (pretty != bytes) {
        // One part of an identifier with dots, with only its first character changed.
        VESK_HOLDS(std::count(bytes.begin(), bytes.end(), '.') >= 2);
        VESK_HOLDS(pretty.find('.') == std::string::npos && vesk::isUtf8(pretty));
        VESK_HOLDS(vesk::lowercased(pretty).size() <= 8 * bytes.size());
    }
    return 0;
}
