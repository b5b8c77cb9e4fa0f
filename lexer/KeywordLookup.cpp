// Names and keywords for the lexer's STRING rule: the rest of a name read in
// one pass, and the keyword type of the word. The keywords come from
// lexer/keywords.txt (generated into KeywordTable.inc); a keyword matches in
// any case, as the upper-cased look-ahead of the lexer sees it.
#include "InputMoves.h"
#include "KpAntlrStringOperations.h"
#include "RecognizerSupport.h"
#include "VellumGrammarCLexer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace {

struct KeywordEntry {
    const char *word;
    ANTLR3_UINT32 type;
    // The keyword includes one blank after the word ('OVERFLOW '): without
    // the blank the word is another keyword or a plain name.
    bool trailingBlank;
};

constexpr KeywordEntry keywordEntries[] = {
#include "KeywordTable.inc"
};

constexpr size_t entryCount = sizeof(keywordEntries) / sizeof(keywordEntries[0]);

constexpr bool typesFitSixteenBits()
{
    for (const KeywordEntry &entry : keywordEntries) {
        if (entry.type > 0xFFFF) {
            return false;
        }
    }
    return true;
}
static_assert(typesFitSixteenBits(), "a keyword table slot keeps token types in 16 bits");

// Open addressing over a power-of-two table at most two fifths full, so
// a look-up for a name that is no keyword usually ends at an empty slot. A
// slot holds its word's first eight letters, its length and both its types:
// a look-up reads one slot, of 16 bytes, per probe, and only a word of more
// than eight letters is compared further, with the keyword's text.
class KeywordTable {
public:
    static constexpr size_t maxLength = 40;
    // The letters a slot holds; a word's letters after them are zero up to
    // here (see WordScan).
    static constexpr size_t headLength = 8;

    // The types of a word: alone, and with a trailing blank (0 when the list
    // has no such keyword). UNION and MAX_ROWS are listed both ways.
    struct Types {
        ANTLR3_UINT32 alone = 0;
        ANTLR3_UINT32 withBlank = 0;
    };

    KeywordTable()
    {
        for (size_t i = 0; i < entryCount; ++i) {
            const KeywordEntry &entry = keywordEntries[i];
            char head[headLength] = {};
            const size_t length = std::strlen(entry.word);
            std::memcpy(head, entry.word, std::min(length, headLength));
            const uint64_t headWord = load(head);
            size_t slot = slotOf(headWord, length);
            while (slots_[slot].length != 0 && !(slots_[slot].head == headWord && slots_[slot].length == length &&
                                                  sameRest(slots_[slot], entry.word, length))) {
                slot = (slot + 1) & mask;
            }
            Slot &target = slots_[slot];
            target.head = headWord;
            target.length = static_cast<uint8_t>(length);
            target.entry = static_cast<uint16_t>(i);
            (entry.trailingBlank ? target.withBlank : target.alone) = static_cast<uint16_t>(entry.type);
        }
    }

    // text holds length upper-cased letters, zeros after them up to
    // headLength.
    Types find(const char *text, size_t length) const
    {
        const uint64_t headWord = load(text);
        for (size_t slot = slotOf(headWord, length); slots_[slot].length != 0; slot = (slot + 1) & mask) {
            const Slot &candidate = slots_[slot];
            if (candidate.head == headWord && candidate.length == length && sameRest(candidate, text, length)) {
                return {candidate.alone, candidate.withBlank};
            }
        }
        return {};
    }

private:
    static constexpr size_t slotCount = 1024;
    static constexpr size_t mask = slotCount - 1;
    static_assert(entryCount * 5 <= slotCount * 2, "the keyword table must stay sparse");

    struct alignas(16) Slot {
        uint64_t head = 0;      // the first headLength letters, zero-padded
        uint16_t alone = 0;     // the types, 0 for none
        uint16_t withBlank = 0;
        uint16_t entry = 0;     // an entry of the word, for the letters after the head
        uint8_t length = 0;     // 0 for an empty slot
    };
    static_assert(sizeof(Slot) == 16, "a slot is a quarter of a cache line");

