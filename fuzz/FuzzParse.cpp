// Fuzz entry for the library: parses the input as a script, walks the model
// it gives (post-load processing links references) and serialises it with
// its records, as `sqlantlr model` does. Any crash, hang, leak or undefined
// behaviour the sanitizers see is a finding.
#include "ModelJson.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SQLParser parser;
    KpError error;
    const std::string_view script(reinterpret_cast<const char *>(data), size);
    std::unique_ptr<SQLContainer> container = parser.driver().parseString(script, &error);
    if (container != nullptr) {
        container->postLoadProcess();
        const std::string json = sqlantlr::modelJsonText(*container, parser.getExceptionList());
        if (json.empty()) {
            __builtin_trap();
        }
    }
    return 0;
}
