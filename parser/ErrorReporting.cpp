// Recognition error display and recovery installed in the recognizers. Every
// parser error becomes a record in the driver's list ("[line:pos] message")
// and a trace in the log; the tree walker's errors are traced only; lexer
// errors are traced only. Recovery resynchronises on the follow sets so that
// a broken statement leaves an ERROR_NODE and the next statement is parsed.
#include "ActionHelpers.h"
#include "Log.h"
#include "ParseSession.h"
#include "RecognizerSupport.h"
#include "VellumGrammarCParser.h"

#include <string>

using sqlantlr::logf;
using sqlantlr::ParseSession;

namespace {

// See kp_recoveryMarkCount: a parse runs on one thread, so a per-thread count
// tells a parse's actions whether recovery made anything since a point.
thread_local unsigned long recoveryMarksMade __attribute__((tls_model("initial-exec"))) = 0;

void markRecoveryToken(pANTLR3_COMMON_TOKEN token)
{
    token->user1 = kp_recoveryMark;
    ++recoveryMarksMade;
}

const char *const exceptionNames[] = {
    "Recognition Exception",      "Mismatched Token Exception", "No Viable Alternative Exception",
    "Mismatched Set Exception",   "Early Exit Exception",       "Failed Predicate Exception",
    "Mismatched Tree Node Exception", "Rewrite Tree Node Exception ", "Extraneous Token Exception",
    "Missing Token Exception",
};

const char *exceptionName(ANTLR3_UINT32 type)
{
    if (type >= 1 && type <= 10) {
        return exceptionNames[type - 1];
    }
    return "unknown exception";
}

std::string tokenName(pANTLR3_UINT8 *tokenNames, ANTLR3_UINT32 type)
{
    if (tokenNames == nullptr || type == ANTLR3_TOKEN_EOF) {
        return "<EOF>";
    }
    return reinterpret_cast<const char *>(tokenNames[type]);
}

bool isParserOrTreeParser(pANTLR3_BASE_RECOGNIZER recognizer)
{
    return recognizer->type == ANTLR3_TYPE_PARSER || recognizer->type == ANTLR3_TYPE_TREE_PARSER;
}

pANTLR3_INT_STREAM recognizerStream(pANTLR3_BASE_RECOGNIZER recognizer)
{
    if (recognizer->type == ANTLR3_TYPE_PARSER) {
        return static_cast<pANTLR3_PARSER>(recognizer->super)->tstream->istream;
    }
    return static_cast<pANTLR3_TREE_PARSER>(recognizer->super)->ctnstream->tnstream->istream;
}

// True when the statement being parsed holds, after its first token, a line
// that starts another statement (see kp_startsStatementLine).
bool statementPassedLine(pANTLR3_BASE_RECOGNIZER recognizer)
{
    const ParseSession *session = static_cast<ParseSession *>(recognizer->state->userp);
    if (session == nullptr || session->statementPosition < 0) {
        return false;
    }
    pANTLR3_TOKEN_STREAM tokens = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_INT_STREAM is = tokens->istream;
    for (ANTLR3_MARKER i = is->index(is) - 1; i >= 0; --i) {
        pANTLR3_COMMON_TOKEN token = tokens->get(tokens, static_cast<ANTLR3_UINT32>(i));
        if (token == nullptr || static_cast<int>(token->line) < session->statementLine ||
            (static_cast<int>(token->line) == session->statementLine &&
             token->charPosition <= session->statementPosition)) {
            return false;
        }
        if (token->channel == ANTLR3_TOKEN_DEFAULT_CHANNEL && kp_startsStatementLine(token)) {
            return true;
        }
    }
    return false;
}

} // namespace

sqlantlr::ParseSession *kp_session(pANTLR3_BASE_RECOGNIZER recognizer)
{
    return recognizer == nullptr ? nullptr : static_cast<ParseSession *>(recognizer->state->userp);
}