    static uint64_t load(const char *head)
    {
        uint64_t word;
        std::memcpy(&word, head, sizeof word);
        return word;
    }

    // One multiply; the slot from the product's top bits.
    static size_t slotOf(uint64_t head, size_t length)
    {
        return static_cast<size_t>(((head + length) * 0x9E3779B97F4A7C15ULL) >> 54U) & mask;
    }

    // The letters after the head (a loop beats a call for so few).
    static bool sameRest(const Slot &slot, const char *text, size_t length)
    {
        const char *word = keywordEntries[slot.entry].word;
        for (size_t i = headLength; i < length; ++i) {
            if (word[i] != text[i]) {
                return false;
            }
        }
        return true;
    }

    std::array<Slot, slotCount> slots_{};
};

// Made when the library is loaded, like the fold table.
const KpAntlrStringOperations &foldTable = KpAntlrStringOperations::sharedManager();
const KeywordTable keywordTable;

} // namespace

bool kp_isNameLetter(char16_t c)
{
    return c == 0x00AA || c == 0x00B5 || c == 0x00BA || (c >= 0x00C0 && c <= 0x00D6) || (c >= 0x00D8 && c <= 0x00F6) ||
           (c >= 0x00F8 && c <= 0x1FFF) || (c >= 0x2C00 && c <= 0x2DFF) || (c >= 0x3040 && c <= 0xDFFF) ||
           (c >= 0xF900 && c <= 0xFDFF) || (c >= 0xFE70 && c <= 0xFEFE) || (c >= 0xFF10 && c <= 0xFF19) ||
           (c >= 0xFF21 && c <= 0xFF3A) || (c >= 0xFF41 && c <= 0xFF5A) || (c >= 0xFF66 && c <= 0xFFDC);
}

