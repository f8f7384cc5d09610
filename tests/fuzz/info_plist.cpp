// An application's Info.plist, which anybody may have written: it is read or rejected, and a well-formed one is read
// correctly.

#include "fuzz.h"
#include "platform/system/bundle.h"
#include "platform/text.h"

namespace {

// A text that XML can hold: no control characters, and none that an XML reader changes.
std::string holdable(const std::string& bytes) {
    std::string text;
    for (const char c : vesk::decodedUtf8(bytes.substr(0, 200))) {
        if (static_cast<unsigned char>(c) >= 0x20) {
            text += c;
        }
    }
    // U+FFFE and U+FFFF are not characters in XML.
    for (const char* const none : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (std::size_t at = text.find(none); at != std::string::npos; at = text.find(none)) {
            text.erase(at, 3);
        }
    }
    return text;
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        result += c == '<' ? "&lt;" : c == '&' ? "&amp;" : c == '>' ? "&gt;" : std::string(1, c);
    }
    return result;
}

std::string xmlWith(const std::string& identifier) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>Other</key><array><string>x"
           "</string></array><key>CFBundleIdentifier</key><string>" +
           escaped(identifier) + "</string></dict></plist>";
}

std::string oldWith(const std::string& identifier) {
    std::string result = "{ Other = (x, {a = b;}, <0f>); /* c */ CFBundleIdentifier = \"";
    for (const char c : identifier) {
        result += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    }
    return result + "\"; }";
}

// A binary Info.plist: a dictionary with one key and one ASCII text of at most 200 bytes.
std::string binaryWith(const std::string& identifier) {
    std::string bytes = "bplist00";
    const auto text = [&](const std::string& value) {
        const char place = static_cast<char>(bytes.size());
        bytes += '\x5F';
        bytes += '\x10';
        bytes += static_cast<char>(value.size());
        bytes += value;
        return place;
    };
    const char top = static_cast<char>(bytes.size());
    bytes += std::string("\xD1\x01\x02", 3);
    const char key = text("CFBundleIdentifier");
    const char value = text(identifier);
    const std::size_t table = bytes.size();
    bytes += top;
    bytes += key;
    bytes += value;
    bytes += std::string(6, '\0') + "\x01\x01" + std::string(7, '\0') + '\x03' + std::string(8, '\0');
    bytes += std::string(6, '\0') + static_cast<char>(table >> 8U) + static_cast<char>(table & 0xFFU);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = vesk::testing::bytesOf(data, size);
    const auto identifier = vesk::bundleIdentifierIn(bytes);
    if (identifier) {
        VESK_HOLDS(vesk::isUtf8(*identifier));
        VESK_HOLDS(identifier->size() <= 3 * bytes.size());
        VESK_HOLDS(vesk::bundleIdentifierIn(bytes) == identifier);
    }
    const std::string text = holdable(bytes);
    VESK_HOLDS(vesk::bundleIdentifierIn(xmlWith(text)) == text);
    VESK_HOLDS(vesk::bundleIdentifierIn("\r\n \n" + xmlWith(text) + text) == text);
    VESK_HOLDS(vesk::bundleIdentifierIn(oldWith(text)) == text);
    std::string ascii;
    for (const char c : text) {
        ascii += static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : std::string();
    }
    VESK_HOLDS(vesk::bundleIdentifierIn(binaryWith(ascii)) == ascii);
    return 0;
}
