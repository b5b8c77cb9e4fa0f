// Conversions and small operations that grammar actions call: token and
// subtree texts, the source text carried on DEFAULT and CHECK tokens, and the
// raw token skip of SOURCE lines.
#include "InputMoves.h"
#include "Log.h"
#include "ParseSession.h"
#include "RecognizerSupport.h"
#include "TextEncoding.h"
#include "TokenWindow.h"
#include "VellumGrammarCParser.h"

#include <SQLAntlrParser/SQLParserC.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <unordered_map>
#include <vector>

using sqlantlr::ParseSession;

namespace sqlantlr {

void ParseSession::addException(const std::string &message, int line, int charPos)
{
    if (driver != nullptr) {
        driver->addExceptionWithMessage(message, line, charPos);
    }
}

const std::string *ParseSession::addCustomValue(std::string value)
{
    customValues.push_back(std::move(value));
    return &customValues.back();
}

std::vector<std::string> *ParseSession::newNameList()
{
    nameLists.emplace_back();
    nameLists.back().reserve(2);
    return &nameLists.back();
}

} // namespace sqlantlr

bool kp_dropsBlanks(pANTLR3_RECOGNIZER_SHARED_STATE state)
{
    const auto *session = static_cast<const sqlantlr::ParseSession *>(state->userp);
    return session != nullptr && session->dropBlanks;
}

std::string kp_utf16Slice(const char16_t *units, size_t count)
{
    return sqlantlr::utf16ToUtf8(units, count);
}

namespace {

// Runtime strings do not record their width reliably (a UTF-16 factory marks
// its strings 8-bit), but a factory's functions tell: compare with those of a
// UTF-16 factory.
bool isUtf16String(pANTLR3_STRING string)
{
    static const auto utf16NewRaw = [] {
        pANTLR3_STRING_FACTORY factory = antlr3StringFactoryNew(ANTLR3_ENC_UTF16);
        auto function = factory->newRaw;
        factory->close(factory);
        return function;
    }();
    return string->factory != nullptr && string->factory->newRaw == utf16NewRaw;
}

} // namespace

std::string AntlrCocoaString(pANTLR3_STRING string)
{
    if (string == nullptr || string->len == 0 || string->chars == nullptr) {
        return {};
    }
    if (isUtf16String(string)) {
        return kp_utf16Slice(reinterpret_cast<const char16_t *>(string->chars), string->len);
    }
    return std::string(reinterpret_cast<const char *>(string->chars), string->len);
}

std::string kp_tokenText(pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr) {
        return {};
    }
    if (token->type == ANTLR3_TOKEN_EOF) {
        return "<EOF>";
    }
    if (token->textState == ANTLR3_TEXT_STRING) {
        return AntlrCocoaString(token->tokText.text);
    }
    if (token->textState == ANTLR3_TEXT_CHARP) {
        return token->tokText.chars == nullptr ? std::string()
                                                : std::string(reinterpret_cast<const char *>(token->tokText.chars));
    }
    const char16_t *units = nullptr;
    size_t count = 0;
    return kp_tokenUnits(token, &units, &count) ? kp_utf16Slice(units, count) : std::string();
}

bool kp_tokenUnits(pANTLR3_COMMON_TOKEN token, const char16_t **units, size_t *count)
{
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF || token->textState != ANTLR3_TEXT_NONE ||
        token->input == nullptr || token->input->data == nullptr) {
        return false;
    }
    // Token bounds are addresses in the UTF-16 buffer: start is the first
    // byte of the first unit, stop the last byte of the last unit.
    const auto *data = static_cast<const char *>(token->input->data);
    const auto start = reinterpret_cast<const char *>(token->start);
    const auto end = reinterpret_cast<const char *>(token->stop) + 1;
    const char *limit = data + token->input->sizeBuf;
    if (start < data || end > limit || end <= start) {
        return false;
    }
    *units = reinterpret_cast<const char16_t *>(start);
    *count = static_cast<size_t>(end - start) / 2;
    return true;
}

namespace {

// True when the units are the ASCII upper-case word in any case. Only ASCII
// letters fold: a unit beyond ASCII never matches.
bool unitsAreWord(const char16_t *units, size_t count, const char *upperWord)
{
    size_t i = 0;
    for (; i < count && upperWord[i] != '\0'; ++i) {
        const char16_t unit = units[i];
        const char16_t upper = unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
        if (upper != static_cast<unsigned char>(upperWord[i])) {
            return false;
        }
    }
    return i == count && upperWord[i] == '\0';
}

// True when the token's text is one of the words; the input is read in place.
bool tokenIsOneOf(pANTLR3_COMMON_TOKEN token, const char *const *begin, const char *const *end)
{
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF) {
        return false;
    }
    const char16_t *units = nullptr;
    size_t count = 0;
    if (kp_tokenUnits(token, &units, &count)) {
        return std::any_of(begin, end, [&](const char *word) { return unitsAreWord(units, count, word); });
    }
    const std::string text = kp_tokenText(token);
    return std::any_of(begin, end, [&](const char *word) { return kp_textIsWord(text, word); });
}

} // namespace

bool kp_tokenIsWord(pANTLR3_COMMON_TOKEN token, const char *upperWord)
{
    return tokenIsOneOf(token, &upperWord, &upperWord + 1);
}

bool kp_isRecoveryNode(pANTLR3_BASE_TREE node)
{
    if (node == nullptr) {
        return false;
    }
    if (node->getType(node) == ERROR_NODE) {
        return true;
    }
    pANTLR3_COMMON_TOKEN token = node->getToken(node);
    return token != nullptr && token->user1 == kp_recoveryMark;
}

std::string kp_nodeText(pANTLR3_BASE_TREE node)
{
    if (node == nullptr) {
        return {};
    }
    return kp_tokenText(node->getToken(node));
}

// True when the text is the ASCII upper-case word in any case.
bool kp_textIsWord(std::string_view text, const char *upperWord)
{
    const size_t length = std::strlen(upperWord);
    if (text.size() != length) {
        return false;
    }
    for (size_t i = 0; i < length; ++i) {
        if (std::toupper(static_cast<unsigned char>(text[i])) != upperWord[i]) {
            return false;
        }
    }
    return true;
}

bool kp_isWord(pANTLR3_COMMON_TOKEN token, const char *upperWord)
{
    return token != nullptr && token->type == STRING && kp_tokenIsWord(token, upperWord);
}

bool kp_isAnyWord(pANTLR3_COMMON_TOKEN token, const char *upperWords)
{
    if (token == nullptr || token->type != STRING || upperWords == nullptr) {
        return false;
    }
    std::string_view words(upperWords);
    while (!words.empty()) {
        const size_t blank = words.find(' ');
        const std::string word(words.substr(0, blank));
        if (!word.empty() && kp_tokenIsWord(token, word.c_str())) {
            return true;
        }
        words = blank == std::string_view::npos ? std::string_view() : words.substr(blank + 1);
    }
    return false;
}

bool kp_isKeyword(pANTLR3_COMMON_TOKEN token, const char *upperWord)
{
    return token != nullptr && token->type != STRING && token->type != QUOTED_STRING
        && kp_tokenIsWord(token, upperWord);
}