void kp_lexer_displayRecognitionError(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *)
{
    if (!sqlantlr::logEnabled()) {
        return;
    }
    auto lexer = static_cast<pANTLR3_LEXER>(recognizer->super);
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    pANTLR3_INPUT_STREAM input = lexer->input;
    const int position = ex->charPositionInLine + 1;
    // A failed prediction's message is the whole decision (every token rule
    // of the lexer): keep the trace to its start.
    std::string message = ex->message != nullptr ? static_cast<const char *>(ex->message) : "";
    if (message.size() > 60) {
        message = message.substr(0, 57) + "...";
    }
    logf(": lexer error %u :\n\t%s at offset %d, ", ex->type, message.c_str(), position);

    const auto *data = static_cast<const char16_t *>(input->data);
    const size_t size = input->sizeBuf / 2;
    const auto *current = static_cast<const char16_t *>(input->nextChar);
    const size_t index = static_cast<size_t>(current - data);
    if (index >= size) {
        logf("\t The lexer was matching from line %d, offset %d, which\n\t ", recognizer->state->tokenStartLine,
             recognizer->state->tokenStartCharPositionInLine);
        return;
    }
    const char16_t c = data[index];
    std::string nearText;
    if (c >= 0x20 && c != 0x7F) {
        nearText = "near '" + kp_utf16Slice(data + index, 1) + "'";
    } else {
        char buffer[32];
        snprintf(buffer, sizeof buffer, "near char(%#02X) ", static_cast<unsigned>(c & 0xFF));
        nearText = buffer;
    }
    const size_t from = index >= 2 ? index - 2 : 0;
    const size_t count = size - from < 20 ? size - from : 20;
    logf("%u:%d: Lexer Error (%u) %s\n%s", ex->line, position, ex->type, nearText.c_str(),
         kp_utf16Slice(data + from, count).c_str());
}

