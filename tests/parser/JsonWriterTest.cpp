// The streaming writer must print what nlohmann::json's dump() prints for the
// same values: the golden files and users' scripts depend on those bytes.
#include "JsonWriter.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <sstream>

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

std::string written(bool pretty)
{
    std::ostringstream out;
    {
        sqlantlr::JsonWriter json(out, pretty);
        json.beginObject();
        json.key("empty object");
        json.beginObject();
        json.endObject();
        json.key("empty array");
        json.beginArray();
        json.endArray();
        json.key("items");
        json.beginArray();
        json.value("a");
        json.value(int64_t{-42});
        json.value(true);
        json.null();
        json.beginObject();
        json.key("nested");
        json.beginArray();
        json.value(false);
        json.endArray();
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
                                             {"items", {"a", -42, true, nullptr, {{"nested", {false}}}}}};
    EXPECT_EQ(written(false), document.dump());
    EXPECT_EQ(written(true), document.dump(2));
}

} // namespace