namespace {

bool tokenIsAnyWord(pANTLR3_COMMON_TOKEN token, std::initializer_list<const char *> upperWords)
{
    return token != nullptr && token->type != STRING && token->type != QUOTED_STRING &&
           tokenIsOneOf(token, upperWords.begin(), upperWords.end());
}

// After KEY, INDEX and the like: true when the tokens from LT(first) on read
// as an optional index name and the start of an index's column list.
bool indexFollows(pANTLR3_TOKEN_STREAM stream, ANTLR3_INT32 first)
{
    pANTLR3_COMMON_TOKEN next = stream->_LT(stream, first);
    if (next == nullptr || next->type == OPENPAREN || next->type == T_KEY || next->type == T_PRIMARY
        || tokenIsAnyWord(next, {"USING", "INDEX"})) {
        return true;
    }
    pANTLR3_COMMON_TOKEN after = stream->_LT(stream, first + 1);
    if (after == nullptr || kp_isKeyword(after, "USING")) {
        return true;
    }
    if (after->type != OPENPAREN) {
        return false;
    }
    // name ( 10 ) and name ( 'a', ... ) are a type with its size or values.
    pANTLR3_COMMON_TOKEN inside = stream->_LT(stream, first + 2);
    return inside == nullptr
        || !(inside->type == INT || (inside->type == QUOTED_STRING && kp_tokenText(inside).rfind('\'', 0) == 0));
}

} // namespace

bool kp_keywordColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN before = stream->_LT(stream, -1);
    if (before == nullptr || (before->type != COMMA && before->type != OPENPAREN)) {
        return false;
    }
    pANTLR3_COMMON_TOKEN word = stream->_LT(stream, 1);
    if (tokenIsAnyWord(word, {"KEY", "INDEX", "FULLTEXT", "CLUSTERED", "NONCLUSTERED"})) {
        return !indexFollows(stream, 2);
    }
    if (kp_isKeyword(word, "FULL") && kp_isKeyword(stream->_LT(stream, 2), "TEXT")) {
        return !indexFollows(stream, 3) && stream->_LT(stream, 3)->type != STRING
            && stream->_LT(stream, 3)->type != QUOTED_STRING;
    }
    return true;
}

namespace {

// Makes the word SPATIAL at LT(at) a FULLTEXT token when an index follows it.
void markSpatialIndexAt(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_INT32 at)
{
    // T__424 is the keyword 'FULLTEXT' (its number is fixed by lexer/keywords.txt).
    constexpr ANTLR3_UINT32 fulltextType = T__424;
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN word = stream->_LT(stream, at);
    if (kp_isWord(word, "SPATIAL") && indexFollows(stream, at + 1)) {
        word->setType(word, fulltextType);
    }
}

} // namespace

void kp_markSpatialIndex(pANTLR3_BASE_RECOGNIZER recognizer)
{
    markSpatialIndexAt(recognizer, 1);
}

void kp_markAddedSpatialIndex(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    if (kp_isKeyword(stream->_LT(stream, 1), "ADD")) {
        markSpatialIndexAt(recognizer, 2);
    }
}

bool kp_columnTypeAhead(pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr) {
        return false;
    }
    switch (token->type) {
    case COMMA:
    case CLOSEPAREN:
    case SEMI:
    case ANTLR3_TOKEN_EOF:
    case T_NOT:
    case T_DEFAULT:
    case T_PRIMARY:
    case T_CHECK:
        return false;
    default:
        break;
    }
    // Asked at every column: a text read in place whose first letter starts
    // none of the words below needs no comparisons.
    const char16_t *units = nullptr;
    size_t count = 0;
    if (kp_tokenUnits(token, &units, &count)) {
        switch (units[0]) {
        case u'N': case u'n': case u'U': case u'u': case u'R': case u'r': case u'C': case u'c':
        case u'A': case u'a': case u'O': case u'o': case u'G': case u'g':
            break;
        default:
            return true;
        }
    }
    return !tokenIsAnyWord(token, {"NULL", "UNIQUE", "REFERENCES", "CONSTRAINT", "COLLATE", "AUTOINCREMENT",
                                   "AUTO_INCREMENT", "ON", "GENERATED", "AS"});
}

namespace {

// What follows a column option word the model has no place for.
enum class OptionArguments {
    None,
    Integer,          // SRID 4326
    OneWord,          // COLUMN_FORMAT FIXED, STORAGE DISK, COMPRESSION lz4
    AssignedWord,     // MariaDB's COMPRESSED[=zlib]
    WithList,         // MASKED WITH (FUNCTION = 'default()'), ENCRYPTED WITH (...)
    TwoWords,         // COLUMN_SET FOR ALL_SPARSE_COLUMNS, SERIAL DEFAULT VALUE, WITHOUT SYSTEM VERSIONING
    Encryption,       // Oracle's ENCRYPT [USING 'a'] [IDENTIFIED BY p] ['i'] [[NO] SALT]
};

struct ColumnOptionWord {
    const char *word;
    OptionArguments arguments;
};

// SQL Server's ROWGUIDCOL, SPARSE, FILESTREAM, PERSISTED, MASKED, ENCRYPTED,
// COLUMN_SET and HIDDEN; MySQL's and Oracle's VISIBLE, INVISIBLE, VIRTUAL,
// STORED, SRID, COLUMN_FORMAT, STORAGE, SERIAL DEFAULT VALUE and SORT;
// MariaDB's COMPRESSED and WITHOUT SYSTEM VERSIONING; Oracle's ENCRYPT;
// PostgreSQL's STORAGE and COMPRESSION; GENERATED and ALWAYS of several.
constexpr ColumnOptionWord columnOptionWords[] = {
    {"GENERATED", OptionArguments::None},       {"ALWAYS", OptionArguments::None},
    {"ROWGUIDCOL", OptionArguments::None},      {"SPARSE", OptionArguments::None},
    {"FILESTREAM", OptionArguments::None},      {"PERSISTED", OptionArguments::None},
    {"VIRTUAL", OptionArguments::None},         {"STORED", OptionArguments::None},
    {"VISIBLE", OptionArguments::None},         {"INVISIBLE", OptionArguments::None},
    {"HIDDEN", OptionArguments::None},          {"SORT", OptionArguments::None},
    {"SRID", OptionArguments::Integer},         {"COLUMN_FORMAT", OptionArguments::OneWord},
    {"STORAGE", OptionArguments::OneWord},      {"COMPRESSION", OptionArguments::OneWord},
    {"COMPRESSED", OptionArguments::AssignedWord}, {"MASKED", OptionArguments::WithList},
    {"ENCRYPTED", OptionArguments::WithList},   {"COLUMN_SET", OptionArguments::TwoWords},
    {"SERIAL", OptionArguments::TwoWords},      {"WITHOUT", OptionArguments::TwoWords},
    {"ENCRYPT", OptionArguments::Encryption},
};

const ColumnOptionWord *columnOptionWord(pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr || token->type == QUOTED_STRING) {
        return nullptr;
    }
    for (const ColumnOptionWord &option : columnOptionWords) {
        if (kp_tokenIsWord(token, option.word)) {
            return &option;
        }
    }
    return nullptr;
}

// A name, a keyword or a number: a token that may stand as an option's word.
bool isWordLike(pANTLR3_COMMON_TOKEN token)
{
    const std::string text = kp_tokenText(token);
    return !text.empty() && (std::isalnum(static_cast<unsigned char>(text[0])) != 0 || text[0] == '_');
}

} // namespace

bool kp_isColumnOptionWord(pANTLR3_COMMON_TOKEN token)
{
    return columnOptionWord(token) != nullptr;
}