void kp_parser_displayRecognitionError(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_UINT8 *tokenNames)
{
    if (!isParserOrTreeParser(recognizer)) {
        logf("Base recognizer function displayRecognitionError called by unknown parser type - provide override "
             "for this function\n");
        return;
    }
    const bool isParser = recognizer->type == ANTLR3_TYPE_PARSER;
    const char *kind = isParser ? "Parser" : "Tree Parser";
    ParseSession *sink = isParser ? kp_session(recognizer) : nullptr;
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    const int line = static_cast<int>(ex->line);
    const int pos = ex->charPositionInLine;
    auto record = [&](const std::string &message) {
        if (sink != nullptr) {
            sink->addException(message, line, pos);
        }
    };

    if (!isParser) {
        auto node = static_cast<pANTLR3_BASE_TREE>(ex->token);
        if (node != nullptr) {
            const std::string text = kp_nodeText(node);
            if (!text.empty()) {
                logf(", near %s", text.c_str());
            }
        }
    } else if (ex->token != nullptr) {
        auto token = static_cast<pANTLR3_COMMON_TOKEN>(ex->token);
        if (token->type == ANTLR3_TOKEN_EOF) {
            logf(", at <EOF>");
        } else {
            const std::string text = kp_tokenText(token);
            const unsigned number = sink != nullptr ? ++sink->descriptionCounter : 0;
            const std::string detail = "found token '" + text + "' near '" + text + "' " + std::to_string(number);
            const std::string message = std::string("Parse Error: ") + exceptionName(ex->type) + " (" +
                                        std::to_string(ex->type) + "): " + detail;
            logf("[%d,%d],%s", line, pos, message.c_str());
            record(message);
        }
    }

    if (isParser) {
        // An error at the end of the script (a token found there or made up
        // for a missing one): the statement ran on to it.
        pANTLR3_INT_STREAM is = recognizerStream(recognizer);
        if (is->_LA(is, 1) == ANTLR3_TOKEN_EOF && statementPassedLine(recognizer)) {
            pANTLR3_TOKEN_STREAM tokens = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
            kp_reportRunOnStatement(recognizer, tokens->_LT(tokens, 1));
        }
    }

    switch (ex->type) {
    case ANTLR3_RECOGNITION_EXCEPTION:
        logf(" %s : syntax error... [RECOGNITION EXCEPTION]\n", kind);
        record("syntax error [RECOGNITION EXCEPTION]");
        break;
    case ANTLR3_MISMATCHED_TOKEN_EXCEPTION:
        if (tokenNames == nullptr) {
            logf(" %s : syntax error... [MISMATCHED TOKEN EXCEPTION]\n", kind);
            record("syntax error [MISMATCHED TOKEN EXCEPTION]");
        } else if (ex->expecting == ANTLR3_TOKEN_EOF) {
            logf(" %s : expected <EOF>\n", kind);
            record("expected <EOF>");
        } else {
            const std::string expected = tokenName(tokenNames, ex->expecting);
            logf(" %s : expected %s ...\n", expected.c_str(), kind);
            record("expected " + expected + " ... ");
        }
        break;
    case ANTLR3_NO_VIABLE_ALT_EXCEPTION:
        logf(" %s: No Viable Alternative :[%d:%d] cannot match to any predicted input...\n", kind, line, pos);
        record("No Viable Alternative cannot match to any predicted input...");
        break;
    case ANTLR3_MISMATCHED_SET_EXCEPTION: {
        pANTLR3_BITSET errBits = ex->expectingSet != nullptr ? antlr3BitsetLoad(ex->expectingSet) : nullptr;
        const ANTLR3_UINT32 members = errBits != nullptr ? errBits->size(errBits) : 0;
        if (members == 0) {
            logf(" %s : unexpected input...\n  expected one of : Expected Token Unknown (displayRecognitionError)",
                 kind);
            record("Parsing error (state unknown) ");
        } else if (tokenNames != nullptr) {
            std::string list;
            const ANTLR3_UINT32 capacity = errBits->numBits(errBits);
            ANTLR3_UINT32 written = 0;
            for (ANTLR3_UINT32 i = 1; capacity >= 2 && i + 1 < capacity && written < 8 && written < members; ++i) {
                if (tokenNames[i] == nullptr) {
                    continue;
                }
                const char *name = reinterpret_cast<const char *>(tokenNames[i]);
                list += (written > 0 ? ", " : "") + std::string(name) + " " + std::to_string(name[0]);
                ++written;
            }
            logf(" %s : unexpected input...\n  expected one of : %s\n", kind, list.c_str());
        }
        if (errBits != nullptr) {
            errBits->free(errBits);
        }
        break;
    }
    case ANTLR3_EARLY_EXIT_EXCEPTION:
        logf(" %s : missing elements... %d, %d\n", kind, line, pos);
        record("missing elements...");
        break;
    case ANTLR3_UNWANTED_TOKEN_EXCEPTION:
        if (tokenNames == nullptr) {
            logf(" : Extraneous input...");
        } else if (ex->expecting == ANTLR3_TOKEN_EOF) {
            logf(" %s : Extraneous input - expected <EOF>\n", kind);
            record("Extraneous input - expected <EOF>");
        } else {
            const std::string expected = tokenName(tokenNames, ex->expecting);
            logf(" %s : Extraneous input - expected %s ...\n", kind, expected.c_str());
            record("Extraneous input - expected " + expected);
        }
        break;
    case ANTLR3_MISSING_TOKEN_EXCEPTION:
        if (tokenNames == nullptr) {
            logf(" %s : [%d:%d] Missing token (%u)...\n", kind, line, pos, ex->expecting);
            record("Missing token (" + std::to_string(ex->expecting) + ") ...");
        } else if (ex->expecting == ANTLR3_TOKEN_EOF) {
            logf(" %s : [%d:%d] Missing <EOF>\n", kind, line, pos);
            record("Missing <EOF>");
        } else {
            const std::string expected = tokenName(tokenNames, ex->expecting);
            logf(" %s : [%d:%d] Missing (%s) \n", kind, line, pos, expected.c_str());
            record("Missing (" + expected + ")");
        }
        break;
    default:
        logf(" %s : syntax not recognized...\n", kind);
        record("syntax not recognized...");
        break;
    }
}

