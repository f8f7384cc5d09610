// Reading the identifier of an application's bundle.

#include "platform/system/bundle.h"

#include <random>

#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;

using Bundle = TemporaryHome;

// Written by another program: {CFBundleName: Tool, CFBundleIdentifier: com.example.tool, LSMin: [10.0, {a: 1}]}.
constexpr std::string_view binaryAscii =
    "62706c6973743030d30102030405065f1012434642756e646c654964656e7469666965725c434642756e646c654e616d6555"
    "4c534d696e5f1010636f6d2e6578616d706c652e746f6f6c54546f6f6ca207085431302e30d1090a51611001080f2431374a"
    "4f52575a5c0000000000000101000000000000000b0000000000000000000000000000005e";
// The same with {CFBundleIdentifier: com.exämple.tööl, Z: true}, whose text is held as UTF-16.
constexpr std::string_view binaryUtf16 =
    "62706c6973743030d2010203045f1012434642756e646c654964656e746966696572515a6f10100063006f006d002e006500"
    "7800e4006d0070006c0065002e007400f600f6006c09080d2224470000000000000101000000000000000500000000000000"
    "000000000000000048";
// The same with {CFBundleIdentifier: 17}.
constexpr std::string_view binaryNumber =
    "62706c6973743030d101025f1012434642756e646c654964656e7469666965721011080b2000000000000001010000000000"
    "00000300000000000000000000000000000022";

std::string bytesOfHex(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

std::string xml(const std::string& inside) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">" +
           inside + "</plist>\n";
}

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