bool kp_skipColumnOptionArguments(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_INT_STREAM is = stream->istream;
    const ColumnOptionWord *option = columnOptionWord(stream->_LT(stream, -1));
    if (option == nullptr) {
        return true;
    }
    auto next = [stream]() { return stream->_LT(stream, 1); };
    auto consumeIf = [is](bool take) {
        if (take) {
            is->consume(is);
        }
        return take;
    };
    switch (option->arguments) {
    case OptionArguments::None:
        break;
    case OptionArguments::Integer:
        consumeIf(next()->type == INT);
        break;
    case OptionArguments::OneWord:
        consumeIf(isWordLike(next()));
        break;
    case OptionArguments::AssignedWord:
        if (consumeIf(next()->type == EQUALS)) {
            consumeIf(isWordLike(next()));
        }
        break;
    case OptionArguments::WithList:
        if (consumeIf(kp_tokenIsWord(next(), "WITH")) && consumeIf(next()->type == OPENPAREN)) {
            kp_skipToClosingParenthesis(recognizer);
            consumeIf(next()->type == CLOSEPAREN);
        }
        break;
    case OptionArguments::TwoWords:
        if (consumeIf(isWordLike(next()))) {
            consumeIf(isWordLike(next()));
        }
        break;
    case OptionArguments::Encryption:
        if (kp_tokenIsWord(next(), "USING")) {
            consumeIf(true);
            consumeIf(next()->type == QUOTED_STRING);
        }
        if (kp_tokenIsWord(next(), "IDENTIFIED")) {
            consumeIf(true);
            consumeIf(kp_tokenIsWord(next(), "BY"));
            consumeIf(isWordLike(next()) || next()->type == QUOTED_STRING);
        }
        consumeIf(next()->type == QUOTED_STRING);
        consumeIf(kp_tokenIsWord(next(), "NO"));
        consumeIf(kp_tokenIsWord(next(), "SALT"));
        break;
    }
    return true;
}

namespace {
// The mark of the exception that ends a column at an unknown word.
char columnEndMark;
} // namespace

void kp_endColumnAtWord(pANTLR3_BASE_RECOGNIZER recognizer)
{
    recognizer->exConstruct(recognizer);
    recognizer->state->exception->custom = &columnEndMark;
    recognizer->state->error = ANTLR3_TRUE;
}

void kp_dropColumnEndAtWord(pANTLR3_BASE_RECOGNIZER recognizer)
{
    kp_forgetRecognitionError(recognizer);
    recognizer->state->error = ANTLR3_FALSE;
}

bool kp_isColumnEndAtWord(pANTLR3_BASE_RECOGNIZER recognizer)
{
    return recognizer->state->exception != nullptr && recognizer->state->exception->custom == &columnEndMark;
}

void kp_retypeAsName(pANTLR3_COMMON_TOKEN token)
{
    if (token != nullptr && token->type != QUOTED_STRING) {
        token->setType(token, STRING);
    }
}

bool kp_isConstructEnd(pANTLR3_COMMON_TOKEN end, pANTLR3_COMMON_TOKEN next)
{
    if (end == nullptr || end->type != T_END || next == nullptr) {
        return false;
    }
    for (const char *word : {"IF", "LOOP", "REPEAT", "WHILE"}) {
        if (kp_tokenIsWord(next, word)) {
            return true;
        }
    }
    return false;
}

void kp_skipBlockBody(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_INT_STREAM input = stream->istream;
    // One entry per open nested block: true for CASE, whose END may be
    // followed by the word CASE.
    std::vector<bool> open;
    for (;;) {
        pANTLR3_COMMON_TOKEN token = stream->_LT(stream, 1);
        const ANTLR3_UINT32 type = token->type;
        if (type == ANTLR3_TOKEN_EOF) {
            return;
        }
        if (type == T_END) {
            if (kp_isConstructEnd(token, stream->_LT(stream, 2))) {
                input->consume(input);
            } else if (open.empty()) {
                return;
            } else {
                const bool closesCase = open.back();
                open.pop_back();
                if (closesCase && kp_isWord(stream->_LT(stream, 2), "CASE")) {
                    input->consume(input);
                }
            }
        } else if (type == T_BEGIN || kp_isWord(token, "CASE")) {
            open.push_back(type != T_BEGIN);
        }
        input->consume(input);
    }
}

namespace {

void appendTreeString(pANTLR3_BASE_TREE tree, std::string &out)
{
    const ANTLR3_UINT32 count = tree->getChildCount(tree);
    const bool isList = tree->isNilNode(tree) == ANTLR3_TRUE;
    if (count == 0) {
        if (!isList) {
            out += kp_nodeText(tree);
        }
        return;
    }
    if (!isList) {
        out += '(';
        out += kp_nodeText(tree);
        out += ' ';
    }
    for (ANTLR3_UINT32 i = 0; i < count; ++i) {
        if (i > 0) {
            out += ' ';
        }
        appendTreeString(static_cast<pANTLR3_BASE_TREE>(tree->getChild(tree, i)), out);
    }
    if (!isList) {
        out += ')';
    }
}

} // namespace

std::string AntlrTreeString(pANTLR3_BASE_TREE tree)
{
    std::string out;
    if (tree != nullptr) {
        appendTreeString(tree, out);
    }
    return out;
}

void AntlrAppendTreeItems(pANTLR3_BASE_TREE tree, std::string &out, bool &first)
{
    if (tree == nullptr) {
        return;
    }
    const bool isList = tree->isNilNode(tree) == ANTLR3_TRUE;
    const ANTLR3_UINT32 count = isList ? tree->getChildCount(tree) : 1;
    for (ANTLR3_UINT32 i = 0; i < count; ++i) {
        if (!first) {
            out += ' ';
        }
        first = false;
        appendTreeString(isList ? static_cast<pANTLR3_BASE_TREE>(tree->getChild(tree, i)) : tree, out);
    }
}

void consumeUntilToken(pANTLR3_TOKEN_STREAM stream, ANTLR3_UINT32 tokenType)
{
    auto stops = [tokenType](pANTLR3_COMMON_TOKEN token) {
        return token->type == tokenType || token->type == ANTLR3_TOKEN_EOF ||
               (tokenType == NEWLINE && token->type == SL_COMMENT);
    };
    if (sqlantlr::TokenWindow *window = sqlantlr::TokenWindow::of(stream)) {
        pANTLR3_COMMON_TOKEN previous = stream->_LT(stream, -1);
        ANTLR3_MARKER index = previous != nullptr ? previous->index + 1 : window->current();
        for (pANTLR3_COMMON_TOKEN token = window->raw(index); token != nullptr && !stops(token);
             token = window->raw(index)) {
            ++index;
        }
        window->moveTo(index);
        return;
    }
    auto tokens = static_cast<pANTLR3_COMMON_TOKEN_STREAM>(stream->super);
    const auto count = static_cast<ANTLR3_INT32>(tokens->tokens->count);
    // Scan the raw vector, hidden tokens included, from just after the token
    // that was matched last (its line break may be hidden behind it).
    pANTLR3_COMMON_TOKEN previous = stream->_LT(stream, -1);
    ANTLR3_INT32 index = previous != nullptr ? static_cast<ANTLR3_INT32>(previous->index) + 1 : tokens->p;
    if (index < 0 || index > count) {
        index = tokens->p;
    }
    while (index < count) {
        auto token = static_cast<pANTLR3_COMMON_TOKEN>(tokens->tokens->get(tokens->tokens, static_cast<ANTLR3_UINT32>(index)));
        if (stops(token)) {
            break;
        }
        ++index;
    }
    // The parser reads only its own channel: step over the hidden stop token.
    while (index < count) {
        auto token = static_cast<pANTLR3_COMMON_TOKEN>(tokens->tokens->get(tokens->tokens, static_cast<ANTLR3_UINT32>(index)));
        if (token->channel == tokens->channel) {
            break;
        }
        ++index;
    }
    tokens->p = index;
}