void kp_parser_recover2(pANTLR3_BASE_RECOGNIZER recognizer)
{
    if (!isParserOrTreeParser(recognizer)) {
        logf("Base recognizer function recover called by unknown parser type - provide override for this function\n");
        return;
    }
    pANTLR3_INT_STREAM is = recognizerStream(recognizer);
    // Two errors at the same place must make progress.
    if (recognizer->state->lastErrorIndex == is->index(is)) {
        is->consume(is);
    }
    recognizer->state->lastErrorIndex = is->index(is);
    pANTLR3_BITSET followSet = recognizer->computeErrorRecoverySet(recognizer);
    recognizer->beginResync(recognizer);
    if (recognizer->type == ANTLR3_TYPE_PARSER) {
        // The runtime's consumeUntilSet, noting the statements it passes.
        pANTLR3_TOKEN_STREAM tokens = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
        bool passed = false;
        for (ANTLR3_UINT32 type = is->_LA(is, 1); type != ANTLR3_TOKEN_EOF && !followSet->isMember(followSet, type);
             type = is->_LA(is, 1)) {
            passed = passed || kp_startsStatementLine(tokens->_LT(tokens, 1));
            is->consume(is);
        }
        if (passed || is->_LA(is, 1) == ANTLR3_TOKEN_EOF) {
            kp_reportRunOnStatement(recognizer, tokens->_LT(tokens, 1));
        }
    } else {
        recognizer->consumeUntilSet(recognizer, followSet);
    }
    recognizer->endResync(recognizer);
    followSet->free(followSet);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
    kp_forgetRecognitionError(recognizer);
}

void kp_parser_recover(pANTLR3_BASE_RECOGNIZER recognizer)
{
    logf("recovering parser");
    if (!isParserOrTreeParser(recognizer)) {
        logf("Base recognizer function recover called by unknown parser type - provide override for this function\n");
        return;
    }
    pANTLR3_INT_STREAM is = recognizerStream(recognizer);
    if (recognizer->state->lastErrorIndex == is->index(is)) {
        is->consume(is);
    }
    recognizer->state->lastErrorIndex = is->index(is);
    recognizer->beginResync(recognizer);
    logf("consuming until SEMI");
    pANTLR3_TOKEN_STREAM tokens =
        recognizer->type == ANTLR3_TYPE_PARSER ? static_cast<pANTLR3_PARSER>(recognizer->super)->tstream : nullptr;
    bool passed = false;
    for (;;) {
        const ANTLR3_UINT32 type = is->_LA(is, 1);
        if (type == ANTLR3_TOKEN_EOF) {
            passed = true;
            break;
        }
        passed = passed || (tokens != nullptr && kp_startsStatementLine(tokens->_LT(tokens, 1)));
        is->consume(is);
        if (type == SEMI) {
            break;
        }
    }
    if (passed && tokens != nullptr) {
        kp_reportRunOnStatement(recognizer, tokens->_LT(tokens, 1));
    }
    recognizer->endResync(recognizer);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
    kp_forgetRecognitionError(recognizer);
}

// A token rule that fails part way (an '&' before a letter where '&&' was
// predicted) has consumed characters of what follows: the input goes back to
// the start of the failed token and only its first character is dropped, so
// the next token is read whole. A failure at the end of the input (an open
// comment) drops the rest as before.
void kp_lexer_recover(pANTLR3_LEXER lexer)
{
    logf("recovering lexer");
    pANTLR3_INPUT_STREAM input = lexer->input;
    pANTLR3_INT_STREAM stream = input->istream;
    pANTLR3_RECOGNIZER_SHARED_STATE state = lexer->rec->state;
    auto *start = reinterpret_cast<void *>(state->tokenStartCharIndex);
    if (stream->_LA(stream, 1) != ANTLR3_CHARSTREAM_EOF && start >= input->data && start < input->nextChar) {
        input->nextChar = start;
        input->line = state->tokenStartLine;
        input->charPositionInLine = state->tokenStartCharPositionInLine;
    }
    stream->consume(stream);
}

