// Fuzz entry for the library: parses the input as a script, walks the model
// it gives (post-load processing links references) and serialises it with
// its records, as `sqlantlr model` does. Any crash, hang, leak or undefined
// behaviour the sanitizers see is a finding, and so is a script whose model
// or records change when data statements are lexed and parsed instead of
// skipped by the scan, and plain columns read by the grammar instead of
// directly, or when the text is decoded as it is read, a line or a few at a
// time, instead of whole.
#include "ModelJson.h"
#include "ScriptFileText.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

// The model JSON of a script, records included. A parse in which no
// statement gave a tree has no model: it counts as an empty one with the
// same records (a skipped statement may leave a tree where the parsed one
// left none).
std::string modelJson(std::string_view script, bool shortcuts)
{
    SQLParser parser;
    parser.driver().setSkipsDataStatements(shortcuts);
    parser.driver().setReadsPlainColumns(shortcuts);
    KpError error;
    std::unique_ptr<SQLContainer> container = parser.driver().parseString(script, &error);
    if (container == nullptr) {
        container = std::make_unique<SQLContainer>();
    }
    container->postLoadProcess();
    const std::string json = sqlantlr::modelJsonText(*container, parser.getExceptionList());
    if (json.empty()) {
        __builtin_trap();
    }
    return json;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string_view script(reinterpret_cast<const char *>(data), size);
    // Every script: the scan also skips statements whose first word opens no
    // rule, so no list of words tells which scripts it applies to.
    const std::string whole = modelJson(script, true);
    if (whole != modelJson(script, false)) {
        __builtin_trap();  // a shortcut read the script otherwise than the grammar
    }
    // Pieces of 1 to 64 bytes, or of a few hundred (each ends with a line),
    // pages given back every 4 KiB: the readers meet the end of the decoded
    // text in the middle of tokens, strings, comments and statements.
    sqlantlr::ScriptFileText::setHeldInMemoryBelow(0);
    sqlantlr::ScriptFileText::setPieceBytes(size % 2 == 0 ? 1 + size % 64 : 1 + size % 997);
    sqlantlr::ScriptFileText::setReleaseBytes(4096);
    const std::string decodedAsRead = modelJson(script, true);
    sqlantlr::ScriptFileText::setHeldInMemoryBelow(sqlantlr::ScriptFileText::defaultHeldInMemoryBelow);
    sqlantlr::ScriptFileText::setPieceBytes(0);
    sqlantlr::ScriptFileText::setReleaseBytes(0);
    if (decodedAsRead != whole) {
        __builtin_trap();  // a reader took the end of the decoded text for the end of the script
    }
    return 0;
}
