// The streaming writer must print what nlohmann::json's dump() prints for the
// same values: the golden files and users' scripts depend on those bytes.
#include "JsonWriter.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <optional>
#include <sstream>
#include <utility>

namespace {

std::string escaped(std::string_view text)
{
    std::string out;
    sqlantlr::appendJsonString(out, text);
    return out;
}

TEST(JsonWriter, EscapesStringsAsDumpDoes)
{
    const std::string samples[] = {"",
                                   "plain",
                                   "quote \" and backslash \\",
                                   std::string("\b\f\n\r\t\x01\x1f\x7f", 8),
                                   std::string("nul \0 inside", 12),
                                   "ünïcödé € 𝄞",
                                   "/slash/ not escaped"};
    for (const std::string &sample : samples) {
        EXPECT_EQ(escaped(sample), nlohmann::json(sample).dump()) << sample;
    }
}

TEST(JsonWriter, ReplacesBytesThatAreNotUtf8)
{
    EXPECT_EQ(escaped("a\xff" "b"), "\"a\xEF\xBF\xBD" "b\"");
    EXPECT_EQ(escaped("\xC3"), "\"\xEF\xBF\xBD\"");             // cut short
    EXPECT_EQ(escaped("\xED\xA0\x80"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"");  // a surrogate
    EXPECT_EQ(escaped("\xC0\xAF"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");  // overlong
}

// Plain runs are scanned eight bytes at a time: every kind of byte that
// breaks a run, at every place around the word borders, gets the same escape
// as it does alone.
TEST(JsonWriter, EscapesAtEveryPlaceInARun)
{
    const std::string replacement = "\xEF\xBF\xBD";
    const std::pair<std::string, std::string> breakers[] = {
        {"\"", "\\\""},
        {"\\", "\\\\"},
        {"\n", "\\n"},
        {"\t", "\\t"},
        {std::string(1, '\0'), "\\u0000"},
        {"\x1f", "\\u001f"},
        {"\x7f", "\x7f"},
        {"\xc3\xa9", "\xc3\xa9"},
        {"\xe2\x82\xac", "\xe2\x82\xac"},
        {"\xf0\x9d\x84\x9e", "\xf0\x9d\x84\x9e"},
        {"\xff", replacement},
        {"\x80", replacement},
        {"\xe2\x82", replacement + replacement},  // cut short
        {"\xf0\x9d\x84", replacement + replacement + replacement}};
    for (const auto &[raw, escape] : breakers) {
        for (size_t length = 0; length <= 20; ++length) {
            for (size_t at = 0; at <= length; ++at) {
                std::string text(length, 'x');
                text.insert(at, raw);
                const std::string expected = "\"" + std::string(at, 'x') + escape + std::string(length - at, 'x') + "\"";
                EXPECT_EQ(escaped(text), expected) << "at " << at << " of " << length;
            }
        }
    }
}

// A string longer than the writer's buffer, and many values that fill it
// several times, come out whole.
TEST(JsonWriter, WritesPastItsBuffer)
{
    const std::string control(100000, '\x01');
    std::string mixed;
    const std::string pieces[] = {"", "plain", "name \"quoted\" \xc3\xa9\n", std::string(30, '\x02')};
    for (int i = 0; i < 20000; ++i) {
        mixed += pieces[2];
    }
    for (const bool pretty : {false, true}) {
        std::ostringstream out;
        nlohmann::ordered_json expected = nlohmann::ordered_json::array();
        {
            sqlantlr::JsonWriter json(out, pretty);
            json.beginArray();
            json.value(control);
            expected.push_back(control);
            for (size_t i = 0; i < 10000; ++i) {
                const std::string &piece = pieces[i % std::size(pieces)];
                json.value(piece);
                expected.push_back(piece);
            }
            json.value(mixed);
            expected.push_back(mixed);
            json.endArray();
        }
        EXPECT_EQ(out.str(), expected.dump(pretty ? 2 : -1)) << "pretty " << pretty;
    }
}

TEST(JsonWriter, KeysThatNeedEscapingAreRefused)
{
    using namespace sqlantlr::literals;
    constexpr sqlantlr::JsonKey plain = "plain name/with.signs"_key;
    static_assert(plain.text() == "plain name/with.signs");
    EXPECT_THROW(sqlantlr::JsonKey("quote\""), std::invalid_argument);
    EXPECT_THROW(sqlantlr::JsonKey("back\\slash"), std::invalid_argument);
    EXPECT_THROW(sqlantlr::JsonKey("tab\t"), std::invalid_argument);
    EXPECT_THROW(sqlantlr::JsonKey("\xc3\xa9"), std::invalid_argument);
}

std::string written(bool pretty)
{
    using namespace sqlantlr::literals;
    std::ostringstream out;
    {
        sqlantlr::JsonWriter json(out, pretty);
        json.beginObject();
        json.key("empty object");
        json.beginObject();
        json.endObject();
        json.key("empty array"_key);
        json.beginArray();
        json.endArray();
        json.key("items");
        json.beginArray();
        json.value("a");
        json.value(int64_t{-42});
        json.value(std::numeric_limits<int64_t>::min());
        json.value(true);
        json.null();
        json.beginObject();
        json.key("nested"_key);
        json.beginArray();
        json.endArray();
        json.key("needs \"escaping\"\n");
        json.beginArray();
        json.value(false);
        json.endArray();
        json.endObject();
        json.endArray();
        // Members in one step, first in their object and after others.
        json.key("members"_key);
        json.beginArray();
        json.beginObject();
        json.member("text"_key, std::string_view("needs \"escaping\"\n"));
        json.member("set"_key, std::optional<std::string>("x"));
        json.member("unset"_key, std::optional<std::string>());
        json.member("yes"_key, true);
        json.member("no"_key, false);
        json.nullMember("none"_key);
        json.emptyObjectMember("object"_key);
        json.emptyArrayMember("array"_key);
        json.endObject();
        json.beginObject();
        json.emptyArrayMember("alone"_key);
        json.endObject();
        json.endArray();
        json.endObject();
    }
    return out.str();
}

TEST(JsonWriter, LaysOutLikeDump)
{
    const nlohmann::ordered_json document = {{"empty object", nlohmann::ordered_json::object()},
                                             {"empty array", nlohmann::ordered_json::array()},
                                             {"items",
                                              {"a",
                                               -42,
                                               std::numeric_limits<int64_t>::min(),
                                               true,
                                               nullptr,
                                               {{"nested", nlohmann::ordered_json::array()},
                                                {"needs \"escaping\"\n", {false}}}}},
                                             {"members",
                                              {{{"text", "needs \"escaping\"\n"},
                                                {"set", "x"},
                                                {"unset", nullptr},
                                                {"yes", true},
                                                {"no", false},
                                                {"none", nullptr},
                                                {"object", nlohmann::ordered_json::object()},
                                                {"array", nlohmann::ordered_json::array()}},
                                               {{"alone", nlohmann::ordered_json::array()}}}}};
    EXPECT_EQ(written(false), document.dump());
    EXPECT_EQ(written(true), document.dump(2));
}

} // namespace
