// Decisions and skips of the storage and partition clauses that the grammar
// consumes without spelling them out. ALTER TABLE actions that only maintain
// partitions or table inheritance (ADD/DROP/TRUNCATE/EXCHANGE ... PARTITION,
// ATTACH/DETACH PARTITION, NO INHERIT ...) differ from dialect to dialect and
// leave nothing in the model, so they are told by their leading words and
// consumed token by token.
#include "ActionHelpers.h"
#include "RecognizerSupport.h"
#include "VellumGrammarCParser.h"

#include <initializer_list>

namespace {

bool isAnyWord(pANTLR3_COMMON_TOKEN token, std::initializer_list<const char *> upperWords)
{
    for (const char *word : upperWords) {
        if (kp_tokenIsWord(token, word)) {
            return true;
        }
    }
    return false;
}

bool isPartitionWord(pANTLR3_COMMON_TOKEN token)
{
    return isAnyWord(token, {"PARTITION", "PARTITIONS", "SUBPARTITION", "SUBPARTITIONS"});
}

// The words that start an ALTER TABLE action. After a comma at the top level
// such a word starts the next action; any other token continues a list of
// partition names (DROP PARTITION p1, p2).
bool startsAlterAction(pANTLR3_COMMON_TOKEN token)
{
    return isAnyWord(token, {"ADD", "ALTER", "CHANGE", "MODIFY", "DROP", "RENAME", "ENABLE", "DISABLE", "SET",
                             "RESET", "OWNER", "ORDER", "CONVERT", "CLUSTER", "CHECK", "NOCHECK", "CONSTRAINT",
                             "ATTACH", "DETACH", "INHERIT", "NO", "MOVE", "SHRINK", "ALLOCATE", "DEALLOCATE",
                             "TRUNCATE", "COALESCE", "EXCHANGE", "SPLIT", "MERGE", "REORGANIZE", "ANALYZE",
                             "OPTIMIZE", "REBUILD", "REPAIR", "DISCARD", "IMPORT", "REMOVE", "UPGRADE",
                             "ALGORITHM", "LOCK", "FORCE", "VALIDATION", "WITH", "WITHOUT", "ENGINE"});
}

} // namespace

bool kp_partitionMaintenanceAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN first = stream->_LT(stream, 1);
    pANTLR3_COMMON_TOKEN second = stream->_LT(stream, 2);
    if (isAnyWord(first, {"ADD", "DROP", "TRUNCATE", "COALESCE", "MODIFY", "EXCHANGE", "SPLIT", "MERGE", "RENAME",
                          "REORGANIZE", "ANALYZE", "CHECK", "OPTIMIZE", "REBUILD", "REPAIR", "DISCARD", "IMPORT",
                          "ATTACH", "DETACH"})) {
        return isPartitionWord(second) ||
               (kp_tokenIsWord(first, "MODIFY") && kp_tokenIsWord(second, "DEFAULT") &&
                kp_tokenIsWord(stream->_LT(stream, 3), "ATTRIBUTES"));
    }
    if (kp_tokenIsWord(first, "SET")) {
        return isAnyWord(second, {"INTERVAL", "SUBPARTITION", "PARTITIONING"});
    }
    return (kp_tokenIsWord(first, "NO") && kp_tokenIsWord(second, "INHERIT")) ||
           (isAnyWord(first, {"REMOVE", "UPGRADE"}) && kp_tokenIsWord(second, "PARTITIONING"));
}

bool kp_listedColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN previous = stream->_LT(stream, -1);
    pANTLR3_COMMON_TOKEN name = stream->_LT(stream, 1);
    if (previous == nullptr || previous->type != COMMA || startsAlterAction(name)) {
        return false;
    }
    // Table options and other clause words that a word may follow.
    if (name->type != QUOTED_STRING &&
        isAnyWord(name, {"PRIMARY", "UNIQUE", "FOREIGN", "INDEX", "KEY", "FULLTEXT", "SPATIAL", "COLUMN", "PARTITION",
                         "DEFAULT", "CHARACTER", "CHARSET", "COLLATE", "COMMENT", "TYPE", "INSERT_METHOD",
                         "ROW_FORMAT", "TABLESPACE", "STORAGE", "LOGGING", "NOLOGGING", "COMPRESS", "NOCOMPRESS",
                         "PARALLEL", "NOPARALLEL", "CACHE", "NOCACHE", "UNION", "DATA"})) {
        return false;
    }
    return kp_entryStartAhead(name, stream->_LT(stream, 2));
}

bool kp_skipPartitionMaintenance(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    const long openParentheses = kp_skipBalancedTokens(stream, true, [stream](ANTLR3_UINT32 type) {
        return type == CLOSEPAREN || (type == COMMA && startsAlterAction(stream->_LT(stream, 2)));
    });
    return openParentheses == 0;
}

bool kp_onCommitAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN action = stream->_LT(stream, 2);
    if (!kp_isWord(stream->_LT(stream, 1), "COMMIT")) {
        return false;
    }
    pANTLR3_COMMON_TOKEN what = stream->_LT(stream, 3);
    return kp_isKeyword(action, "DROP") || (kp_isKeyword(action, "DELETE") && kp_isWord(what, "ROWS")) ||
           (kp_isWord(action, "PRESERVE") && (kp_isWord(what, "ROWS") || kp_isWord(what, "DEFINITION")));
}

bool kp_partitionNameAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN word = stream->_LT(stream, 1);
    switch (word->type) {
    case STRING:
    case QUOTED_STRING:
        return true;
    case SEMI:
    case OPENPAREN:
    case CLOSEPAREN:
    case COMMA:
    case EQUALS:
    case ANTLR3_TOKEN_EOF:
        return false;
    default:
        break;
    }
    if (kp_isKeyword(word, "VALUES")) {
        return false;
    }
    // A keyword is the name when the partition's bounds, its end or its
    // subpartitions follow, or an option that starts with a word.
    pANTLR3_COMMON_TOKEN next = stream->_LT(stream, 2);
    return next->type == COMMA || next->type == CLOSEPAREN || next->type == OPENPAREN ||
           isAnyWord(next, {"VALUES", "ENGINE", "STORAGE", "COMMENT", "DATA", "INDEX", "MAX_ROWS", "MIN_ROWS",
                            "TABLESPACE", "NODEGROUP", "PCTFREE", "PCTUSED", "INITRANS", "LOGGING", "NOLOGGING",
                            "COMPRESS", "NOCOMPRESS", "LOB", "SEGMENT"});
}