// ---- Source text carried on tokens -----------------------------------------

namespace {

// The UTF-16 text a token was read from, and where it ends.
struct SourceUnits {
    const char16_t *begin = nullptr;
    const char16_t *end = nullptr;
};

SourceUnits sourceUnits(pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr || token->input == nullptr || token->input->data == nullptr) {
        return {};
    }
    const auto *data = static_cast<const char *>(token->input->data);
    return {reinterpret_cast<const char16_t *>(data),
            reinterpret_cast<const char16_t *>(data + (token->input->sizeBuf & ~ANTLR3_UINT32(1)))};
}

// The unit after a token.
const char16_t *unitAfter(pANTLR3_COMMON_TOKEN token)
{
    return reinterpret_cast<const char16_t *>(reinterpret_cast<const char *>(token->stop) + 1);
}

// More of a text decoded as it is read, when a scan from `from` has met the
// end of what is decoded: true when `units` now end further on.
bool moreSourceUnits(pANTLR3_COMMON_TOKEN token, SourceUnits &units, const char16_t *from)
{
    if (token->input == nullptr || !kp_moreTextFor(token->input, from)) {
        return false;
    }
    units = sourceUnits(token);
    return true;
}

// Past blanks and line ends, decoding on where the text goes on.
const char16_t *skipBlanks(pANTLR3_COMMON_TOKEN token, SourceUnits &units, const char16_t *at)
{
    const char16_t *from = at;
    for (;;) {
        while (at < units.end && (*at == u' ' || *at == u'\t' || *at == u'\r' || *at == u'\n')) {
            ++at;
        }
        if (at < units.end || !moreSourceUnits(token, units, from)) {
            return at;
        }
    }
}

// The lexer skips a bracket that opens no name (ARRAY['a', 'b']), so a
// value whose last token stands just before such closing brackets ends
// after them: the kept text is the value as written.
const char16_t *endThroughSkippedBrackets(pANTLR3_COMMON_TOKEN stop)
{
    SourceUnits units = sourceUnits(stop);
    const char16_t *end = unitAfter(stop);
    for (const char16_t *at = skipBlanks(stop, units, end); at < units.end && *at == u']';
         at = skipBlanks(stop, units, end)) {
        end = at + 1;
    }
    return end;
}

} // namespace

bool kp_arrayConstructorAhead(pANTLR3_COMMON_TOKEN token)
{
    if (!kp_isWord(token, "ARRAY")) {
        return false;
    }
    SourceUnits units = sourceUnits(token);
    const char16_t *at = skipBlanks(token, units, unitAfter(token));
    return at < units.end && *at == u'[';
}

bool kp_skipArrayElements(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_INT_STREAM is = stream->istream;
    pANTLR3_COMMON_TOKEN array = stream->_LT(stream, -1);
    SourceUnits units = sourceUnits(array);
    if (units.begin == nullptr) {
        return true;
    }
    // To the bracket that closes the one after ARRAY, past quoted texts; the
    // elements' tokens and any bracket the lexer read as part of a token
    // (int[], a bracketed name) lie before it.
    const char16_t *from = unitAfter(array);
    const char16_t *at = skipBlanks(array, units, from);
    long depth = 0;
    while (at < units.end || moreSourceUnits(array, units, from)) {
        const char16_t unit = *at++;
        if (unit == u'\'' || unit == u'"') {
            while ((at < units.end || moreSourceUnits(array, units, from)) && *at != unit) {
                ++at;
            }
            at += at < units.end ? 1 : 0;
        } else if (unit == u'[') {
            ++depth;
        } else if (unit == u']' && --depth == 0) {
            break;
        } else if (unit == u';') {
            break;
        }
    }
    for (pANTLR3_COMMON_TOKEN next = stream->_LT(stream, 1);
         next->type != ANTLR3_TOKEN_EOF && next->type != SEMI &&
         reinterpret_cast<const char16_t *>(next->start) < at;
         next = stream->_LT(stream, 1)) {
        is->consume(is);
    }
    return true;
}

std::string kp_sourceText(pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    if (start == nullptr || stop == nullptr || start->input == nullptr || start->input->data == nullptr ||
        start->type == ANTLR3_TOKEN_EOF || stop->type == ANTLR3_TOKEN_EOF) {
        return {};
    }
    // Token bounds are addresses in the UTF-16 buffer: start is the first
    // byte of the first unit, stop the last byte of the last unit.
    const auto *data = static_cast<const char *>(start->input->data);
    const char *limit = data + start->input->sizeBuf;
    const auto *from = reinterpret_cast<const char *>(start->start);
    const auto *to = reinterpret_cast<const char *>(stop->stop) + 1;
    if (from < data || to > limit || to <= from) {
        return {};
    }
    return kp_utf16Slice(reinterpret_cast<const char16_t *>(from), static_cast<size_t>(to - from) / 2);
}

std::string kp_valueSourceText(pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    std::string text = kp_sourceText(start, stop);
    if (text.empty()) {
        return text;
    }
    const char16_t *end = endThroughSkippedBrackets(stop);
    if (end != unitAfter(stop)) {
        text += kp_utf16Slice(unitAfter(stop), static_cast<size_t>(end - unitAfter(stop)));
    }
    return text;
}

void setCustomStringValueOnToken(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN carrier,
                                 pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    ParseSession *session = kp_session(recognizer);
    if (carrier == nullptr || session == nullptr) {
        return;
    }
    // A value that failed to parse before its first token has no text: the
    // carrier then carries none, and the value stays unset.
    std::string text = kp_valueSourceText(start, stop);
    if (text.empty()) {
        return;
    }
    carrier->custom = const_cast<std::string *>(session->addCustomValue(std::move(text)));
}

void kp_carryTextInside(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN carrier,
                        pANTLR3_COMMON_TOKEN open, pANTLR3_COMMON_TOKEN close)
{
    if (open == nullptr || close == nullptr || close->index <= open->index + 1) {
        return;
    }
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    auto onDefaultChannel = [stream](ANTLR3_MARKER i) {
        pANTLR3_COMMON_TOKEN token = stream->get(stream, static_cast<ANTLR3_UINT32>(i));
        return token != nullptr && token->channel == ANTLR3_TOKEN_DEFAULT_CHANNEL ? token : nullptr;
    };
    pANTLR3_COMMON_TOKEN first = nullptr;
    pANTLR3_COMMON_TOKEN last = nullptr;
    for (ANTLR3_MARKER i = open->index + 1; i < close->index && first == nullptr; ++i) {
        first = onDefaultChannel(i);
    }
    for (ANTLR3_MARKER i = close->index - 1; i > open->index && last == nullptr; --i) {
        last = onDefaultChannel(i);
    }
    if (first != nullptr && last != nullptr) {
        setCustomStringValueOnToken(recognizer, carrier, first, last);
    }
}

