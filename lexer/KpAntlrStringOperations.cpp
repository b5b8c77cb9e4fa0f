#include "KpAntlrStringOperations.h"

#include <cstring>

namespace {

// Made at build time by sqlantlr_fold_table (lexer/CaseFoldTableGen.cpp).
constexpr char16_t generatedTable[0x10000] = {
#include "CaseFoldTable.inc"
};

} // namespace

KpAntlrStringOperations::KpAntlrStringOperations()
{
    std::memcpy(table_, generatedTable, sizeof table_);
}

const KpAntlrStringOperations &KpAntlrStringOperations::sharedManager()
{
    static const KpAntlrStringOperations instance;  // initialised once, thread-safe
    return instance;
}
