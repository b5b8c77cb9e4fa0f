// Fuzz entry for the lexer: cuts the input into tokens, hidden ones included,
// checks that the tokens come in order, and that the fast path for common
// tokens cuts exactly the tokens (and records) of the generated lexer alone.
#include <SQLAntlrParser/SQLAntlrParser.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

bool sameToken(const SQLToken &a, const SQLToken &b)
{
    return a.index == b.index && a.type == b.type && a.channel == b.channel && a.line == b.line && a.pos == b.pos &&
           a.text == b.text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view script(reinterpret_cast<const char *>(data), size);
    SQLParserC driver;
    const std::vector<SQLToken> tokens = driver.tokensForString(script);
    long previousIndex = -1;
    for (const SQLToken &token : tokens) {
        if (token.index <= previousIndex || token.line < 1) {
            __builtin_trap();
        }
        previousIndex = token.index;
    }
    SQLParserC reference;
    reference.setUsesTokenFastPath(false);
    const std::vector<SQLToken> expected = reference.tokensForString(script);
    if (tokens.size() != expected.size() || driver.getExceptionList() != reference.getExceptionList()) {
        __builtin_trap();
    }
    for (size_t i = 0; i < tokens.size(); ++i) {
        if (!sameToken(tokens[i], expected[i])) {
            __builtin_trap();
        }
    }
    return 0;
}