// ASCII in two bytes a character, the lower one first.
std::string utf16(std::string_view ascii) {
    std::string bytes;
    for (const char character : ascii) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

// A number in `size` bytes, the most significant first.
std::string bigEndian(std::size_t number, int size) {
    std::string bytes;
    for (int i = size - 1; i >= 0; --i) {
        bytes += static_cast<char>(number >> (8 * i));
    }
    return bytes;
}

// A binary list of arrays, each holding the next one as often as told.
std::string nestedBinary(std::size_t levels, int copies) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (std::size_t i = 0; i < levels; ++i) {
        offsets += bigEndian(bytes.size(), 4);
        const bool last = i + 1 == levels;
        bytes += static_cast<char>(0xA0 + (last ? 0 : copies));
        for (int copy = 0; copy < copies && !last; ++copy) {
            bytes += bigEndian(i + 1, 4);
        }
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + bigEndian(0, 6) + "\4\4" + bigEndian(levels, 8) + bigEndian(0, 8) + bigEndian(table, 8);
}

TEST_F(Bundle, IdentifierIsReadFromXml) {
    const struct {
        const char* inside;
        const char* identifier;
    } cases[] = {
        {"<dict><key>CFBundleIdentifier</key><string>com.example.tool</string></dict>", "com.example.tool"},
        {"<dict><key>A</key><array><dict><key>CFBundleIdentifier</key><string>no</string></dict></array>"
         "<key>B</key><true/><key>CFBundleIdentifier</key> <string>com.&#x41;&amp;b</string><key>C</key><dict/></dict>",
         "com.A&b"},
        {"<!-- c --><dict>\n <key>CFBundleIdentifier</key>\n <!-- c --> <string><![CDATA[com.b]]></string></dict>",
         "com.b"},
        {"<dict><key>CFBundleIdentifier</key><string></string></dict>", ""},
    };
    for (const auto& [inside, identifier] : cases) {
        EXPECT_EQ(bundleIdentifierIn(xml(inside)), identifier) << inside;
    }
}

TEST_F(Bundle, IdentifierIsReadFromTheBinaryForm) {
    EXPECT_EQ(bundleIdentifierIn(bytesOfHex(binaryAscii)), "com.example.tool");
    EXPECT_EQ(bundleIdentifierIn(bytesOfHex(binaryUtf16)), "com.ex\xC3\xA4mple.t\xC3\xB6\xC3\xB6l");
}

TEST_F(Bundle, IdentifierIsReadFromTheTextOlderThanXml) {
    const struct {
        std::string list;
        std::string identifier;
    } cases[] = {
        {"{\n    CFBundleName = Tool;\n    CFBundleIdentifier = com.example.tool;\n}\n", "com.example.tool"},
        {"{ \"CFBundleIdentifier\" = \"com.example.tool\"; }", "com.example.tool"},
        {"{CFBundleIdentifier='a b';}", "a b"},
        {"// a comment\n/* and } another */ { A = { CFBundleIdentifier = no; }; B = (1, {C = 2;}, <0f 1a>);\n"
         "D = <0fbd 77>; /* */ CFBundleIdentifier /* = no */ = com.b; }",
         "com.b"},
        {"CFBundleName = Tool;\nCFBundleIdentifier = com.example.tool;\n", "com.example.tool"},
        {"\n\n {\"A;}\" = \"{(\\\"\"; Flag; CFBundleIdentifier = com.b}", "com.b"},
        {"{CFBundleIdentifier = \"\\U00e4\\103\\n\\Ud83d\\Ude00\\x\";}",
         "\xC3\xA4"
         "C\n\xF0\x9F\x98\x80x"},
        {"{CFBundleIdentifier = \"caf\xC3\xA9\";}", "caf\xC3\xA9"},
        {"\xEF\xBB\xBF{CFBundleIdentifier = com.b;}", "com.b"},
        {std::string("\xFF\xFE") + utf16("{CFBundleIdentifier = com.b;}"), "com.b"},
        {"{CFBundleIdentifier = \"\";}", ""},
        {"{CFBundleIdentifier = com.b; broken", "com.b"},
    };
    for (const auto& [list, identifier] : cases) {
        EXPECT_EQ(bundleIdentifierIn(list), identifier) << list;
    }
    for (const char* none : {"{}", "{CFBundleName = Tool;}", "{CFBundleIdentifier = {a = b;};}", "{CFBundleIdentifier",
                             "{CFBundleIdentifier = ", "{CFBundleIdentifier;}", "(CFBundleIdentifier, com.b)",
                             "{A = {CFBundleIdentifier = com.b;};}", "{A B; CFBundleIdentifier = com.b;}", "\"",
                             "/* {CFBundleIdentifier = com.b;}", "{CFBundleIdentifier = );}"}) {
        EXPECT_EQ(bundleIdentifierIn(none), std::nullopt) << none;
    }
}

TEST_F(Bundle, IdentifierIsReadFromXmlAfterBlankLinesAndBeforeWhateverFollows) {
    const std::string list = xml("<dict><key>CFBundleIdentifier</key><string>com.b</string></dict>");
    for (const char* before : {"\n", "\r\n\t \n", "\xEF\xBB\xBF", "\xEF\xBB\xBF\n"}) {
        EXPECT_EQ(bundleIdentifierIn(before + list), "com.b") << before;
    }
    for (const std::string& after :
         {std::string("\n\n"), std::string("\0\0", 2), std::string("more"), std::string("\xFF"), list}) {
        EXPECT_EQ(bundleIdentifierIn(list + after), "com.b") << after;
    }
}

TEST_F(Bundle, WithoutAReadableTextHasNoIdentifier) {
    const std::string whole = xml("<dict><key>CFBundleIdentifier</key><string>a</string></dict>");
    ASSERT_EQ(bundleIdentifierIn(whole), "a");
    const std::string cases[] = {
        "",
        "garbage",
        "bplist00",
        "bplist00 too short for its end",
        bytesOfHex(binaryNumber),
        bytesOfHex(binaryAscii).substr(0, 100),
        nestedBinary(3, 1),
        xml(""),
        xml("<dict/>"),
        xml("<array><string>CFBundleIdentifier</string></array>"),
        xml("<dict><key>CFBundleIdentifier</key></dict>"),
        xml("<dict><key>CFBundleIdentifier</key><integer>17</integer></dict>"),
        xml("<dict><key>CFBundleIdentifier</key><array><string>a</string></array></dict>"),
        xml("<dict><key>cfbundleidentifier</key><string>a</string></dict>"),
        xml("<dict><key>CFBundleIdentifier</key><string>a</string>"),
        whole.substr(0, whole.size() - 12),
        "<dict><key>CFBundleIdentifier</key><string>a</string></dict>",
    };
    for (const std::string& bytes : cases) {
        EXPECT_EQ(bundleIdentifierIn(bytes), std::nullopt) << bytes;
    }
}

// Each of these ends a reader that builds the whole tree: by its depth, or by the size that it expands to.
TEST_F(Bundle, HoldsAgainstListsMadeToEndTheReader) {
    constexpr int deep = 300'000;
    const std::string nest = repeated("<array>", deep) + repeated("</array>", deep);
    const std::string old = "{A = " + repeated("(", deep) + repeated(")", deep) + "; CFBundleIdentifier = a.b.c;}";
    EXPECT_EQ(bundleIdentifierIn(old), "a.b.c");
    EXPECT_EQ(bundleIdentifierIn(repeated("{a=", deep)), std::nullopt);
    const std::string identifier = "<key>CFBundleIdentifier</key><string>a.b.c</string>";
    EXPECT_EQ(bundleIdentifierIn(xml("<dict><key>A</key>" + nest + identifier + "</dict>")), "a.b.c");
    EXPECT_EQ(bundleIdentifierIn(xml(nest)), std::nullopt);
    EXPECT_EQ(bundleIdentifierIn(nestedBinary(deep, 1)), std::nullopt);
    EXPECT_EQ(bundleIdentifierIn(nestedBinary(60, 4)), std::nullopt);
    std::string entities = "<!DOCTYPE plist [<!ENTITY a0 \"aaaaaaaaaa\">";
    for (int i = 1; i < 12; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        entities += "<!ENTITY a" + std::to_string(i) + " \"" + repeated(inner, 10) + "\">";
    }
    entities += "]><plist><dict><key>CFBundleIdentifier</key><string>&a11;</string></dict></plist>";
    EXPECT_EQ(bundleIdentifierIn(entities), std::nullopt);
    // Within what the XML reader lets an entity expand to, but again and again.
    EXPECT_EQ(bundleIdentifierIn("<!DOCTYPE plist [<!ENTITY a \"" + repeated("a", 4000) +
                                 "\">]><plist><dict><key>CFBundleIdentifier</key><string>" + repeated("&a;", 1000) +
                                 "</string></dict></plist>"),
              std::nullopt);
}

TEST_F(Bundle, SurvivesAnyDamage) {
    std::mt19937 random(20'240'507);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same damage each time
    const std::string whole[] = {bytesOfHex(binaryAscii), bytesOfHex(binaryUtf16),
                                 xml("<dict><key>A</key><array><true/></array>"
                                     "<key>CFBundleIdentifier</key><string>com.example.tool</string></dict>")};
    int read = 0;
    for (int turn = 0; turn < 30'000; ++turn) {
        std::string bytes = whole[turn % 3];
        for (int change = 0; change <= turn % 4; ++change) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        bytes.resize(bytes.size() - (turn % 5 == 0 ? random() % bytes.size() : 0));
        read += bundleIdentifierIn(bytes).has_value() ? 1 : 0;
    }
    // Some damage leaves the identifier readable, most does not harm or hide it all the time.
    EXPECT_GT(read, 1'000);
    EXPECT_LT(read, 29'000);
}

TEST_F(Bundle, KeepsItsPropertyListInOneOfFourPlaces) {
    const auto list = [](const std::string& identifier) {
        return xml("<dict><key>CFBundleIdentifier</key><string>" + identifier + "</string></dict>");
    };
    const std::filesystem::path bundle = testRoot() / "Some.app";
    EXPECT_EQ(bundleIdentifier(bundle), std::nullopt);
    makeFolder(bundle);
    EXPECT_EQ(bundleIdentifier(bundle), std::nullopt);
    // From the last place to the first, each of which takes over.
    for (const char* place : {"", "Resources", "Support Files", "Contents"}) {
        writeFile(bundle / place / "Info.plist", list(std::string("in.") + place));
        EXPECT_EQ(bundleIdentifier(bundle), std::string("in.") + place);
    }
    writeFile(bundle / "Contents/Info.plist", "broken");
    EXPECT_EQ(bundleIdentifier(bundle), std::nullopt);
    makeLink(testRoot() / "Link.app", bundle);
    std::filesystem::remove(bundle / "Contents/Info.plist");
    EXPECT_EQ(bundleIdentifier(testRoot() / "Link.app"), "in.Support Files");
}

TEST_F(Bundle, OfAFileOrWithAFolderForAListHasNoIdentifier) {
    makeFile(testRoot() / "File.app");
    EXPECT_EQ(bundleIdentifier(testRoot() / "File.app"), std::nullopt);
    makeFolder(testRoot() / "Folder.app/Contents/Info.plist");
    EXPECT_EQ(bundleIdentifier(testRoot() / "Folder.app"), std::nullopt);
}

}  // namespace
}  // namespace vesk