void *kp_errorNode(pANTLR3_BASE_TREE_ADAPTOR adaptor, pANTLR3_TOKEN_STREAM, pANTLR3_COMMON_TOKEN start,
                   pANTLR3_COMMON_TOKEN, pANTLR3_EXCEPTION)
{
    logf("created error node");
    auto node = static_cast<pANTLR3_BASE_TREE>(
        adaptor->createTypeText(adaptor, ERROR_NODE, reinterpret_cast<pANTLR3_UINT8>(const_cast<char *>("ERROR"))));
    if (node == nullptr) {
        return nullptr;
    }
    ++recoveryMarksMade;  // an error node is a recovery mark by its type
    pANTLR3_COMMON_TOKEN token = node->getToken(node);
    if (token != nullptr) {
        token->user1 = kp_recoveryMark;
        if (start != nullptr) {
            token->line = start->line;
            token->charPosition = start->charPosition;
            token->index = start->index;
        }
    }
    return node;
}

void *kp_tree_getMissingSymbol(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_INT_STREAM input, pANTLR3_EXCEPTION,
                               ANTLR3_UINT32 expectedTokenType, pANTLR3_BITSET_LIST)
{
    auto nodes = static_cast<pANTLR3_TREE_NODE_STREAM>(input->super);
    auto current = static_cast<pANTLR3_BASE_TREE>(nodes->_LT(nodes, 1));
    if (current == nullptr || current->getType(current) == ANTLR3_TOKEN_EOF) {
        current = static_cast<pANTLR3_BASE_TREE>(nodes->_LT(nodes, -1));
    }
    if (current == nullptr) {
        return nullptr;
    }
    const std::string text = "<missing " + tokenName(recognizer->state->tokenNames, expectedTokenType) + ">";
    pANTLR3_BASE_TREE_ADAPTOR adaptor = nodes->getTreeAdaptor(nodes);
    auto missing = static_cast<pANTLR3_BASE_TREE>(adaptor->createTypeText(
        adaptor, expectedTokenType, reinterpret_cast<pANTLR3_UINT8>(const_cast<char *>(text.c_str()))));
    if (missing != nullptr && missing->getToken(missing) != nullptr) {
        pANTLR3_COMMON_TOKEN token = missing->getToken(missing);
        token->line = current->getLine(current);
        token->charPosition = static_cast<ANTLR3_INT32>(current->getCharPositionInLine(current));
        markRecoveryToken(token);
    }
    return missing;
}

void *kp_recoverFromMismatchedToken(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_UINT32, pANTLR3_BITSET_LIST)
{
    if (recognizer->debugger != nullptr && recognizer->state->exception != nullptr) {
        recognizer->debugger->recognitionException(recognizer->debugger, recognizer->state->exception);
    }
    if (!isParserOrTreeParser(recognizer)) {
        logf("Base recognizer function recoverFromMismatchedToken called by unknown parser type - provide override "
             "for this function\n");
        return nullptr;
    }
    // A pending exception belongs to an earlier error: this one gets its own,
    // at the node that did not match.
    kp_forgetRecognitionError(recognizer);
    recognizer->exConstruct(recognizer);
    recognizer->state->error = ANTLR3_TRUE;
    return nullptr;
}

