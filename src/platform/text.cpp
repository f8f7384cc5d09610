#include "platform/text.h"

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <array>

namespace vesk {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The bytes that may follow a lead byte first, and how many follow in all (The Unicode Standard, table 3-7).
struct LeadByte {
    int following;
    unsigned char lowest;
    unsigned char highest;
};

LeadByte leadByte(unsigned char byte) {
    if (byte < 0x80) {
        return {0, 0, 0};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {-1, 0, 0};
}

struct Sequence {
    std::size_t length;
    bool wellFormed;
};

// The well-formed sequence, or the maximal ill-formed subpart, that starts at `bytes`, which is not empty.
Sequence sequenceAt(std::string_view bytes) {
    const LeadByte lead = leadByte(static_cast<unsigned char>(bytes[0]));
    if (lead.following <= 0) {
        return {1, lead.following == 0};
    }
    const auto wanted = static_cast<std::size_t>(lead.following) + 1;
    for (std::size_t i = 1; i < wanted; ++i) {
        const auto lowest = i == 1 ? lead.lowest : static_cast<unsigned char>(0x80);
        const auto highest = i == 1 ? lead.highest : static_cast<unsigned char>(0xBF);
        if (i >= bytes.size() || static_cast<unsigned char>(bytes[i]) < lowest ||
            static_cast<unsigned char>(bytes[i]) > highest) {
            return {i, false};
        }
    }
    return {wanted, true};
}

QString fromUtf8(std::string_view bytes) {
    return QString::fromStdString(decodedUtf8(bytes));
}

// Calls `visit` with each user-perceived character of the text.
template <typename Visit>
void forEachCharacter(const QString& text, Visit visit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end >= 0; end = finder.toNextBoundary()) {
        visit(QStringView(text).mid(start, end - start));
        start = end;
    }
}

char32_t firstScalar(QStringView character) {
    const QChar first = character.front();
    if (first.isHighSurrogate() && character.size() > 1 && character[1].isLowSurrogate()) {
        return QChar::surrogateToUcs4(first, character[1]);
    }
    return first.unicode();
}

// Letters that Unicode counts as alphabetic though their category is a symbol's: the circled and squared ones.
bool isEnclosedLetter(char32_t scalar) {
    return (scalar >= 0x24B6 && scalar <= 0x24E9) || (scalar >= 0x1F130 && scalar <= 0x1F149) ||
           (scalar >= 0x1F150 && scalar <= 0x1F169) || (scalar >= 0x1F170 && scalar <= 0x1F189);
}

bool isLetterOrNumber(char32_t scalar) {
    return QChar::isLetterOrNumber(scalar) || isEnclosedLetter(scalar);
}

}  // namespace

std::string decodedUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Sequence sequence = sequenceAt(bytes);
        text += sequence.wellFormed ? bytes.substr(0, sequence.length) : replacementCharacter;
        bytes.remove_prefix(sequence.length);
    }
    return text;
}

bool isUtf8(std::string_view bytes) {
    return QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

std::string_view trimmed(std::string_view text, std::string_view blanks) {
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? "" : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

std::string lowercased(std::string_view text) {
    return fromUtf8(text).toLower().toStdString();
}

std::string withFirstCharacterUppercased(std::string_view text) {
    const QString whole = fromUtf8(text);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, whole);
    const qsizetype end = finder.toNextBoundary();
    return end < 0 ? whole.toStdString() : (whole.left(end).toUpper() + whole.mid(end)).toStdString();
}

std::string lettersAndNumbers(std::string_view text) {
    QString kept;
    forEachCharacter(fromUtf8(text), [&](QStringView character) {
        if (isLetterOrNumber(firstScalar(character))) {
            kept += character;
        }
    });
    return kept.normalized(QString::NormalizationForm_C).toStdString();
}

bool isUnsafeToShow(char32_t character) {
    struct Range {
        char32_t first;
        char32_t last;
    };
    // In the order of the code points; the bidirectional marks are 061C, 200E to 200F, 202A to 202E and 2066 to 2069.
    constexpr std::array<Range, 18> unsafe = {{{0x00, 0x1F},
                                               {0x7F, 0x9F},
                                               {0x034F, 0x034F},
                                               {0x061C, 0x061C},
                                               {0x115F, 0x1160},
                                               {0x17B4, 0x17B5},
                                               {0x180E, 0x180E},
                                               {0x200B, 0x200B},
                                               {0x200E, 0x200F},
                                               {0x2028, 0x202E},
                                               {0x2060, 0x206F},
                                               {0x3164, 0x3164},
                                               {0xFEFF, 0xFEFF},
                                               {0xFFA0, 0xFFA0},
                                               {0xFFF9, 0xFFFB},
                                               {0x1BCA0, 0x1BCA3},
                                               {0x1D173, 0x1D17A},
                                               {0xE0001, 0xE0001}}};
    return std::any_of(unsafe.begin(), unsafe.end(),
                       [&](Range range) { return character >= range.first && character <= range.last; });
}

std::string replacingUnsafe(std::string_view text, const std::function<std::string(std::string_view)>& replacement) {
    std::string safe;
    for (const uint number : fromUtf8(text).toUcs4()) {
        const auto scalar = static_cast<char32_t>(number);
        // Not QString::fromUcs4, which takes U+FEFF for a mark of byte order and drops it.
        const std::string character = QStringView(QChar::fromUcs4(scalar)).toString().toStdString();
        safe += isUnsafeToShow(scalar) ? replacement(character) : character;
    }
    return safe;
}

std::string showable(std::string_view text) {
    return replacingUnsafe(text, [](std::string_view /*character*/) { return std::string(replacementCharacter); });
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    forEachCharacter(fromUtf8(text), [&](QStringView) { ++count; });
    return count;
}

}  // namespace vesk
