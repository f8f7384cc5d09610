// The stored form of the history: how it is written, and how strictly it is read.

#include "state/history_codec.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <random>

namespace vesk {
namespace {

using nlohmann::json;

HistoryEntry sampleEntry() {
    HistoryEntry entry;
    entry.id = *Uuid::parse("0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF");
    entry.date = 700'000'000.5;
    entry.bytes = 9'223'372'036'854'775'807;
    entry.titles = {"App caches", "\xC3\x9C\"\\\n/"};
    entry.moves = {{"/home/u/a", "/home/u/Trash/a", 4096}, {"/home/u/b", "/home/u/Trash/b.2", 0}};
    entry.snapshotsRemoved = 3;
    return entry;
}

std::string sample() {
    return encodeHistory({sampleEntry()});
}

// The sample with one change.
std::string with(const std::function<void(json&)>& change) {
    json list = json::parse(sample());
    change(list);
    return list.dump();
}

// The sample with another first title, or with an additional value, as JSON text.
std::string withTitle(const std::string& text) {
    std::string changed = sample();
    const std::string title = "App caches";
    return changed.replace(changed.find(title), title.size(), text);
}
std::string withAddition(const std::string& value) {
    std::string changed = sample();
    return changed.insert(changed.find("\"undone\""), "\"added\":" + value + ",");
}

TEST(HistoryCodecTest, WritesExactlyTheseKeysCompactly) {
    EXPECT_EQ(sample(),
              "[{\"id\":\"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF\",\"date\":700000000.5,\"bytes\":9223372036854775807,"
              "\"preview\":false,\"titles\":[\"App caches\",\"\xC3\x9C\\\"\\\\\\n/\"],"
              "\"moves\":[{\"original\":\"/home/u/a\",\"trashed\":\"/home/u/Trash/a\",\"size\":4096},"
              "{\"original\":\"/home/u/b\",\"trashed\":\"/home/u/Trash/b.2\",\"size\":0}],"
              "\"snapshotsRemoved\":3,\"undone\":false}]");
    EXPECT_EQ(encodeHistory({}), "[]");
    HistoryEntry empty;
    empty.id = Uuid();
    empty.date = 0;
    empty.preview = true;
    empty.undone = true;
    EXPECT_EQ(encodeHistory({empty}),
              "[{\"id\":\"00000000-0000-0000-0000-000000000000\",\"date\":0.0,\"bytes\":0,\"preview\":true,"
              "\"titles\":[],\"moves\":[],\"snapshotsRemoved\":0,\"undone\":true}]");
}

TEST(HistoryCodecTest, ReadsWhatItWrites) {
    const std::vector<HistoryEntry> entries = {sampleEntry(), HistoryEntry(), sampleEntry()};
    const auto read = decodeHistory(encodeHistory(entries));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), 3U);
    EXPECT_EQ((*read)[0], sampleEntry());
    EXPECT_EQ((*read)[2], sampleEntry());
    EXPECT_EQ(decodeHistory("[]"), std::vector<HistoryEntry>());
    EXPECT_EQ(decodeHistory(" [ ] \n"), std::vector<HistoryEntry>());
    EXPECT_EQ(decodeHistory(withTitle(R"(\u00fc\uD83D\uDE00\/)"))->front().titles[0], "\xC3\xBC\xF0\x9F\x98\x80/");
    EXPECT_TRUE(decodeHistory(withAddition(R"([null, {"a": -0.5E+3}, true, "\u0000"])")));
}

// The parser reads strings in blocks.
TEST(HistoryCodecTest, TextsOfEveryLengthAreReadAsWritten) {
    HistoryEntry entry = sampleEntry();
    entry.titles.clear();
    constexpr std::size_t longest = 50;
    for (const std::string special : {"\"", "\\", "\n", "\x01", "\x7F", "\xC3\x9C"}) {
        for (std::size_t length = 0; length <= longest; ++length) {
            for (std::size_t place = 0; place <= length; ++place) {
                entry.titles.push_back(std::string(length, 'a').insert(place, special));
            }
        }
    }
    EXPECT_EQ(decodeHistory(encodeHistory({entry})), std::vector{entry});
}

TEST(HistoryCodecTest, ATextWithoutAnEndIsUnreadable) {
    constexpr std::size_t longest = 50;
    for (std::size_t length = 0; length <= longest; ++length) {
        EXPECT_FALSE(decodeHistory(std::string("[{\"id\":\"").append(length, 'a'))) << length;
    }
}