namespace {

using MismatchRecovery = void *(*)(pANTLR3_BASE_RECOGNIZER, ANTLR3_UINT32, pANTLR3_BITSET_LIST);
using MissingSymbol = void *(*)(pANTLR3_BASE_RECOGNIZER, pANTLR3_INT_STREAM, pANTLR3_EXCEPTION, ANTLR3_UINT32,
                                pANTLR3_BITSET_LIST);

// The runtime's own functions, the same for every parser: the hooks below
// wrap them.
MismatchRecovery runtimeRecoverFromMismatchedToken = nullptr;
MissingSymbol runtimeGetMissingSymbol = nullptr;

// The runtime repairs a single missing or extra token in place: it reports
// the error and goes on, but only builds an exception when none is pending,
// and leaves the one it used behind, in error recovery, so that the next
// error goes unreported. The pending exception is dropped before (so that the
// error is reported at its own token), and after a repair the error is over.
void *parserRecoverFromMismatchedToken(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_UINT32 expected,
                                       pANTLR3_BITSET_LIST follow)
{
    kp_forgetRecognitionError(recognizer);
    void *matched = runtimeRecoverFromMismatchedToken(recognizer, expected, follow);
    if (recognizer->state->error == ANTLR3_FALSE) {
        kp_forgetRecognitionError(recognizer);
        recognizer->state->errorRecovery = ANTLR3_FALSE;
    }
    return matched;
}

// A token the runtime makes up for a missing one carries the recovery mark,
// so that no model value is ever made of it.
void *parserGetMissingSymbol(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_INT_STREAM input,
                             pANTLR3_EXCEPTION exception, ANTLR3_UINT32 expected, pANTLR3_BITSET_LIST follow)
{
    auto token = static_cast<pANTLR3_COMMON_TOKEN>(
        runtimeGetMissingSymbol(recognizer, input, exception, expected, follow));
    if (token != nullptr) {
        markRecoveryToken(token);
    }
    return token;
}

} // namespace

void kp_installParserRecovery(pANTLR3_BASE_RECOGNIZER recognizer)
{
    // Taken once, from the first parser (whose hooks are still the runtime's).
    static const bool captured = [recognizer] {
        runtimeRecoverFromMismatchedToken = recognizer->recoverFromMismatchedToken;
        runtimeGetMissingSymbol = recognizer->getMissingSymbol;
        return true;
    }();
    (void)captured;
    recognizer->recoverFromMismatchedToken = parserRecoverFromMismatchedToken;
    recognizer->getMissingSymbol = parserGetMissingSymbol;
}

void kp_resetRecognitionState(pANTLR3_BASE_RECOGNIZER recognizer)
{
    kp_forgetRecognitionError(recognizer);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
    recognizer->state->errorRecovery = ANTLR3_FALSE;
}

void kp_forgetRecognitionError(pANTLR3_BASE_RECOGNIZER recognizer)
{
    // The runtime reuses a pending exception for the next missing or extra
    // token it meets, which would carry the old error's position into the
    // new record.
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    if (ex != nullptr) {
        recognizer->state->exception = nullptr;
        ex->freeEx(ex);
    }
}

void kp_statementStart(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr || token == nullptr || recognizer->state->backtracking > 0) {
        return;
    }
    session->statementLine = static_cast<int>(token->line);
    session->statementPosition = token->type == ANTLR3_TOKEN_EOF ? -1 : token->charPosition;
    session->runOnReported = false;
}

void kp_reportRunOnStatement(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN until)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr || session->runOnReported || session->statementPosition < 0 ||
        recognizer->state->backtracking > 0) {
        return;
    }
    session->runOnReported = true;
    const std::string end = until == nullptr || until->type == ANTLR3_TOKEN_EOF
                                ? std::string("<EOF>")
                                : "[" + std::to_string(until->line) + ":" + std::to_string(until->charPosition) + "]";
    logf("statement at [%d:%d] runs on to %s", session->statementLine, session->statementPosition, end.c_str());
    session->addException("Unended statement - read up to " + end, session->statementLine,
                          session->statementPosition);
}

bool kp_startsStatementLine(pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF || token->charPosition != 0) {
        return false;
    }
    const std::string text = kp_tokenText(token);
    for (const char *word : {"CREATE", "ALTER", "DROP", "INSERT"}) {
        if (kp_textIsWord(text, word)) {
            return true;
        }
    }
    return false;
}