void kp_carryIndexExpression(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_BASE_TREE carrier,
                             pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    ParseSession *session = kp_session(recognizer);
    pANTLR3_COMMON_TOKEN token = carrier != nullptr ? carrier->getToken(carrier) : nullptr;
    if (session == nullptr || token == nullptr || start == nullptr || stop == nullptr) {
        return;
    }
    // Drop the parentheses only when the one that opens the expression is
    // the one that closes it: not for (a) + (b).
    if (start->type == OPENPAREN && stop->type == CLOSEPAREN && stop->index > start->index) {
        pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
        int depth = 0;
        bool wraps = true;
        for (ANTLR3_MARKER i = start->index; i <= stop->index && wraps; ++i) {
            pANTLR3_COMMON_TOKEN inner = stream->get(stream, static_cast<ANTLR3_UINT32>(i));
            if (inner == nullptr || inner->channel != ANTLR3_TOKEN_DEFAULT_CHANNEL) {
                continue;
            }
            depth += inner->type == OPENPAREN ? 1 : inner->type == CLOSEPAREN ? -1 : 0;
            wraps = depth > 0 || i == stop->index;
        }
        if (wraps) {
            std::string text = kp_sourceText(start, stop);
            text = text.size() > 2 ? text.substr(1, text.size() - 2) : std::string();
            const size_t first = text.find_first_not_of(" \t\r\n");
            text = first == std::string::npos ? std::string()
                                              : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
            if (!text.empty()) {
                token->custom = const_cast<std::string *>(session->addCustomValue(std::move(text)));
            }
            return;
        }
    }
    std::string text = kp_sourceText(start, stop);
    if (!text.empty()) {
        token->custom = const_cast<std::string *>(session->addCustomValue(std::move(text)));
    }
}

const std::string *kp_customValue(pANTLR3_BASE_TREE node)
{
    pANTLR3_COMMON_TOKEN token = node != nullptr ? node->getToken(node) : nullptr;
    return token != nullptr ? static_cast<const std::string *>(token->custom) : nullptr;
}

// ---- Recovery inside a table definition and skips ---------------------------

namespace {

pANTLR3_INT_STREAM parserStream(pANTLR3_BASE_RECOGNIZER recognizer)
{
    return static_cast<pANTLR3_PARSER>(recognizer->super)->tstream->istream;
}

} // namespace

void kp_requireTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_INT_STREAM is = parserStream(recognizer);
    const ANTLR3_UINT32 next = is->_LA(is, 1);
    if (next == COMMA || next == CLOSEPAREN || next == SEMI || next == ANTLR3_TOKEN_EOF) {
        return;
    }
    recognizer->exConstruct(recognizer);
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    ex->type = ANTLR3_MISMATCHED_TOKEN_EXCEPTION;
    ex->name = const_cast<char *>(ANTLR3_MISMATCHED_EX_NAME);
    ex->expecting = CLOSEPAREN;
    recognizer->state->error = ANTLR3_TRUE;
}

void kp_recoverToTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer, bool endAtEntryInside)
{
    pANTLR3_INT_STREAM is = parserStream(recognizer);
    pANTLR3_TOKEN_STREAM tokens = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    recognizer->beginResync(recognizer);
    long depth = 0;
    bool passed = false;          // a line that starts the next statement went with the entry
    ANTLR3_MARKER innerEnd = -1;  // a comma inside parentheses before what looks like an entry
    for (;;) {
        const ANTLR3_UINT32 next = is->_LA(is, 1);
        if (next == ANTLR3_TOKEN_EOF || next == SEMI || (depth == 0 && (next == COMMA || next == CLOSEPAREN))) {
            break;
        }
        passed = passed || kp_startsStatementLine(tokens->_LT(tokens, 1));
        if (endAtEntryInside && next == COMMA && depth > 0 && innerEnd < 0 && !passed &&
            kp_entryStartAhead(tokens->_LT(tokens, 2), tokens->_LT(tokens, 3))) {
            innerEnd = is->index(is);
        }
        depth += next == OPENPAREN ? 1 : next == CLOSEPAREN ? -1 : 0;
        is->consume(is);
    }
    const ANTLR3_UINT32 stop = is->_LA(is, 1);
    if ((stop == SEMI || stop == ANTLR3_TOKEN_EOF) && innerEnd >= 0) {
        // A parenthesis of the entry never closed and took the table's own
        // closing one: the entry ends at the comma before the next entry.
        is->seek(is, innerEnd);
    } else if (passed || stop == ANTLR3_TOKEN_EOF) {
        kp_reportRunOnStatement(recognizer, tokens->_LT(tokens, 1));
    }
    recognizer->endResync(recognizer);
    recognizer->state->lastErrorIndex = is->index(is);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
}

pANTLR3_BASE_TREE kp_treeEndingInError(pANTLR3_BASE_TREE_ADAPTOR adaptor, pANTLR3_BASE_TREE partial,
                                       pANTLR3_BASE_TREE errorNode)
{
    if (errorNode == nullptr) {
        return partial;
    }
    if (partial == nullptr || (partial->isNilNode(partial) && partial->getChildCount(partial) == 0)) {
        return errorNode;
    }
    pANTLR3_BASE_TREE last = partial;
    if (partial->isNilNode(partial)) {
        last = static_cast<pANTLR3_BASE_TREE>(partial->getChild(partial, partial->getChildCount(partial) - 1));
    }
    if (last != nullptr && last->getType(last) == ERROR_NODE) {
        return partial;  // a sub-rule's error already ends the tree
    }
    auto root = static_cast<pANTLR3_BASE_TREE>(adaptor->nilNode(adaptor));
    adaptor->addChild(adaptor, root, partial);
    adaptor->addChild(adaptor, root, errorNode);
    return root;
}

namespace {

// A name or a word: quoted, or a token whose text starts with a letter or an
// underscore (keywords included).
bool isWordToken(pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF) {
        return false;
    }
    if (token->type == STRING || token->type == QUOTED_STRING) {
        return true;
    }
    const std::string text = kp_tokenText(token);
    return !text.empty() && (std::isalpha(static_cast<unsigned char>(text[0])) != 0 || text[0] == '_');
}

} // namespace

bool kp_entryStartAhead(pANTLR3_COMMON_TOKEN name, pANTLR3_COMMON_TOKEN next)
{
    if (name == nullptr) {
        return false;
    }
    if (name->type != STRING && name->type != QUOTED_STRING &&
        tokenIsAnyWord(name, {"CONSTRAINT", "PRIMARY", "UNIQUE", "FOREIGN", "CHECK", "KEY", "INDEX"})) {
        return true;
    }
    return isWordToken(name) && isWordToken(next) && kp_columnTypeAhead(next);
}

void kp_walkTree(pANTLR3_BASE_TREE root, const std::function<TreeVisit(pANTLR3_BASE_TREE node)> &visit)
{
    std::vector<pANTLR3_BASE_TREE> pending;
    if (root != nullptr) {
        pending.push_back(root);
    }
    while (!pending.empty()) {
        pANTLR3_BASE_TREE node = pending.back();
        pending.pop_back();
        const TreeVisit next = visit(node);
        if (next == TreeVisit::Stop) {
            return;
        }
        if (next == TreeVisit::SkipChildren) {
            continue;
        }
        for (ANTLR3_UINT32 i = node->getChildCount(node); i > 0; --i) {
            auto child = static_cast<pANTLR3_BASE_TREE>(node->getChild(node, i - 1));
            if (child != nullptr) {
                pending.push_back(child);
            }
        }
    }
}