TEST(HistoryCodecTest, ADateKeepsItsMicroseconds) {
    const Date date = dateFromUnix(1'790'000'000, 123'456'789);
    EXPECT_NEAR(historyDate(date), 1'790'000'000.123456789 - static_cast<double>(historyEpoch), 1e-6);
    HistoryEntry entry = sampleEntry();
    entry.date = historyDate(date);
    const auto read = decodeHistory(encodeHistory({entry}));
    ASSERT_TRUE(read);
    EXPECT_EQ(entry.date, read->front().date) << "to the last bit";
}

TEST(HistoryCodecTest, ReadsKeysInAnyOrderAndPassesOverOthers) {
    EXPECT_TRUE(decodeHistory(with([](json&) {})));  // this library sorts keys by name
    const auto read = decodeHistory(with([](json& list) {
        list[0]["added"] = {{"by", {"a", "later", 1.5, nullptr}}};
        list[0]["moves"][0]["note"] = "x";
    }));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->front(), sampleEntry());
}

TEST(HistoryCodecTest, AMissingKeySpoilsTheWhole) {
    for (const char* key : {"id", "date", "bytes", "preview", "titles", "moves", "snapshotsRemoved", "undone"}) {
        EXPECT_FALSE(decodeHistory(with([&](json& list) { list[0].erase(key); }))) << key;
        EXPECT_FALSE(decodeHistory(with([&](json& list) {
            list.push_back(list[0]);
            list[1].erase(key);
        }))) << key;
    }
    for (const char* key : {"original", "trashed", "size"}) {
        EXPECT_FALSE(decodeHistory(with([&](json& list) { list[0]["moves"][1].erase(key); }))) << key;
    }
}

TEST(HistoryCodecTest, AWrongTypeSpoilsTheWhole) {
    const json values[] = {nullptr, true, 1, -1, 1.5, "text", json::array(), json::object(), json::array({1})};
    const std::map<std::string, std::string> allowed = {
        {"id", ""},
        {"date", "1 -1 1.5"},
        {"bytes", "1 -1"},
        {"preview", "true"},
        {"titles", "[]"},
        {"moves", "[]"},
        {"snapshotsRemoved", "1 -1"},
        {"undone", "true"},
        {"original", "\"text\""},
        {"trashed", "\"text\""},
        {"size", "1 -1"},
    };
    for (const auto& [key, right] : allowed) {
        for (const json& value : values) {
            const bool isMove = key == "original" || key == "trashed" || key == "size";
            const std::string changed =
                with([&, name = key](json& list) { (isMove ? list[0]["moves"][0] : list[0])[name] = value; });
            const bool fits = (" " + right + " ").find(" " + value.dump() + " ") != std::string::npos;
            EXPECT_EQ(decodeHistory(changed).has_value(), fits) << key << " " << value.dump();
        }
    }
    for (const char* text : {"{}", "null", "1", "\"text\"", "[1]", "[null]", "[[]]", "[{}]"}) {
        EXPECT_FALSE(decodeHistory(text)) << text;
    }
}

TEST(HistoryCodecTest, AValueOutOfRangeSpoilsTheWhole) {
    const struct {
        const char* from;
        const char* to;
        bool readable;
    } cases[] = {
        {"9223372036854775807", "9223372036854775808", false},
        {"9223372036854775807", "-9223372036854775808", true},
        {"9223372036854775807", "-9223372036854775809", false},
        {"9223372036854775807", "18446744073709551616", false},
        {"9223372036854775807", "1e3", false},
        {"9223372036854775807", "5.0", false},
        {"700000000.5", "700000000", true},
        {"700000000.5", "7e8", true},
        {"700000000.5", "-1e9", true},
        {"700000000.5", "1e11", true},
        {"700000000.5", "-1e300", true},
        {"700000000.5", "1.7976931348623157e308", true},
        {"700000000.5", "5e-324", true},
        {"700000000.5", "1e-400", true},
        {"700000000.5", "1e-2147483647", true},
        {"700000000.5", "9e308", false},
        {"700000000.5", "1e400", false},
        {"700000000.5", "18446744073709551615", true},
        {"700000000.5", "123456789012345678901234567890", true},
        {"700000000.5", "NaN", false},
        {"0F1E2D3C", "0f1e2d3c", true},
        {"0F1E2D3C", "0F1E2D3", false},
        {"0F1E2D3C", "0F1E2D3G", false},
    };
    for (const auto& c : cases) {
        std::string text = sample();
        text.replace(text.find(c.from), std::string_view(c.from).size(), c.to);
        EXPECT_EQ(decodeHistory(text).has_value(), c.readable) << c.to;
    }
}

TEST(HistoryCodecTest, SayingAThingTwiceSpoilsTheWhole) {
    std::string text = sample();
    text.insert(text.find("\"undone\""), "\"undone\":true,");
    EXPECT_FALSE(decodeHistory(text));
    text = sample();
    text.insert(text.find("\"size\":0"), "\"size\":0,");
    EXPECT_FALSE(decodeHistory(text));
    text = sample();
    text.insert(text.find("\"undone\""), "\"added\":{\"a\":1,\"b\":{\"a\":2}},\"other\":{\"a\":1},");
    EXPECT_TRUE(decodeHistory(text)) << "the same key in two objects is no repetition";
    text.insert(text.find("\"other\""), "\"other\":1,");
    EXPECT_TRUE(decodeHistory(text)) << "nor is anything lost where nobody looks";
}

TEST(HistoryCodecTest, ATruncatedTextIsUnreadable) {
    const std::string text = sample();
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_FALSE(decodeHistory(text.substr(0, length))) << length;
    }
}

