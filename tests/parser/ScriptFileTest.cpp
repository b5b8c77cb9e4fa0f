// Files parsed in place (SQLParser::parseFile) against the same files read
// whole and parsed as text: same model, same records, in every encoding
// the file reader knows, across the pieces the file is decoded in.
#include "CliSupport.h"
#include "ModelJson.h"
#include "ScriptFileText.h"
#include "TextEncoding.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <unistd.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SQLANTLR_HAS_ASAN 1
#endif
#endif
#ifndef SQLANTLR_HAS_ASAN
#define SQLANTLR_HAS_ASAN 0
#endif

namespace {

struct TempFile {
    std::string path;
    explicit TempFile(const std::string &bytes)
        : path((std::filesystem::temp_directory_path() /
                ("sqlantlr-file-" + std::to_string(getpid()) + "-" + std::to_string(counter()++) + ".sql"))
                   .string())
    {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    ~TempFile() { std::filesystem::remove(path); }
    static int &counter()
    {
        static int n = 0;
        return n;
    }
};

// Sets where texts start to be decoded as they are read instead of whole
// into memory, for the life of the guard.
struct HeldInMemoryBelow {
    explicit HeldInMemoryBelow(std::size_t bytes) { sqlantlr::ScriptFileText::setHeldInMemoryBelow(bytes); }
    ~HeldInMemoryBelow()
    {
        sqlantlr::ScriptFileText::setHeldInMemoryBelow(sqlantlr::ScriptFileText::defaultHeldInMemoryBelow);
    }
    HeldInMemoryBelow(const HeldInMemoryBelow &) = delete;
    HeldInMemoryBelow &operator=(const HeldInMemoryBelow &) = delete;
};

// The model as JSON with the records, as `sqlantlr model` prints it.
std::string modelText(SQLParser &parser, const std::unique_ptr<SQLContainer> &container)
{
    std::ostringstream out;
    if (container == nullptr) {
        return "<no model>";
    }
    sqlantlr::writeModelJson(out, *container, parser.getExceptionList(), true);
    return out.str();
}

// Parsed in place, with its text decoded whole into memory and as it is
// read, the file gives the model and records of its text read whole.
void expectSameAsWholeText(const std::string &bytes, const std::string &label)
{
    const TempFile file(bytes);
    std::string fromFile[2];
    for (const std::size_t heldBelow : {std::size_t(0), sqlantlr::ScriptFileText::defaultHeldInMemoryBelow}) {
        const HeldInMemoryBelow bound(heldBelow);
        SQLParser inPlace;
        fromFile[heldBelow == 0 ? 0 : 1] = modelText(inPlace, inPlace.parseFile(file.path));
    }
    SQLParser whole;
    const std::string fromText =
        modelText(whole, whole.parseString(SQLParser::stringForFile(file.path, SQLTextEncoding::UTF8)));
    EXPECT_EQ(fromFile[0], fromText) << label << " (decoded as it is read)";
    EXPECT_EQ(fromFile[1], fromText) << label << " (decoded into memory)";
}

const char *const table = "CREATE TABLE t (id INT PRIMARY KEY, name VARCHAR(20) DEFAULT 'n', x BROKEN(;\n";

} // namespace

TEST(ScriptFile, EveryEncodingGivesTheModelAndRecordsOfTheWholeText)
{
    const std::string utf8 = std::string("CREATE TABLE \"é𝄞\" (a INT COMMENT 'ü');\r\n") + table;
    expectSameAsWholeText("", "empty");
    expectSameAsWholeText(utf8, "UTF-8 with CRLF");
    expectSameAsWholeText("\xEF\xBB\xBF" + utf8, "UTF-8 byte order mark");
    expectSameAsWholeText(std::string("CREATE TABLE a (x\0y INT);\n", 26) + std::string("\0", 1) + table, "NULs");
    expectSameAsWholeText("CREATE TABLE caf\xE9 (id INT);\n" + std::string(table), "not UTF-8: Mac OS Roman");
    // Nothing left once the mark or the NULs are dropped.
    expectSameAsWholeText("\xEF\xBB\xBF", "a byte order mark alone");
    expectSameAsWholeText(std::string(5, '\0'), "NULs alone");
    std::string utf16 = "\xFF\xFE";
    for (const char c : std::string("CREATE TABLE w (id INT);\n") + table) {
        utf16 += c;
        utf16 += '\0';
    }
    expectSameAsWholeText(utf16, "UTF-16 with its byte order mark");
}

TEST(ScriptFile, StatementsAcrossTheDecodedPiecesKeepTheirPositions)
{
    // Several megabytes, so that the file is decoded in several pieces: long
    // lines of multi-byte characters with no ASCII byte for more than a piece,
    // an INSERT running over piece ends, and records far into the file.
    std::string script = "CREATE TABLE big (id INT, s TEXT);\n";
    script += "INSERT INTO big VALUES (1, '";
    for (int i = 0; i < 700000; ++i) {
        script += "é";  // 1.4 MB without an ASCII byte
    }
    script += "');\n";
    for (int i = 0; i < 30000; ++i) {
        script += "INSERT INTO big VALUES (" + std::to_string(i) + ", 'ä;ö''ü'), (2, 'x\\'y');\r\n";
    }
    script += std::string("CREATE TABLE after (a INT REFERENCES big(id), b ÷÷);\n") + table;
    expectSameAsWholeText(script, "several pieces");
    expectSameAsWholeText(script.substr(0, script.size() / 2), "cut in a statement");

    // Mac OS Roman over several pieces: each piece's characters take more
    // bytes in UTF-8 than in the file, up to the file's last piece.
    std::string roman;
    for (int i = 0; i < 60000; ++i) {
        roman += "CREATE TABLE caf\xE9" + std::to_string(i) + " (\x8A INT, b VARCHAR(9) DEFAULT '\xE9\xE9');\n";
    }
    roman += table;
    expectSameAsWholeText(roman, "Mac OS Roman in several pieces");

    // A file that is UTF-8 up to a byte near its end, several pieces on,
    // is decoded again from its start as Mac OS Roman.
    std::string late;
    for (int i = 0; i < 40000; ++i) {
        late += "CREATE TABLE t" + std::to_string(i) + " (a INT, b VARCHAR(9) DEFAULT 'x');\n";
    }
    late += "CREATE TABLE caf\xE9 (\x8A INT);\n";
    late += table;
    expectSameAsWholeText(late, "Mac OS Roman from the last piece on");
}

// The whole text of one decoded as it is read.
std::u16string_view decodedWhole(sqlantlr::ScriptFileText &text)
{
    text.decodeTo(text.units().data() + text.units().size());
    EXPECT_TRUE(text.complete());
    EXPECT_EQ(text.decodedEnd(), text.units().data() + text.units().size());
    return text.units();
}

TEST(ScriptFile, ShortTextsAreHeldInMemoryAndLongOnesDecodedAsTheyAreRead)
{
    std::string script;
    for (int i = 0; i < 100000; ++i) {
        script += "-- line " + std::to_string(i) + " ß\n";
    }
    const TempFile file(script);
    const std::unique_ptr<sqlantlr::ScriptFileText> held = sqlantlr::ScriptFileText::open(file.path);
    const std::unique_ptr<sqlantlr::ScriptFileText> mapped = sqlantlr::ScriptFileText::open(file.path, script.size());
    ASSERT_NE(held, nullptr);
    ASSERT_NE(mapped, nullptr);
    EXPECT_TRUE(held->inMemory());
    EXPECT_FALSE(mapped->inMemory());
    EXPECT_TRUE(held->complete());
    EXPECT_FALSE(mapped->complete());
    EXPECT_LT(mapped->decodedEnd(), mapped->units().data() + mapped->units().size());
    EXPECT_TRUE(held->units() == decodedWhole(*mapped));
    EXPECT_EQ(held->units().size(), script.size() - 100000);  // each ß is two bytes and one unit
    // Releasing pages of text held in memory must not drop it.
    held->releaseAllBefore(held->units().data() + held->units().size());
    EXPECT_TRUE(held->units() == mapped->units());
    EXPECT_TRUE(sqlantlr::ScriptFileText::fromUtf8(script)->inMemory());
    EXPECT_FALSE(sqlantlr::ScriptFileText::fromUtf8(script, script.size())->inMemory());

    // Both ways, a byte that is not UTF-8 pieces in has the whole file
    // decoded as Mac OS Roman, in place.
    script += "caf\xE9\n";
    const TempFile roman(script);
    const std::u16string expected = sqlantlr::utf8ToUtf16(sqlantlr::macRomanToUtf8(script));
    for (const std::size_t heldBelow : {std::size_t(0), sqlantlr::ScriptFileText::defaultHeldInMemoryBelow}) {
        const std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::open(roman.path, heldBelow);
        ASSERT_NE(text, nullptr) << heldBelow;
        EXPECT_TRUE(decodedWhole(*text) == expected) << heldBelow;
    }
}

TEST(ScriptFile, PagesGivenBackLeaveTheTextAheadWhole)
{
    // The pages behind the parse move on to where the next pieces go: the
    // text decoded into them must be the file's, however far each step goes.
    std::string script;
    for (int i = 0; i < 100000; ++i) {
        script += "-- line " + std::to_string(i) + " ß\n";
    }
    const TempFile file(script);
    const std::u16string expected = sqlantlr::utf8ToUtf16(script);
    for (const std::size_t step : {std::size_t(1000), std::size_t(30000), std::size_t(300000)}) {
        const std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::open(file.path, 0);
        ASSERT_NE(text, nullptr);
        ASSERT_FALSE(text->inMemory());
        ASSERT_EQ(text->units().size(), expected.size());  // each ß is two bytes and one unit
        const char16_t *const begin = text->units().data();
        std::size_t checked = 0;
        while (!text->complete()) {
            const auto decoded = static_cast<std::size_t>(text->decodeTo(text->decodedEnd() + step) - begin);
            ASSERT_LE(decoded, expected.size());
            ASSERT_TRUE(std::u16string_view(begin + checked, decoded - checked) ==
                        std::u16string_view(expected).substr(checked, decoded - checked))
                << "step " << step << " at " << checked;
            checked = decoded;
            // The decoded text ends with a whole line.
            ASSERT_TRUE(decoded == expected.size() || begin[decoded - 1] == u'\n');
            text->releaseAllBefore(begin + decoded / 2);
        }
        EXPECT_EQ(checked, expected.size());
    }
}

// Resident pages of the process, from /proc/self/statm.
long residentPages()
{
    std::ifstream statm("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return resident;
}

TEST(ScriptFile, ParsingALongFileKeepsLittleOfItsTextInMemory)
{
    // 24 MB of text, 48 MB of UTF-16: nothing is decoded until it is read,
    // and the parse gives back the pages it has passed.
    std::string script;
    const std::string line = "INSERT INTO t VALUES (1, 'some text of a row', 2.5);\n";
    while (script.size() < (24U << 20U)) {
        script += line;
    }
    const TempFile file(script);
    script = std::string();
    const long before = residentPages();
    const std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::open(file.path);
    ASSERT_NE(text, nullptr);
    EXPECT_LT((residentPages() - before) * ::sysconf(_SC_PAGESIZE), 2L << 20) << "bytes resident after opening";
    EXPECT_EQ(text->units().size() % line.size(), 0U);
    text->decodeTo(text->units().data() + 1);
    EXPECT_EQ(text->units().substr(0, 6), u"INSERT");

    SQLParser parser;
    long peak = 0;
    parser.driver().setProgressHandler([&peak](const SQLParseProgress &) { peak = std::max(peak, residentPages()); });
    const std::unique_ptr<SQLContainer> model = parser.parseFile(file.path);
    ASSERT_NE(model, nullptr);
    EXPECT_GT(peak, 0);
    // (AddressSanitizer keeps freed memory in quarantine: the parse's own
    // memory then grows with the script.)
#if !defined(__SANITIZE_ADDRESS__) && !SQLANTLR_HAS_ASAN
    EXPECT_LT((peak - before) * ::sysconf(_SC_PAGESIZE), 24L << 20) << "bytes resident while parsing";
#endif
}

TEST(ScriptFile, LongStringsAreHeldAsTheirDecodedText)
{
    // A long string is decoded in pieces as it is read: the units must
    // be those of decoding it whole, byte order mark and NULs dropped, with
    // ill-formed sequences at and across the pieces' ends.
    std::string text = "\xEF\xBB\xBF" + std::string("CREATE TABLE \"caf\xC3\xA9\" (a INT);\n");
    while (text.size() < (1U << 20U) - 3) {
        text += "x\xF0\x9D\x84\x9E \xC3 \xE2\x82;\x80\xFF";
        text += std::string(1, '\0');
    }
    for (int i = 0; i < 700000; ++i) {
        text += "\xC3\xBC";  // 1.4 MB without an ASCII byte, past a piece's length
    }
    text += "\xE2\x82\n-- end \xF0\x9D";
    std::u16string expected = sqlantlr::utf8ToUtf16(text);
    expected.erase(0, 1);
    expected.erase(std::remove(expected.begin(), expected.end(), u'\0'), expected.end());
    const std::unique_ptr<sqlantlr::ScriptFileText> held = sqlantlr::ScriptFileText::fromUtf8(text, 0);
    ASSERT_NE(held, nullptr);
    EXPECT_TRUE(std::u16string(sqlantlr::ScriptFileText::fromUtf8(text)->units()) == expected);
    EXPECT_EQ(held->units().size(), expected.size());  // counted before it is decoded
    EXPECT_TRUE(std::u16string(decodedWhole(*held)) == expected);

    // Parsed so, a long string gives the records of its last lines.
    std::string script;
    for (int i = 0; i < 30000; ++i) {
        script += "CREATE TABLE t" + std::to_string(i) + " (id INT, s TEXT);\n";
    }
    script += "CREATE TABLE last (x BROKEN(;\n";
    const HeldInMemoryBelow bound(1U << 20U);
    SQLParser parser;
    const std::unique_ptr<SQLContainer> model = parser.parseString(script);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->tables().size(), 30001U);
    ASSERT_FALSE(parser.getExceptionList().empty());
    EXPECT_EQ(parser.getExceptionList().front().reason.rfind("[30001:", 0), 0U)
        << parser.getExceptionList().front().reason;
}

TEST(ScriptFile, UnreadableFilesThrowAsBefore)
{
    SQLParser parser;
    EXPECT_THROW(parser.parseFile("/nonexistent/schema.sql"), SQLFileEncodingError);
    EXPECT_THROW(parser.parseFile(std::filesystem::temp_directory_path().string()), SQLFileEncodingError);
}

TEST(ScriptFile, NoTemporaryDirectoryIsNeeded)
{
    const TempFile file(std::string("CREATE TABLE a (id INT);\n") + table);
    const char *saved = std::getenv("TMPDIR");
    const std::string previous = saved != nullptr ? saved : "";
    setenv("TMPDIR", "/nonexistent/tmp", 1);
    EXPECT_NE(sqlantlr::ScriptFileText::open(file.path, 0), nullptr);
    EXPECT_NE(sqlantlr::ScriptFileText::open(file.path), nullptr);
    std::string fromFile;
    {
        const HeldInMemoryBelow bound(0);
        SQLParser inPlace;
        fromFile = modelText(inPlace, inPlace.parseFile(file.path));
    }
    if (saved != nullptr) {
        setenv("TMPDIR", previous.c_str(), 1);
    } else {
        unsetenv("TMPDIR");
    }
    SQLParser whole;
    EXPECT_EQ(fromFile, modelText(whole, whole.parseString(SQLParser::stringForFile(file.path, SQLTextEncoding::UTF8))));
}

TEST(ScriptFile, CliModelOfAFileEqualsTheModelOfStandardInput)
{
    const std::string script = std::string("CREATE TABLE a (id INT);\r\nCREATE TABLE b (a_id INT REFERENCES a(id));\n") + table;
    const TempFile file(script);
    const CliRun named = runCli("model -q " + file.path);
    const CliRun piped = runCli("model -q -", script);
    EXPECT_EQ(named.exitCode, 0);
    EXPECT_EQ(named.out, piped.out);
    EXPECT_EQ(runCli("model -q /nonexistent/x.sql").exitCode, 1);
}

// ASCII runs are decoded and checked in bulk, eight bytes at a time; what
// follows them must decode as ICU decodes the whole text, wherever in a run
// of eight the first other byte falls.
TEST(TextEncoding, AsciiRunsOfEveryLengthBeforeOtherBytes)
{
    const std::string others[] = {"\xC3\xA9", "\xE6\x97\xA5", "\xF0\x9F\x98\x80", "\xFF", "\xC3", "\xE6\x97"};
    for (size_t before = 0; before <= 17; ++before) {
        for (const std::string &other : others) {
            const std::string text = std::string(before, 'a') + other + std::string(before % 9, 'b');
            std::u16string expected(text.size(), u'\0');
            int32_t length = 0;
            UErrorCode status = U_ZERO_ERROR;
            u_strFromUTF8WithSub(reinterpret_cast<UChar *>(expected.data()), static_cast<int32_t>(expected.size()),
                                 &length, text.data(), static_cast<int32_t>(text.size()), 0xFFFD, nullptr, &status);
            expected.resize(static_cast<size_t>(length));
            EXPECT_EQ(sqlantlr::utf8ToUtf16(text), expected) << before << " bytes before " << other.size();
            const bool valid = other != "\xFF" && other != "\xC3" && other != "\xE6\x97";
            EXPECT_EQ(sqlantlr::isValidUtf8(text), valid) << before << " bytes before " << other.size();
        }
    }
    EXPECT_TRUE(sqlantlr::isValidUtf8(""));
    EXPECT_EQ(sqlantlr::utf8ToUtf16("plain ascii, longer than eight"), u"plain ascii, longer than eight");
}