bool kp_treeHasRecoveryMark(pANTLR3_BASE_TREE tree)
{
    bool found = false;
    kp_walkTree(tree, [&found](pANTLR3_BASE_TREE node) {
        found = kp_isRecoveryNode(node);
        return found ? TreeVisit::Stop : TreeVisit::Descend;
    });
    return found;
}

pANTLR3_BASE_TREE kp_endTableColumn(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_BASE_TREE_ADAPTOR adaptor,
                                    pANTLR3_BASE_TREE tree, ANTLR3_MARKER entryStart, KpRecoveryCheckpoint before,
                                    pANTLR3_COMMON_TOKEN first)
{
    if (recognizer->state->backtracking > 0) {
        return tree;
    }
    // The tree is only searched when recovery made something since the column began.
    const bool readWhole = recognizer->state->errorCount == before.errors &&
                           (kp_recoveryMarkCount() == before.marks || !kp_treeHasRecoveryMark(tree));
    const bool pending = recognizer->state->error == ANTLR3_TRUE;
    if (readWhole && !pending) {
        return tree;
    }
    if (pending) {
        recognizer->reportError(recognizer);
    }
    pANTLR3_INT_STREAM is = parserStream(recognizer);
    pANTLR3_TOKEN_STREAM tokens = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    if (readWhole && kp_startsStatementLine(tokens->_LT(tokens, 1))) {
        // The column was read whole and the next statement starts right
        // after it: the list was never closed. The column stays; the
        // statement is reported as unended, and the error node after the
        // column gives the list's own record.
        kp_recoverToTableEntryEnd(recognizer);
        auto error = static_cast<pANTLR3_BASE_TREE>(
            adaptor->errorNode(adaptor, tokens, first, tokens->_LT(tokens, -1), recognizer->state->exception));
        kp_forgetRecognitionError(recognizer);
        return kp_treeEndingInError(adaptor, tree, error);
    }
    // From the token after the entry's first one (the column's name) to the
    // COMMA or CLOSEPAREN outside every parenthesis; recovery inside the
    // column may have stopped before that end or gone past it.
    is->seek(is, entryStart);
    is->consume(is);
    kp_recoverToTableEntryEnd(recognizer, true);
    kp_forgetRecognitionError(recognizer);
    return static_cast<pANTLR3_BASE_TREE>(adaptor->errorNode(adaptor, tokens, first, first, nullptr));
}

long kp_skipBalancedTokens(pANTLR3_TOKEN_STREAM stream, bool delimiterEnds,
                           const std::function<bool(ANTLR3_UINT32 type)> &stopsAtTop)
{
    pANTLR3_INT_STREAM is = stream->istream;
    long depth = 0;
    for (;;) {
        const ANTLR3_UINT32 next = is->_LA(is, 1);
        if (next == ANTLR3_TOKEN_EOF || next == SEMI || (delimiterEnds && next == T_DELIMITER) ||
            (depth == 0 && stopsAtTop(next))) {
            return depth;
        }
        depth += next == OPENPAREN ? 1 : next == CLOSEPAREN ? -1 : 0;
        is->consume(is);
    }
}

bool kp_skipToClosingParenthesis(pANTLR3_BASE_RECOGNIZER recognizer)
{
    kp_skipBalancedTokens(static_cast<pANTLR3_PARSER>(recognizer->super)->tstream, true,
                          [](ANTLR3_UINT32 type) { return type == CLOSEPAREN; });
    return true;
}

bool kp_skipValueInParentheses(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    kp_skipBalancedTokens(stream, true, [stream](ANTLR3_UINT32 type) {
        return type == CLOSEPAREN ||
               (type == COMMA && kp_entryStartAhead(stream->_LT(stream, 2), stream->_LT(stream, 3)));
    });
    return true;
}

bool kp_skipIndexExpressionRest(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    kp_skipBalancedTokens(stream, false, [stream](ANTLR3_UINT32 type) {
        return type == CLOSEPAREN || type == COMMA ||
               tokenIsAnyWord(stream->_LT(stream, 1), {"ASC", "DESC", "NULLS", "COLLATE"});
    });
    return true;
}

// ---- Tree walker: texts and recovery ------------------------------------------

ANTLR3_UINT32 kp_literalType(const char *word)
{
    // The parser's literal token names ('WORD') by their text, made once: the
    // plain readers ask for a few hundred words when a parse first needs them.
    static const std::unordered_map<std::string_view, ANTLR3_UINT32> literals = [] {
        std::unordered_map<std::string_view, ANTLR3_UINT32> byText;
        for (ANTLR3_UINT32 i = 4; i < kp_parserTokenCount; ++i) {
            const auto *name = reinterpret_cast<const char *>(VellumGrammarCParserTokenNames[i]);
            const size_t length = name != nullptr ? std::strlen(name) : 0;
            if (length >= 2 && name[0] == '\'' && name[length - 1] == '\'') {
                byText.emplace(std::string_view(name + 1, length - 2), i);  // the first of a text wins
            }
        }
        return byText;
    }();
    const auto found = literals.find(word);
    return found != literals.end() ? found->second : 0;
}

namespace {

// Appends the separator (unless it is '\0') and the token's text. A short
// ASCII token is narrowed on the stack in one pass and appended with one
// copy; anything else takes kp_tokenText's conversion.
void appendToken(std::string &out, char separator, pANTLR3_COMMON_TOKEN token)
{
    const char16_t *units = nullptr;
    size_t count = 0;
    char piece[64];
    size_t used = 0;
    if (separator != '\0') {
        piece[used++] = separator;
    }
    if (kp_tokenUnits(token, &units, &count) && count <= sizeof piece - used) {
        char16_t any = 0;
        for (size_t i = 0; i < count; ++i) {
            any |= units[i];
            piece[used + i] = static_cast<char>(units[i]);
        }
        if (any < 0x80) {
            out.append(piece, used + count);
            return;
        }
    }
    if (separator != '\0') {
        out += separator;
    }
    out += kp_tokenText(token);
}

} // namespace

void kp_appendTokenText(std::string &out, pANTLR3_COMMON_TOKEN token)
{
    appendToken(out, '\0', token);
}

void kp_appendRunWord(std::string &text, bool first, pANTLR3_COMMON_TOKEN token)
{
    const size_t wordStart = text.size() + (first ? 0 : 1);
    appendToken(text, first ? '\0' : ' ', token);
    // A bracketed word is a quoted name of SQL Server: [int] is the type int.
    // PostgreSQL's array bounds keep their brackets: int [], int [3].
    if (token != nullptr && token->type != ARRAY_BOUNDS && text.size() - wordStart >= 2 && text[wordStart] == '[' &&
        text.back() == ']') {
        text.pop_back();
        text.erase(wordStart, 1);
    }
}

std::string kp_nodeRunText(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from)
{
    std::string text;
    bool first = true;
    bool recovered = false;
    kp_forEachRunNode(recognizer, from, [&text, &first, &recovered](pANTLR3_BASE_TREE node) {
        if (kp_isRecoveryNode(node)) {
            recovered = true;
            return false;
        }
        kp_appendRunWord(text, first, node->getToken(node));
        first = false;
        return true;
    });
    return recovered ? std::string() : text;
}