TEST(HistoryCodecTest, GarbageIsUnreadable) {
    for (const std::string& text :
         {sample() + "x", sample() + sample(), sample() + std::string(1, '\0'), std::string("\0\0\0", 3),
          "\xEF\xBB" + sample(), std::string("[\"\xFF\"]"), std::string("[{\"id\":\"\\uD800\"}]"), "/* */" + sample(),
          withTitle("\\uD800"), withTitle("\\uDC00"), withTitle("\xFF"), withTitle("\n"), withAddition("\"\xFF\""),
          withAddition("{\"\xFF\":1}"), withAddition("\"\\uDC00\""), withAddition("01"), withAddition("+1"),
          withAddition("'a'"), withAddition("1,")}) {
        EXPECT_FALSE(decodeHistory(text)) << text;
    }
}

TEST(HistoryCodecTest, DeepNestingIsUnreadable) {
    constexpr std::size_t deep = 1'000'000;
    EXPECT_FALSE(decodeHistory(std::string(deep, '[')));
    EXPECT_FALSE(decodeHistory(std::string(deep, '[') + std::string(deep, ']')));
    std::string objects;
    for (std::size_t i = 0; i < 200'000; ++i) {
        objects += "{\"a\":";
    }
    EXPECT_FALSE(decodeHistory(objects));
    EXPECT_FALSE(decodeHistory("[" + objects + "1" + std::string(200'000, '}') + "]"));
    std::string text = sample();
    text.insert(text.find("\"undone\""), "\"added\":" + std::string(100, '[') + std::string(100, ']') + ",");
    EXPECT_FALSE(decodeHistory(text)) << "even where nobody looks";
}

TEST(HistoryCodecTest, ANameThatIsNotUtf8IsWrittenWithReplacements) {
    HistoryEntry entry = sampleEntry();
    entry.titles = {
        "a\xFF\xFE"
        "b",
        "\xC3", "\xED\xA0\x80"};
    entry.moves[0].original = "/home/u/\x80";
    const std::string text = encodeHistory({entry});
    EXPECT_TRUE(json::accept(text));
    const auto read = decodeHistory(text);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->front().titles[0],
              "a\xEF\xBF\xBD\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(read->front().moves[0].original, "/home/u/\xEF\xBF\xBD");
    EXPECT_EQ(read->front().moves[1], sampleEntry().moves[1]);
}

TEST(HistoryCodecTest, NothingMakesItFail) {
    // A changed text is read or rejected; what is read can be written and read again.
    std::mt19937 random(20260101);  // NOLINT(cert-msc51-cpp): the same texts at each run
    const std::string text = encodeHistory({sampleEntry(), HistoryEntry(), sampleEntry()});
    int readable = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string changed = text;
        for (auto changes = 1 + random() % 3; changes > 0; --changes) {
            const std::size_t place = random() % changed.size();
            switch (random() % 4) {
                case 0:
                    changed[place] = static_cast<char>(random());
                    break;
                case 1:
                    changed.erase(place, random() % 20);
                    break;
                case 2:
                    changed.insert(place, changed.substr(random() % changed.size(), random() % 40));
                    break;
                default:
                    changed[place] = "[]{}\",:0-e."[random() % 11];
            }
            if (changed.empty()) {
                changed = "[";
            }
        }
        if (const auto read = decodeHistory(changed)) {
            ++readable;
            const auto again = decodeHistory(encodeHistory(*read));
            ASSERT_TRUE(again) << changed;
            EXPECT_EQ(encodeHistory(*again), encodeHistory(*read));
        }
    }
    EXPECT_GT(readable, 0);
    EXPECT_LT(readable, 20'000);
}

TEST(HistoryCodecTest, AnyFiniteDateIsKeptAsItWas) {
    for (const double date : {-1e300, -9.3e9, -8.3e9, -0.1, 0.0, 1e-300, 8.3e9, 1e19, 1.7976931348623157e308}) {
        const auto read = decodeHistory(with([&](json& list) { list[0]["date"] = date; }));
        ASSERT_TRUE(read) << date;
        EXPECT_EQ(read->front().date, date);
        EXPECT_EQ(json::parse(encodeHistory(*read))[0]["date"].get<double>(), date);
    }
}

TEST(HistoryCodecTest, AHistoryTooLargeForMemoryIsUnreadable) {
    HistoryEntry entry = sampleEntry();
    entry.titles.resize(10'000);
    const std::string text = encodeHistory({entry});
    EXPECT_TRUE(decodeHistory(text, 1'000'000));
    EXPECT_FALSE(decodeHistory(text, text.size())) << "empty titles take more room than their text";
    entry = sampleEntry();
    entry.moves.resize(10'000);
    EXPECT_TRUE(decodeHistory(encodeHistory({entry}), 1'000'000));
    EXPECT_FALSE(decodeHistory(encodeHistory({entry}), 500'000));
    EXPECT_FALSE(decodeHistory(encodeHistory(std::vector<HistoryEntry>(100)), 5'000));
}

}  // namespace
}  // namespace vesk
