// Fuzz entry for the lexer: cuts the input into tokens, hidden ones included,
// and checks that the tokens cover the input in order.
#include <SQLAntlrParser/SQLAntlrParser.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SQLParserC driver;
    const std::string_view script(reinterpret_cast<const char *>(data), size);
    long previousIndex = -1;
    for (const SQLToken &token : driver.tokensForString(script)) {
        if (token.index <= previousIndex || token.line < 1) {
            __builtin_trap();
        }
        previousIndex = token.index;
    }
    return 0;
}
