// The property list is read for one text at its top and by a reader that goes no deeper (Qt's stream reader for XML,
// Vesk's own for the other two forms), rather than into a tree of everything in it: any application can be installed,
// and a list nested some ten thousand deep, or one whose arrays hold each other many times over, must not end the scan.

#include "platform/system/bundle.h"

#include <QByteArray>
#include <QXmlStreamReader>
#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/files/reading.h"
#include "platform/system/old_property_list.h"

namespace vesk {

namespace {

constexpr std::string_view identifierKey = "CFBundleIdentifier";
constexpr std::array<const char*, 4> places = {"Contents/Info.plist", "Support Files/Info.plist",
                                               "Resources/Info.plist", "Info.plist"};
constexpr std::int64_t largestRead = 16'000'000;

// Reads on to the top element. A property list declares no entities; with some, a few bytes could stand for thousands,
// over and over.
bool readTop(QXmlStreamReader& reader) {
    while (!reader.atEnd() && reader.entityDeclarations().isEmpty()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            return true;
        }
    }
    return false;
}

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Blank lines before the declaration and bytes after the end are errors to an XML reader, but not to the system's own
// reader of such lists.
std::string_view listAlone(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    constexpr std::string_view lastTag = "</plist>";
    if (const std::size_t end = bytes.rfind(lastTag); end != std::string_view::npos) {
        bytes = bytes.substr(0, end + lastTag.size());
    }
    bytes.remove_prefix(bytes.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    return bytes;
}

// The XML form: <plist><dict><key>name</key><string>text</string>...</dict></plist>, whatever follows.
std::optional<std::string> identifierInXml(std::string_view list) {
    const std::string_view bytes = listAlone(list);
    QXmlStreamReader reader(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (!readTop(reader) || reader.name() != u"plist" || !reader.readNextStartElement() || reader.name() != u"dict") {
        return std::nullopt;
    }
    std::optional<std::string> identifier;
    while (reader.readNextStartElement()) {
        if (reader.name() != u"key") {
            reader.skipCurrentElement();
            continue;
        }
        const bool wanted = reader.readElementText() ==
                            QLatin1String(identifierKey.data(), static_cast<qsizetype>(identifierKey.size()));
        if (!reader.readNextStartElement()) {
            break;
        }
        if (wanted && reader.name() == u"string") {
            identifier = reader.readElementText().toStdString();
        } else {
            reader.skipCurrentElement();
        }
    }
    return reader.hasError() ? std::nullopt : identifier;
}

// The binary form, version 00: a header, objects, a table of where each object starts, and 32 bytes that tell the
// sizes of the numbers used and where the table and the top object are. All numbers are big-endian.
class BinaryPropertyList {
public:
    explicit BinaryPropertyList(std::string_view bytes) : bytes_(bytes) {}

    std::optional<std::string> textAtTop(std::string_view key) {
        if (!readTrailer()) {
            return std::nullopt;
        }
        const std::optional<Object> top = objectAt(topObject_);
        if (!top || top->type != dictionaryType) {
            return std::nullopt;
        }
        // All keys' numbers come first, then all values'.
        for (std::uint64_t i = 0; i < top->count; ++i) {
            const auto keyNumber = number(top->content + i * referenceSize_, referenceSize_);
            const auto valueNumber = number(top->content + (top->count + i) * referenceSize_, referenceSize_);
            if (!keyNumber || !valueNumber) {
                return std::nullopt;
            }
            if (text(*keyNumber) == key) {
                return text(*valueNumber);
            }
        }
        return std::nullopt;
    }

private:
    static constexpr unsigned integerType = 0x1;
    static constexpr unsigned asciiType = 0x5;
    static constexpr unsigned utf16Type = 0x6;
    static constexpr unsigned dictionaryType = 0xD;
    static constexpr unsigned countFollows = 0xF;
    static constexpr std::size_t trailerSize = 32;

    struct Object {
        unsigned type = 0;
        std::uint64_t count = 0;
        // Where its content starts.
        std::uint64_t content = 0;
    };

    // The number of `size` bytes at a place; absent when that is not inside the bytes.
    std::optional<std::uint64_t> number(std::uint64_t place, std::uint64_t size) const {
        if (size == 0 || size > 8 || size > bytes_.size() || place > bytes_.size() - size) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (const char byte : bytes_.substr(place, size)) {
            value = value << 8U | static_cast<unsigned char>(byte);
        }
        return value;
    }

    bool readTrailer() {
        if (bytes_.size() < trailerSize) {
            return false;
        }
        const std::uint64_t trailer = bytes_.size() - trailerSize;
        offsetSize_ = number(trailer + 6, 1).value_or(0);
        referenceSize_ = number(trailer + 7, 1).value_or(0);
        objectCount_ = number(trailer + 8, 8).value_or(0);
        topObject_ = number(trailer + 16, 8).value_or(0);
        offsetTable_ = number(trailer + 24, 8).value_or(0);
        // No table is longer than the file, which also keeps the sums below from wrapping around.
        return objectCount_ < bytes_.size() && offsetTable_ < bytes_.size() && offsetSize_ <= 8 && referenceSize_ <= 8;
    }

    std::optional<Object> objectAt(std::uint64_t which) const {
        if (which >= objectCount_) {
            return std::nullopt;
        }
        const auto place = number(offsetTable_ + which * offsetSize_, offsetSize_);
        const auto marker = place ? number(*place, 1) : std::nullopt;
        if (!marker) {
            return std::nullopt;
        }
        Object object{static_cast<unsigned>(*marker >> 4U), *marker & 0xFU, *place + 1};
        if (object.count == countFollows) {
            const auto countMarker = number(object.content, 1);
            if (!countMarker || *countMarker >> 4U != integerType) {
                return std::nullopt;
            }
            const std::uint64_t size = std::uint64_t{1} << (*countMarker & 0xFU);
            const auto count = number(object.content + 1, size);
            if (!count || *count > bytes_.size()) {
                return std::nullopt;
            }
            object.count = *count;
            object.content += 1 + size;
        }
        return object;
    }

    std::optional<std::string> text(std::uint64_t which) const {
        const std::optional<Object> object = objectAt(which);
        if (!object || (object->type != asciiType && object->type != utf16Type)) {
            return std::nullopt;
        }
        const std::uint64_t size = object->type == asciiType ? object->count : object->count * 2;
        if (size > bytes_.size() || object->content > bytes_.size() - size) {
            return std::nullopt;
        }
        if (object->type == asciiType) {
            const std::string_view ascii = bytes_.substr(object->content, size);
            return isAscii(ascii) ? std::optional<std::string>(ascii) : std::nullopt;
        }
        QString decoded;
        for (std::uint64_t i = 0; i < object->count; ++i) {
            decoded += QChar(static_cast<char16_t>(*number(object->content + i * 2, 2)));
        }
        return decoded.toStdString();
    }

    std::string_view bytes_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t topObject_ = 0;
    std::uint64_t offsetTable_ = 0;
};

}  // namespace

std::optional<std::string> bundleIdentifier(const std::filesystem::path& bundle) {
    for (const char* place : places) {
        if (const std::optional<std::string> bytes = readWithoutTrace(bundle / place, largestRead)) {
            return bundleIdentifierIn(*bytes);
        }
    }
    return std::nullopt;
}

std::optional<std::string> bundleIdentifierIn(std::string_view informationPropertyList) {
    if (informationPropertyList.starts_with("bplist00")) {
        return BinaryPropertyList(informationPropertyList).textAtTop(identifierKey);
    }
    const std::optional<std::string> identifier = identifierInXml(informationPropertyList);
    return identifier ? identifier : textInOldPropertyList(informationPropertyList, identifierKey);
}

}  // namespace vesk
