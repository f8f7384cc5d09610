#include "platform/text.h"

#include <gtest/gtest.h>

#include <string>

namespace vesk {
namespace {

std::string replacements(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "\xEF\xBF\xBD";
    }
    return text;
}

TEST(DecodedUtf8, KeepsWhatIsWellFormed) {
    for (const char* text : {"", "plain", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBF\xBF",
                             "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(decodedUtf8(text), text);
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    EXPECT_EQ(decodedUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(DecodedUtf8, ReplacesEachMaximalIllFormedSubpartOnce) {
    const struct {
        std::string bytes;
        std::string text;
    } cases[] = {
        {"\xE2\x82", replacements(1)},
        {"\xE2\x82"
         "a",
         replacements(1) + "a"},
        {"\xFF\xFE", replacements(2)},
        {"\x80", replacements(1)},
        {"\xC0\xAF", replacements(2)},          // overlong
        {"\xE0\x80\xAF", replacements(3)},      // overlong
        {"\xED\xA0\x80", replacements(3)},      // a surrogate
        {"\xF4\x90\x80\x80", replacements(4)},  // beyond the last scalar
        {"\xF0\x9F\x98", replacements(1)},
        {"\xF0\x9F\x98\xF0\x9F\x98\x80", replacements(1) + "\xF0\x9F\x98\x80"},
        {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",  // the standard's own example
         "a" + replacements(3) + "b" + replacements(1) + "c" + replacements(2) + "d"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(decodedUtf8(c.bytes), c.text);
        EXPECT_FALSE(isUtf8(c.bytes));
    }
}

TEST(Text, LowerCaseDependsOnNoLanguage) {
    EXPECT_EQ(lowercased("TITLE I"), "title i");
    EXPECT_EQ(lowercased("\xC3\x84\xC3\x96"), "\xC3\xA4\xC3\xB6");
    EXPECT_EQ(lowercased("\xC4\xB0"), "i\xCC\x87");  // a dotted capital I
}

TEST(Text, UpperCaseTakesTheFirstCharacterAlone) {
    EXPECT_EQ(withFirstCharacterUppercased(""), "");
    EXPECT_EQ(withFirstCharacterUppercased("acme tools"), "Acme tools");
    EXPECT_EQ(withFirstCharacterUppercased("\xC3\xA9t\xC3\xA9"), "\xC3\x89t\xC3\xA9");
    EXPECT_EQ(withFirstCharacterUppercased("e\xCC\x81t"), "E\xCC\x81t");
    EXPECT_EQ(withFirstCharacterUppercased("1a"), "1a");
}

TEST(Text, CountsUserPerceivedCharacters) {
    EXPECT_EQ(characterCount(""), 0U);
    EXPECT_EQ(characterCount("abc"), 3U);
    EXPECT_EQ(characterCount("e\xCC\x81"
                             "a"),
              2U);
    EXPECT_EQ(characterCount("\xF0\x9F\x98\x80"), 1U);
}

TEST(UnsafeToShow, AreControlsDirectionMarksAndWhatNobodySees) {
    for (const char32_t unsafe :
         {U'\0',     U'\n',     U'\x1B',   U'\x7F',   U'\x85',   U'\x9B',   U'\x9F',       U'\u061C',
          U'\u200B', U'\u200E', U'\u200F', U'\u2028', U'\u2029', U'\u202A', U'\u202E',     U'\u2060',
          U'\u2066', U'\u2069', U'\u206F', U'\u3164', U'\uFEFF', U'\uFFF9', U'\U0001D173', U'\U000E0001'}) {
        EXPECT_TRUE(isUnsafeToShow(unsafe)) << static_cast<unsigned>(unsafe);
    }
    for (const char32_t safe : {U' ', U'~', U'\u00A0', U'\u00E9', U'\u0301', U'\u0600', U'\u200C', U'\u200D', U'\u2027',
                                U'\u202F', U'\uFE0F', U'\uFFFD', U'\U0001F600', U'\U000E0067'}) {
        EXPECT_FALSE(isUnsafeToShow(safe)) << static_cast<unsigned>(safe);
    }
}

TEST(UnsafeToShow, AreReplacedAndNothingElse) {
    const auto length = [](std::string_view character) { return "<" + std::to_string(character.size()) + ">"; };
    EXPECT_EQ(replacingUnsafe("", length), "");
    EXPECT_EQ(replacingUnsafe("caf\xC3\xA9 \xF0\x9F\x98\x80", length), "caf\xC3\xA9 \xF0\x9F\x98\x80");
    EXPECT_EQ(replacingUnsafe("a\x1B[m\xE2\x80\xAEgpj\xEF\xBB\xBF", length), "a<1>[m<3>gpj<3>");
    EXPECT_EQ(replacingUnsafe("\xF0\x9D\x85\xB3x", length), "<4>x");
    EXPECT_EQ(replacingUnsafe("bad\xFF", length), "bad\xEF\xBF\xBD");
    EXPECT_EQ(replacingUnsafe(std::string("a\0b", 3), length), "a<1>b");
    EXPECT_EQ(showable("a\nb\xE2\x80\xAE\xC3\xA9"), "a" + replacements(1) + "b" + replacements(1) + "\xC3\xA9");
}

}  // namespace
}  // namespace vesk