const std::string *kp_keepText(pANTLR3_BASE_RECOGNIZER recognizer, std::string text)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr) {
        static thread_local std::string scratch;  // only when walked outside a driver
        scratch = std::move(text);
        return &scratch;
    }
    return session->addCustomValue(std::move(text));
}

const std::string *kp_keepRunText(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from, bool parenthesised)
{
    std::string text = kp_nodeRunText(recognizer, from);
    if (text.empty()) {
        return nullptr;
    }
    return kp_keepText(recognizer, parenthesised ? "(" + text + ")" : std::move(text));
}

bool kp_isWordNode(pANTLR3_BASE_TREE node, const char *upperWord)
{
    return node != nullptr && kp_isWord(node->getToken(node), upperWord);
}

void kp_skipToTableEntryEndInTree(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER entryStart)
{
    pANTLR3_TREE_NODE_STREAM nodes = static_cast<pANTLR3_TREE_PARSER>(recognizer->super)->ctnstream->tnstream;
    pANTLR3_INT_STREAM is = nodes->istream;
    auto depthChange = [](ANTLR3_UINT32 type) { return type == OPENPAREN ? 1 : type == CLOSEPAREN ? -1 : 0; };
    long depth = 0;
    for (ANTLR3_MARKER i = entryStart; i < is->index(is); ++i) {
        auto node = static_cast<pANTLR3_BASE_TREE>(nodes->get(nodes, static_cast<ANTLR3_INT32>(i)));
        depth += node != nullptr ? depthChange(node->getType(node)) : 0;
    }
    recognizer->beginResync(recognizer);
    for (;;) {
        const ANTLR3_UINT32 next = is->_LA(is, 1);
        if (next == ANTLR3_TOKEN_EOF || next == SEMI || (depth <= 0 && (next == COMMA || next == CLOSEPAREN))) {
            break;
        }
        depth += depthChange(next);
        is->consume(is);
    }
    recognizer->endResync(recognizer);
    recognizer->state->lastErrorIndex = is->index(is);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
}

namespace {

// A word of any token type, keywords included, in any case.
bool hasWord(pANTLR3_COMMON_TOKEN token, const char *upperWord)
{
    return kp_tokenIsWord(token, upperWord);
}

// The end of the dollar-quoted text that opens at the token, as the lexer
// noted it; nullptr when none opens there.
const char16_t *dollarQuoteEnd(pANTLR3_COMMON_TOKEN sign)
{
    const size_t units = kp_dollarQuoteUnits(sign);
    return units == 0 ? nullptr : reinterpret_cast<const char16_t *>(sign->start) + units;
}

bool startsBefore(pANTLR3_COMMON_TOKEN token, const char16_t *end)
{
    return token->type != ANTLR3_TOKEN_EOF && reinterpret_cast<const char16_t *>(token->start) < end;
}

// Consumes a dollar-quoted text that opens at LT(1), its opening and closing
// tags included; stops before the last token that starts inside it.
void skipDollarQuote(pANTLR3_TOKEN_STREAM stream)
{
    pANTLR3_INT_STREAM input = stream->istream;
    const char16_t *end = dollarQuoteEnd(stream->_LT(stream, 1));
    while (end != nullptr && startsBefore(stream->_LT(stream, 2), end)) {
        input->consume(input);
    }
}

// How many tokens from LT(first) on a dollar-quoted value takes after its
// sign, the closing tag's last token included; 0 when no quote opens at the
// sign or it does not close within a value's reach (its statement may be
// broken, and the rest of the script must not vanish into it).
ANTLR3_INT32 dollarValueLength(pANTLR3_TOKEN_STREAM stream, pANTLR3_COMMON_TOKEN sign, ANTLR3_INT32 first)
{
    constexpr ANTLR3_INT32 reach = 4096;
    const char16_t *end = dollarQuoteEnd(sign);
    if (end == nullptr) {
        return 0;
    }
    ANTLR3_INT32 count = 0;
    while (startsBefore(stream->_LT(stream, first + count), end)) {
        if (++count > reach) {
            return 0;
        }
    }
    return count;
}

const char *const routineWords[] = {"PROCEDURE", "PROC", "FUNCTION", "PACKAGE", "EVENT", "AGGREGATE", "RULE", "LIBRARY"};

} // namespace

int kp_routineKind(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    bool definer = false;
    for (ANTLR3_INT32 k = 1; k <= 12; ++k) {
        pANTLR3_COMMON_TOKEN token = stream->_LT(stream, k);
        if (token->type == ANTLR3_TOKEN_EOF || token->type == SEMI || token->type == OPENPAREN) {
            return 0;
        }
        if (tokenIsOneOf(token, std::begin(routineWords), std::end(routineWords))) {
            return 1;
        }
        if (hasWord(token, "TRIGGER")) {
            return 2;
        }
        if (hasWord(token, "TYPE")) {
            return hasWord(stream->_LT(stream, k + 1), "BODY") ? 1 : 0;
        }
        if (definer && hasWord(token, "VIEW")) {
            // The parser's DEFINER edge is open only under this answer (the
            // routine alternative's gate stands on the whole edge); the view's
            // own look-ahead then picks the view. After OR REPLACE is read.
            return k > 1 && hasWord(stream->_LT(stream, 1), "DEFINER") ? 3 : 0;
        }
        if (hasWord(token, "DEFINER")) {
            definer = true;
        } else if (!definer && !hasWord(token, "EDITIONABLE") && !hasWord(token, "NONEDITIONABLE") &&
                   !hasWord(token, "CONSTRAINT") && !hasWord(token, "OR") && !hasWord(token, "ALTER") &&
                   !hasWord(token, "REPLACE")) {
            return 0;
        }
    }
    return 0;
}

bool kp_tableKindAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    auto isTemporary = [](pANTLR3_COMMON_TOKEN token) {
        return kp_isKeyword(token, "TEMPORARY") || kp_isKeyword(token, "TEMP");
    };
    pANTLR3_COMMON_TOKEN word = stream->_LT(stream, 1);
    ANTLR3_INT32 table = 2;
    if (kp_isKeyword(word, "GLOBAL") || kp_isKeyword(word, "LOCAL") || kp_isWord(word, "PRIVATE")) {
        if (!isTemporary(stream->_LT(stream, 2))) {
            return false;
        }
        table = 3;
    } else if (!isTemporary(word) && !kp_isWord(word, "UNLOGGED")) {
        return false;
    }
    return kp_isKeyword(stream->_LT(stream, table), "TABLE");
}

void kp_reportUnknownTableKind(pANTLR3_BASE_RECOGNIZER recognizer)
{
    sqlantlr::ParseSession *session = kp_session(recognizer);
    if (session == nullptr || recognizer->state->backtracking > 0) {
        return;
    }
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    static const char *const linkingWords[] = {"TYPE", "AS", "FOR", "ON", "IN", "TO"};
    if (hasWord(stream->_LT(stream, 1), "VIRTUAL")) {
        return;  // SQLite's module tables: module arguments, no columns, no table of the model
    }
    std::string words;
    for (ANTLR3_INT32 k = 1; k <= 4; ++k) {
        pANTLR3_COMMON_TOKEN token = stream->_LT(stream, k);
        if (k > 1 && kp_isKeyword(token, "TABLE")) {
            pANTLR3_COMMON_TOKEN first = stream->_LT(stream, 1);
            session->addException("Unknown kind of table '" + words + "' - table not read",
                                  static_cast<int>(first->line), first->charPosition);
            return;
        }
        if (token->type == ANTLR3_TOKEN_EOF || token->type == QUOTED_STRING) {
            return;
        }
        const std::string text = kp_tokenText(token);
        if (text.empty() || std::isalpha(static_cast<unsigned char>(text[0])) == 0 ||
            std::any_of(std::begin(linkingWords), std::end(linkingWords),
                        [&](const char *w) { return hasWord(token, w); })) {
            return;
        }
        words += (words.empty() ? "" : " ") + text;
    }
}