void kp_raiseNoViableAlternative(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token)
{
    recognizer->exConstruct(recognizer);
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    ex->type = ANTLR3_NO_VIABLE_ALT_EXCEPTION;
    ex->name = const_cast<char *>(ANTLR3_NO_VIABLE_ALT_NAME);
    ex->message = const_cast<char *>("cannot match to any predicted input");
    if (token != nullptr) {
        ex->token = token;
        ex->line = token->line;
        ex->charPositionInLine = token->charPosition;
        ex->index = token->index;
    }
    recognizer->state->error = ANTLR3_TRUE;
}

void kp_reportDroppedToken(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN token)
{
    if (token == nullptr) {
        return;
    }
    kp_forgetRecognitionError(recognizer);
    recognizer->exConstruct(recognizer);
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    const ANTLR3_UINT32 next = recognizerStream(recognizer)->_LA(recognizerStream(recognizer), 1);
    ex->type = ANTLR3_UNWANTED_TOKEN_EXCEPTION;
    ex->name = const_cast<char *>(ANTLR3_UNWANTED_TOKEN_EXCEPTION_NAME);
    ex->expecting = next == COMMA ? COMMA : CLOSEPAREN;
    ex->token = token;
    ex->line = token->line;
    ex->charPositionInLine = token->charPosition;
    ex->index = token->index;
    recognizer->reportError(recognizer);
    kp_forgetRecognitionError(recognizer);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->errorRecovery = ANTLR3_FALSE;
}

void kp_raiseNestingTooDeep(pANTLR3_BASE_RECOGNIZER recognizer)
{
    recognizer->exConstruct(recognizer);
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    ex->type = ANTLR3_RECOGNITION_EXCEPTION;
    ex->message = const_cast<char *>("nesting too deep");
    recognizer->state->error = ANTLR3_TRUE;
}

bool kp_nestingTooDeep(pANTLR3_BASE_RECOGNIZER recognizer)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr || session->stackBase == nullptr) {
        return false;
    }
    const auto *here = static_cast<const char *>(__builtin_frame_address(0));
    return session->stackBase - here > ParseSession::stackBudget;
}

unsigned long kp_recoveryMarkCount()
{
    return recoveryMarksMade;
}

KpRecoveryCheckpoint kp_recoveryCheckpoint(pANTLR3_BASE_RECOGNIZER recognizer)
{
    return {recognizer->state->errorCount, recoveryMarksMade};
}

void kp_reportErrorNodes(pANTLR3_BASE_RECOGNIZER recognizer)
{
    ParseSession *session = kp_session(recognizer);
    if (recognizer == nullptr || recognizer->type != ANTLR3_TYPE_TREE_PARSER) {
        return;
    }
    // Error nodes are made while the tree is parsed: when recovery made
    // nothing since the last tree was walked, this one holds none.
    if (session != nullptr) {
        if (session->recoveryMarksWalked == recoveryMarksMade) {
            return;
        }
        session->recoveryMarksWalked = recoveryMarksMade;
    }
    auto root = static_cast<pANTLR3_BASE_TREE>(static_cast<pANTLR3_TREE_PARSER>(recognizer->super)->ctnstream->root);
    // An error subtree counts once, whatever it holds.
    kp_walkTree(root, [session](pANTLR3_BASE_TREE node) {
        if (node->getType(node) != ERROR_NODE) {
            return TreeVisit::Descend;
        }
        const std::string text = kp_nodeText(node);
        logf("found error node %s", text.c_str());
        logf("found error node");
        if (session != nullptr) {
            session->addException("error field " + text, static_cast<int>(node->getLine(node)),
                                  static_cast<int>(node->getCharPositionInLine(node)));
        }
        return TreeVisit::SkipChildren;
    });
}

void kp_logUnknownObjectType(pANTLR3_BASE_RECOGNIZER, pANTLR3_COMMON_TOKEN token, const char *statement)
{
    if (token == nullptr || !sqlantlr::logEnabled()) {
        return;
    }
    logf("Parse Error: [%u:%d] unknown %s object type: '%s' found", token->line, token->charPosition, statement,
         kp_tokenText(token).c_str());
}