namespace {

// What may follow the first letter of a name, tested on the upper-cased
// unit the lexer's look-ahead sees.
constexpr std::array<bool, 0x80> asciiNameRest = [] {
    std::array<bool, 0x80> rest{};
    for (char16_t c = 0; c < 0x80; ++c) {
        rest[c] = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
                  c == '-' || c == '$' || c == '#';
    }
    return rest;
}();

bool isNameRest(char16_t c)
{
    return c < 0x80 ? asciiNameRest[c] : kp_isNameLetter(c);
}

// An ASCII unit as it stands upper-cased in a name after its first letter,
// or 0 for a unit that ends the name.
constexpr std::array<char, 0x80> asciiNameUpper = [] {
    std::array<char, 0x80> upper{};
    for (char16_t c = 0; c < 0x80; ++c) {
        const char16_t folded = c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c;
        upper[c] = asciiNameRest[folded] ? static_cast<char>(folded) : '\0';
    }
    return upper;
}();

// A name read from its first letter: where it ends, and, while it may still
// be a keyword (ASCII when upper-cased, no longer than any keyword), its
// upper-cased letters, zero-padded up to the keyword slots' head length.
struct WordScan {
    const uint16_t *end = nullptr;
    std::array<char, KeywordTable::maxLength> word;
    size_t length = 0;
    bool candidate = true;
};

// One pass over the name at p (up to end): each unit upper-cased once, for
// the name's extent and the keyword look-up alike.
WordScan scanWord(const uint16_t *p, const uint16_t *end)
{
    // The counts stay in locals: the letters' stores could alias the
    // result's fields, which the loop would then reload at every unit.
    WordScan scan;
    char *const word = scan.word.data();
    std::memset(word, 0, KeywordTable::headLength);
    bool candidate = true;
    // Most names are ASCII and short: one table look-up per unit.
    const size_t asciiLimit = std::min(static_cast<size_t>(end - p), KeywordTable::maxLength);
    size_t length = 0;
    for (; length < asciiLimit; ++length) {
        const uint16_t raw = p[length];
        if (raw >= 0x80) {
            break;
        }
        const char upper = asciiNameUpper[raw];
        if (upper == '\0') {
            break;
        }
        word[length] = upper;
    }
    p += length;
    // Past a unit beyond ASCII or the longest keyword: the rest unit by unit.
    while (p < end) {
        const uint16_t raw = *p;
        const char16_t unit = raw < 0x80 ? static_cast<char16_t>(static_cast<unsigned char>(asciiNameUpper[raw]))
                                         : foldTable.uppercaseCharacter(raw);
        if (raw < 0x80 ? unit == 0 : !isNameRest(unit)) {
            break;
        }
        if (unit >= 0x80 || length == KeywordTable::maxLength) {
            candidate = false;
        } else if (candidate) {
            word[length++] = static_cast<char>(unit);
        }
        ++p;
    }
    scan.end = p;
    scan.length = length;
    scan.candidate = candidate;
    return scan;
}

const uint16_t *textEnd(pANTLR3_INPUT_STREAM input)
{
    return static_cast<const uint16_t *>(input->data) + input->sizeBuf / 2;
}

const uint16_t *tokenStart(pANTLR3_LEXER lexer)
{
    return reinterpret_cast<const uint16_t *>(lexer->rec->state->tokenStartCharIndex);
}

// Moves the stream to the end of a name, never behind where it stands: a
// name holds no line ends, so only the column moves.
void moveToNameEnd(pANTLR3_INPUT_STREAM input, const uint16_t *end)
{
    const auto *next = static_cast<const uint16_t *>(input->nextChar);
    if (end > next) {
        input->charPositionInLine += static_cast<ANTLR3_INT32>(end - next);
        input->nextChar = const_cast<uint16_t *>(end);
    }
}

// The type of a scanned word: a keyword's, or STRING. A keyword listed with
// a trailing blank takes the blank at the stream's next unit into the token.
ANTLR3_UINT32 wordType(pANTLR3_INPUT_STREAM input, const WordScan &scan)
{
    if (!scan.candidate) {
        return STRING;
    }
    const KeywordTable::Types types = keywordTable.find(scan.word.data(), scan.length);
    if (types.withBlank != 0) {
        pANTLR3_INT_STREAM stream = input->istream;
        if (stream->_LA(stream, 1) == ' ') {
            stream->consume(stream);
            return types.withBlank;
        }
    }
    return types.alone != 0 ? types.alone : static_cast<ANTLR3_UINT32>(STRING);
}

// A word that ran to the end of the readable text, again with more text
// where the text goes on.
__attribute__((noinline)) void scanWordToTextEnd(pANTLR3_LEXER lexer, WordScan &scan)
{
    pANTLR3_INPUT_STREAM input = lexer->input;
    while (scan.end >= textEnd(input) &&
           kp_moreTextFor(input, reinterpret_cast<const char16_t *>(tokenStart(lexer)))) {
        scan = scanWord(tokenStart(lexer), textEnd(input));
    }
}

// The word from the token's start: to the end of the readable text only
// where the text ends there.
inline WordScan scanWordFromStart(pANTLR3_LEXER lexer)
{
    const uint16_t *end = textEnd(lexer->input);
    WordScan scan = scanWord(tokenStart(lexer), end);
    if (scan.end >= end && lexer->input->super != nullptr) {
        scanWordToTextEnd(lexer, scan);
    }
    return scan;
}

} // namespace

void kp_matchNameRest(pANTLR3_LEXER lexer)
{
    moveToNameEnd(lexer->input, scanWordFromStart(lexer).end);
}

ANTLR3_UINT32 kp_keywordType(pANTLR3_LEXER lexer)
{
    // The name runs from the token's start to the stream: all of it is read.
    pANTLR3_INPUT_STREAM input = lexer->input;
    return wordType(input, scanWord(tokenStart(lexer), static_cast<const uint16_t *>(input->nextChar)));
}

ANTLR3_UINT32 kp_matchWordRest(pANTLR3_LEXER lexer)
{
    // The fast path's words: a word that meets the end of a text decoded as
    // it is read is scanned again by the fast path with more of it.
    pANTLR3_INPUT_STREAM input = lexer->input;
    const WordScan scan = scanWord(tokenStart(lexer), textEnd(input));
    moveToNameEnd(input, scan.end);
    return wordType(input, scan);
}