bool kp_dollarQuoteAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    return dollarValueLength(stream, stream->_LT(stream, 1), 2) > 0;
}

bool kp_skipDollarQuote(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    for (ANTLR3_INT32 left = dollarValueLength(stream, stream->_LT(stream, -1), 1); left > 0; --left) {
        stream->istream->consume(stream->istream);
    }
    return true;
}

bool kp_isDollarBlock(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    return hasWord(stream->_LT(stream, 1), "DO") &&
           (kp_dollarQuoteUnits(stream->_LT(stream, 2)) != 0 || hasWord(stream->_LT(stream, 2), "LANGUAGE"));
}

namespace {

// The walk over a routine's tokens after its first word, up to where the
// routine ends.
class RoutineScan {
public:
    enum class End {
        Closed,     // at its terminator, the END of its body, a marked end or a DELIMITER line
        Stopped,    // before the next statement, inside a body that never closed
        InputEnd,   // at the end of the input
    };

    RoutineScan(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_TOKEN_STREAM stream)
        : recognizer_(recognizer), stream_(stream)
    {
    }

    // Consumes up to where the routine ends. A probe only tells whether the
    // body closes: it takes no early stop and reports nothing.
    End run(bool probe);

private:
    // At a ";" inside a body that is still open, followed by a line that
    // starts another statement: true when the body does not close before
    // the statement after that line could no longer be part of it (the end
    // of the input, or a CREATE line). Looked ahead once per routine.
    bool runsAway();

    pANTLR3_BASE_RECOGNIZER recognizer_;
    pANTLR3_TOKEN_STREAM stream_;
    int depth_ = 0;
    int parens_ = 0;
    bool package_ = false;      // PACKAGE, TYPE BODY: IS/AS opens a level closed by the last END
    bool declarative_ = false;  // IS/AS/DECLARE before the body: its ; end declarations
    bool closed_ = false;       // the END of the body has been met
    bool statements_ = false;   // a statement word at the top level: AS is no header any more
    bool passedSemicolon_ = false;
    bool closesLater_ = false;  // a look-ahead found that the body closes
};

bool RoutineScan::runsAway()
{
    if (closesLater_) {
        return false;
    }
    pANTLR3_INT_STREAM input = stream_->istream;
    const ANTLR3_MARKER marker = input->mark(input);
    RoutineScan ahead = *this;
    const bool away = ahead.run(true) != End::Closed;
    input->rewind(input, marker);
    closesLater_ = !away;
    return away;
}

RoutineScan::End RoutineScan::run(bool probe)
{
    pANTLR3_TOKEN_STREAM stream = stream_;
    pANTLR3_INT_STREAM input = stream->istream;
    for (;;) {
        pANTLR3_COMMON_TOKEN token = stream->_LT(stream, 1);
        pANTLR3_COMMON_TOKEN next = stream->_LT(stream, 2);  // fetched first: it may mark token
        const ANTLR3_UINT32 type = token->type;
        if (type == ANTLR3_TOKEN_EOF) {
            if (passedSemicolon_ && !probe) {
                // Statements after a ";" it could not end at went with it.
                kp_reportRunOnStatement(recognizer_, token);
            }
            return End::InputEnd;
        }
        if (type == T_DELIMITER || token->user2 == kp_routineEndMark) {
            // A GO, "/" or DELIMITER line ends the routine; one inside a body
            // that is still open shows that the body never closed.
            if (type != T_DELIMITER) {
                input->consume(input);
            }
            return probe && depth_ > 0 ? End::Stopped : End::Closed;
        }
        const bool top = depth_ == 0 && parens_ == 0;
        if (kp_dollarQuoteUnits(token) != 0) {
            skipDollarQuote(stream);
        } else if (type == OPENPAREN) {
            ++parens_;
        } else if (type == CLOSEPAREN) {
            parens_ = std::max(0, parens_ - 1);
        } else if (type == SEMI) {
            // A CREATE after a ";" at the top level, or at the start of a line
            // inside a block that never closed, is the next statement. So is
            // a line starting with ALTER, DROP or INSERT inside a body that
            // does not close before the script's next CREATE line.
            const bool create = hasWord(next, "CREATE") && (top || next->charPosition == 0);
            const bool ended = top && (closed_ || !declarative_);
            if (ended) {
                input->consume(input);
                return End::Closed;
            }
            if (create || (!probe && depth_ > 0 && kp_startsStatementLine(next) && runsAway())) {
                if (!probe && depth_ > 0) {
                    kp_reportRunOnStatement(recognizer_, next);
                }
                input->consume(input);
                return End::Stopped;
            }
            passedSemicolon_ = true;
        } else if (type == T_END) {
            if (kp_isConstructEnd(token, next)) {
                input->consume(input);
            } else if (depth_ <= 1) {
                depth_ = 0;
                closed_ = true;
                // END [name] followed by anything but ";" ends the routine at the END.
                const std::string text = kp_tokenText(next);
                const bool named = !text.empty() && std::isalpha(static_cast<unsigned char>(text[0])) != 0 &&
                                   !hasWord(next, "CREATE") && stream->_LT(stream, 3)->type == SEMI;
                if (next->type != SEMI && !named) {
                    input->consume(input);
                    return End::Closed;
                }
            } else {
                --depth_;
                if (hasWord(next, "CASE")) {
                    input->consume(input);
                }
            }
        } else if ((type == T_BEGIN && !hasWord(next, "TRAN") && !hasWord(next, "TRANSACTION") &&
                    !hasWord(next, "DISTRIBUTED")) ||
                   hasWord(token, "CASE")) {
            ++depth_;  // BEGIN TRAN[SACTION] of SQL Server opens no block
        } else if (top && !closed_) {
            if (hasWord(token, "PACKAGE") || (hasWord(token, "TYPE") && hasWord(next, "BODY"))) {
                package_ = true;
            } else if (hasWord(token, "COMPOUND") && hasWord(next, "TRIGGER")) {
                ++depth_;
            } else if (type == T_DECLARE) {
                declarative_ = true;
            } else if ((hasWord(token, "IS") || hasWord(token, "AS")) && !statements_ &&
                       kp_dollarQuoteUnits(next) == 0 && next->type != QUOTED_STRING && !hasWord(next, "ON")) {
                if (package_) {
                    ++depth_;
                    package_ = false;
                } else {
                    declarative_ = true;
                }
            } else if (hasWord(token, "SELECT") || hasWord(token, "INSERT") || hasWord(token, "UPDATE") ||
                       hasWord(token, "DELETE") || hasWord(token, "SET")) {
                statements_ = true;
            }
        }
        input->consume(input);
    }
}

} // namespace

bool kp_skipRoutine(pANTLR3_BASE_RECOGNIZER recognizer)
{
    RoutineScan(recognizer, static_cast<pANTLR3_PARSER>(recognizer->super)->tstream).run(false);
    return true;
}
