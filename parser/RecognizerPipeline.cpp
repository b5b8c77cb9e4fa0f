#include "RecognizerPipeline.h"

#include "ActionHelpers.h"
#include "Log.h"
#include "PlainTokens.h"
#include "RecognizerSupport.h"
#include "RuntimeShortcuts.h"
#include "QuotedText.h"
#include "InputMoves.h"
#include "ScriptFileText.h"
#include "TokenWindow.h"
#include "VellumGrammarCLexer.h"
#include "VellumGrammarCParser.h"
#include "VellumTreeGrammarC.h"

#include <SchemaModel/SchemaModel.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>

using sqlantlr::logf;

namespace sqlantlr {

namespace {

constexpr ANTLR3_UINT32 streamSizeHint = 1025;

pANTLR3_INPUT_STREAM asInput(SQLInputStream *handle) { return reinterpret_cast<pANTLR3_INPUT_STREAM>(handle); }
pVellumGrammarCLexer asLexer(SQLLexer *handle) { return reinterpret_cast<pVellumGrammarCLexer>(handle); }
pANTLR3_COMMON_TOKEN_STREAM asTokens(SQLTokenStream *handle)
{
    return reinterpret_cast<pANTLR3_COMMON_TOKEN_STREAM>(handle);
}
pVellumGrammarCParser asParser(SQLRecognizer *handle) { return reinterpret_cast<pVellumGrammarCParser>(handle); }
pANTLR3_BASE_TREE asTree(SQLSyntaxTree *handle) { return reinterpret_cast<pANTLR3_BASE_TREE>(handle); }
pANTLR3_COMMON_TREE_NODE_STREAM asNodes(SQLTreeNodeStream *handle)
{
    return reinterpret_cast<pANTLR3_COMMON_TREE_NODE_STREAM>(handle);
}
SQLSyntaxTree *treeHandle(pANTLR3_BASE_TREE tree) { return reinterpret_cast<SQLSyntaxTree *>(tree); }

// The runtime leaves the end-of-input token at position 0 of its line; place
// it after the last character so that errors there point at the right spot.
pANTLR3_COMMON_TOKEN nextTokenPlacingEnd(pANTLR3_TOKEN_SOURCE source)
{
    auto lexer = static_cast<pANTLR3_LEXER>(source->super);
    auto session = static_cast<ParseSession *>(lexer->rec->state->userp);
    // Most tokens are made by the fast path; the generated lexer makes the rest.
    if (session->plainTokens) {
        if (pANTLR3_COMMON_TOKEN plain = kp_scanPlainToken(lexer)) {
            return plain;
        }
    }
    pANTLR3_COMMON_TOKEN token = session->lexerNextToken(source);
    kp_widenSubstitutionPrefix(lexer, token);
    if (token != nullptr && token->type == ANTLR3_TOKEN_EOF) {
        token->line = lexer->input->line;
        token->charPosition = lexer->input->charPositionInLine;
    }
    return token;
}

// The runtime's token pool hands its tokens out again after a reset (once
// per statement) without clearing them, so an imaginary token (ON_DELETE,
// ERROR ...) could keep the marks of the token it was before: the mark of a
// token made up by recovery, or a kept text that is gone with its statement.
// Each token is cleared of them as it is handed out.
pANTLR3_COMMON_TOKEN (*runtimeNewPoolToken)(pANTLR3_TOKEN_FACTORY) = nullptr;

pANTLR3_COMMON_TOKEN newClearedPoolToken(pANTLR3_TOKEN_FACTORY factory)
{
    pANTLR3_COMMON_TOKEN token = runtimeNewPoolToken(factory);
    if (token != nullptr) {
        token->user1 = 0;
        token->user2 = 0;
        token->user3 = 0;
        token->custom = nullptr;
    }
    return token;
}

void clearReusedTokens(pANTLR3_BASE_TREE_ADAPTOR adaptor)
{
    pANTLR3_TOKEN_FACTORY factory = adaptor->tokenFactory;
    if (factory == nullptr) {
        return;
    }
    // Taken once, from the first adaptor's factory (all share the runtime's function).
    static const bool captured = [factory] {
        runtimeNewPoolToken = factory->newToken;
        return true;
    }();
    (void)captured;
    factory->newToken = newClearedPoolToken;
}

// Every token type can start a statement, so after an error inside a
// statement, recovery stops at the first token that may begin the next one:
// the follow set the script rule's statement loop gives its statements.
struct StatementFollowSet {
    ANTLR3_BITWORD words[(kp_parserTokenCount + 63) / 64] = {};
    ANTLR3_BITSET_LIST list{};
    StatementFollowSet()
    {
        for (ANTLR3_UINT32 type = 4; type < kp_parserTokenCount; ++type) {
            words[type / 64] |= ANTLR3_BITWORD(1) << (type % 64);
        }
        list.bits = words;
        list.length = static_cast<ANTLR3_UINT32>(sizeof words / sizeof words[0]);
    }
};

// A tree walker over the nodes with the driver's hooks, or nullptr.
pVellumTreeGrammarC newWalker(pANTLR3_COMMON_TREE_NODE_STREAM nodes, bool customErrorDisplay, ParseSession *session,
                              KpError *error)
{
    pVellumTreeGrammarC walker = VellumTreeGrammarCNew(nodes);
    if (walker == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create the tree parser (out of memory)", KpErrorTreeParser,
                                                error);
        return nullptr;
    }
    pANTLR3_BASE_RECOGNIZER recognizer = walker->pTreeParser->rec;
    useDirectFollowStack(recognizer);
    recognizer->displayRecognitionError = kp_parser_displayRecognitionError;
    if (customErrorDisplay) {
        recognizer->getMissingSymbol = kp_tree_getMissingSymbol;
        recognizer->recoverFromMismatchedToken = kp_recoverFromMismatchedToken;
        recognizer->recover = kp_parser_recover2;
    }
    recognizer->state->userp = session;
    return walker;
}

} // namespace

// One tree node stream and one walker serve every statement of a parse:
// making them allocates pools of nodes and tokens, too much to repeat for
// each statement.
struct StatementWalker {
    bool customErrorDisplay;
    ParseSession *session;
    pANTLR3_COMMON_TREE_NODE_STREAM nodes = nullptr;
    pVellumTreeGrammarC walker = nullptr;

    StatementWalker(bool custom, ParseSession *parseSession)
        : customErrorDisplay(custom), session(parseSession)
    {
    }
    ~StatementWalker()
    {
        if (walker != nullptr) {
            walker->free(walker);
        }
        if (nodes != nullptr) {
            nodes->free(nodes);
        }
    }
    StatementWalker(const StatementWalker &) = delete;
    StatementWalker &operator=(const StatementWalker &) = delete;

    bool walk(pANTLR3_BASE_TREE tree, SQLContainer &container, KpError *error)
    {
        if (nodes == nullptr) {
            nodes = antlr3CommonTreeNodeStreamNewTree(tree, streamSizeHint);
            if (nodes == nullptr) {
                logf("empty tree to parse");
                KpError::handleErrorWithLocalizedString("Tried to parse empty Tree", KpErrorEmptyTree, error);
                return false;
            }
            useDirectNodeReading(nodes);
            walker = newWalker(nodes, customErrorDisplay, session, error);
            if (walker == nullptr) {
                return false;
            }
        } else {
            // Point the stream at the new tree, as a new stream would start,
            // and clear what a new walker would not know about.
            nodes->nodes->clear(nodes->nodes);
            nodes->root = tree;
            nodes->p = -1;
            nodes->currentNode = nullptr;
            nodes->previousNode = nullptr;
            nodes->currentChildIndex = 0;
            nodes->absoluteNodeIndex = 0;
            nodes->reset(nodes);
            walker->pTreeParser->rec->state->lastErrorIndex = -1;
            kp_resetRecognitionState(walker->pTreeParser->rec);
        }
        walker->schema(walker, &container);
        return true;
    }
};

SQLInputStream *newInputStream(std::u16string_view text)
{
    static const char16_t empty[1] = {u'\0'};
    const char16_t *data = text.empty() ? empty : text.data();
    pANTLR3_INPUT_STREAM input =
        antlr3StringStreamNew(reinterpret_cast<pANTLR3_UINT8>(const_cast<char16_t *>(data)), ANTLR3_ENC_UTF16,
                              static_cast<ANTLR3_UINT32>(text.size() * sizeof(char16_t)),
                              reinterpret_cast<pANTLR3_UINT8>(const_cast<char *>("-memory-")));
    if (input == nullptr) {
        return nullptr;
    }
    input->istream->_LA = lc_antlr3UCS2LA;
    input->istream->consume = kp_utf16Consume;
    input->reset(input);  // line 1, position 0 at the first unit
    return reinterpret_cast<SQLInputStream *>(input);
}

SQLLexer *newLexer(SQLInputStream *input, ParseSession *session)
{
    pVellumGrammarCLexer lexer = VellumGrammarCLexerNew(asInput(input));
    if (lexer == nullptr) {
        return nullptr;
    }
    // Creating the lexer leaves the stream one position before the first
    // character of line 1; the first character is at position 0.
    pANTLR3_INPUT_STREAM stream = asInput(input);
    if (stream->nextChar == stream->data) {
        stream->charPositionInLine = 0;
    }
    pANTLR3_BASE_RECOGNIZER recognizer = lexer->pLexer->rec;
    // The runtime's own display cannot read UTF-16 input: always replace it.
    recognizer->displayRecognitionError = kp_lexer_displayRecognitionError;
    // A failed token drops its first character only, never the next token's.
    lexer->pLexer->recover = kp_lexer_recover;
    if (session != nullptr) {
        recognizer->state->userp = session;
        session->lexerNextToken = recognizer->state->tokSource->nextToken;
        recognizer->state->tokSource->nextToken = nextTokenPlacingEnd;
    }
    return reinterpret_cast<SQLLexer *>(lexer);
}

SQLRecognizer *newParser(SQLTokenStream *tokens, ParseSession *session, bool customErrorDisplay)
{
    pVellumGrammarCParser parser = VellumGrammarCParserNew(asTokens(tokens));
    if (parser == nullptr) {
        return nullptr;
    }
    useDirectTreeBuilding(parser->adaptor);
    clearReusedTokens(parser->adaptor);
    pANTLR3_BASE_RECOGNIZER recognizer = parser->pParser->rec;
    useDirectFollowStack(recognizer);
    recognizer->displayRecognitionError = kp_parser_displayRecognitionError;
    kp_installParserRecovery(recognizer);
    if (customErrorDisplay) {
        recognizer->recover = kp_parser_recover2;
        recognizer->state->userp = session;
        parser->adaptor->errorNode = kp_errorNode;
    }
    return reinterpret_cast<SQLRecognizer *>(parser);
}

void logTokenStream(SQLTokenStream *handle)
{
    pANTLR3_COMMON_TOKEN_STREAM tokens = asTokens(handle);
    pANTLR3_TOKEN_STREAM stream = tokens->tstream;
    if (TokenWindow *window = TokenWindow::of(stream)) {
        window->readAll();
        logf("%ld tokens found", static_cast<long>(window->readCount()));
        for (ANTLR3_MARKER i = 0; i < window->readCount(); ++i) {
            logf("%ld: %s", static_cast<long>(i), kp_tokenText(window->raw(i)).c_str());
        }
        return;
    }
    stream->_LT(stream, 1);
    pANTLR3_VECTOR vector = tokens->tokens;
    if (vector == nullptr) {
        logf("tokens appear to be null");
        return;
    }
    logf("%u tokens found", vector->count);
    for (ANTLR3_UINT32 i = 0; i < vector->count; ++i) {
        logf("%u: %s", i, kp_tokenText(static_cast<pANTLR3_COMMON_TOKEN>(vector->get(vector, i))).c_str());
    }
}

std::string syntaxTreeString(SQLSyntaxTree *tree)
{
    return AntlrTreeString(asTree(tree));
}

void appendSyntaxTreeItems(SQLSyntaxTree *tree, std::string &out, bool &first)
{
    AntlrAppendTreeItems(asTree(tree), out, first);
}

void logSyntaxTree(SQLSyntaxTree *tree)
{
    const std::string text = syntaxTreeString(tree);
    if (text.empty()) {
        logf("tree string is nil");
    } else {
        logf("Nodes: %s\n--\n", text.c_str());
    }
}

SQLTreeNodeStream *newTreeNodeStream(SQLSyntaxTree *tree)
{
    return reinterpret_cast<SQLTreeNodeStream *>(antlr3CommonTreeNodeStreamNewTree(asTree(tree), streamSizeHint));
}

void freeTreeNodeStream(SQLTreeNodeStream *handle)
{
    if (pANTLR3_COMMON_TREE_NODE_STREAM nodes = asNodes(handle)) {
        nodes->free(nodes);
    }
}

bool walkTreeStream(SQLTreeNodeStream *handle, SQLContainer &container, ParseSession *session,
                    bool customErrorDisplay, KpError *error)
{
    pVellumTreeGrammarC walker = newWalker(asNodes(handle), customErrorDisplay, session, error);
    if (walker == nullptr) {
        return false;
    }
    walker->schema(walker, &container);
    walker->free(walker);
    return true;
}

RecognizerPipeline::RecognizerPipeline(SQLParserC &driver, Use use)
    : driver_(driver), previousSession_(driver.session_), use_(use)
{
    session_.driver = &driver;
    session_.pipeline = this;
    session_.plainTokens = driver.usesTokenFastPath_;
    if (use == Use::Parse) {
        session_.stackBase = static_cast<const char *>(__builtin_frame_address(0));
        session_.dropBlanks = true;
    }
    driver_.session_ = &session_;
}

RecognizerPipeline::~RecognizerPipeline()
{
    walker_.reset();
    if (parser_ != nullptr) {
        asParser(parser_)->free(asParser(parser_));
    }
    window_.reset();  // before the stream whose functions it replaced
    if (tokens_ != nullptr) {
        asTokens(tokens_)->free(asTokens(tokens_));
    }
    if (lexer_ != nullptr) {
        asLexer(lexer_)->free(asLexer(lexer_));
    }
    if (input_ != nullptr) {
        asInput(input_)->close(asInput(input_));
    }
    driver_.session_ = previousSession_;
}

namespace {

// The runtime's limit: the most units whose bytes a 32-bit size holds.
constexpr std::size_t runtimeWindowUnits = UINT32_MAX / sizeof(char16_t);
std::atomic<std::size_t> windowUnits{runtimeWindowUnits};

} // namespace

std::size_t RecognizerPipeline::textWindowUnits()
{
    return windowUnits.load(std::memory_order_relaxed);
}

void RecognizerPipeline::setTextWindowUnits(std::size_t units)
{
    windowUnits.store(units == 0 ? runtimeWindowUnits : std::min(units, runtimeWindowUnits),
                      std::memory_order_relaxed);
}

bool RecognizerPipeline::openTokens(std::u16string_view text, KpError *error)
{
    text_ = text;
    input_ = driver_.inputStreamFromString(text);
    if (input_ == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create parser input stream (out of memory?)",
                                                KpErrorInputStream, error);
        return false;
    }
    // A long text is read through a window at its start (see textWindowUnits).
    pANTLR3_INPUT_STREAM input = asInput(input_);
    windowUnits_ = textWindowUnits();
    windowed_ = text.size() > windowUnits_ && input->data == text.data();
    if (windowed_) {
        input->sizeBuf = static_cast<ANTLR3_UINT32>(windowUnits_ * sizeof(char16_t));
    }
    // A text decoded as it is read: the stream reads what is decoded, and
    // its readers ask for more through the feed.
    ScriptFileText *mapped = session_.mappedText;
    if (mapped != nullptr && !mapped->complete() && input->data == text.data() &&
        mapped->units().data() == text.data()) {
        feed_.text = mapped;
        feed_.windowUnits = windowUnits_;
        input->super = &feed_;
        const auto decoded = static_cast<std::size_t>(mapped->decodeTo(text.data() + 1) - text.data());
        input->sizeBuf = static_cast<ANTLR3_UINT32>(std::min(decoded, windowUnits_) * sizeof(char16_t));
    }
    lexer_ = driver_.lexerForInputStream(input_);
    if (lexer_ == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create the lexer (malloc failure)", KpErrorLexer, error);
        return false;
    }
    tokens_ = reinterpret_cast<SQLTokenStream *>(
        antlr3CommonTokenStreamSourceNew(streamSizeHint, TOKENSOURCE(asLexer(lexer_))));
    if (tokens_ == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create token stream (out of memory?)", KpErrorTokenStream,
                                                error);
        return false;
    }
    if (use_ == Use::Parse) {
        window_ = std::make_unique<TokenWindow>(asTokens(tokens_), asLexer(lexer_)->pLexer);
    }
    return true;
}

bool RecognizerPipeline::openParser(KpError *error)
{
    parser_ = driver_.parserForTokenStream(tokens_);
    if (parser_ == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to allocate parser (out of memory?)", KpErrorParser, error);
        return false;
    }
    return true;
}

SQLTokenStream *RecognizerPipeline::tokenStream() const
{
    return tokens_;
}

namespace {

void describeToken(pANTLR3_COMMON_TOKEN token, long index, SQLToken &info)
{
    info.index = index;
    info.type = static_cast<int>(token->type);
    info.name = token->type < kp_parserTokenCount
                    ? reinterpret_cast<const char *>(VellumGrammarCParserTokenNames[token->type])
                    : token->type == SUBSTITUTION_PREFIX ? "SUBSTITUTION_PREFIX" : "<unknown>";
    info.channel = static_cast<int>(token->channel);
    info.line = static_cast<int>(token->line);
    info.pos = token->charPosition;
    info.text = kp_tokenText(token);
}

// A token factory that hands out the tokens of a fixed ring over and over: a
// token listing reads each token once, right after the lexer made it, so a
// token is long gone when the ring comes round to it again.
struct TokenRing : ANTLR3_TOKEN_FACTORY {
    static constexpr size_t size = 256;
    std::unique_ptr<ANTLR3_COMMON_TOKEN[]> tokens = std::make_unique<ANTLR3_COMMON_TOKEN[]>(size);
    size_t next = 0;

    static pANTLR3_COMMON_TOKEN handOut(pANTLR3_TOKEN_FACTORY factory)
    {
        auto *ring = static_cast<TokenRing *>(factory);
        pANTLR3_COMMON_TOKEN token = &ring->tokens[ring->next];
        ring->next = (ring->next + 1) % size;
        initialiseFactoryToken(factory, token);
        return token;
    }
    static void keep(pANTLR3_TOKEN_FACTORY) {}
};

} // namespace

std::vector<SQLToken> RecognizerPipeline::tokenList()
{
    std::vector<SQLToken> result;
    pANTLR3_TOKEN_STREAM stream = asTokens(tokens_)->tstream;
    stream->_LT(stream, 1);  // the stream reads the whole input on first use
    pANTLR3_VECTOR vector = asTokens(tokens_)->tokens;
    result.resize(vector->count);
    for (ANTLR3_UINT32 i = 0; i < vector->count; ++i) {
        describeToken(static_cast<pANTLR3_COMMON_TOKEN>(vector->get(vector, i)), static_cast<long>(i), result[i]);
    }
    return result;
}

void RecognizerPipeline::streamTokens(const std::function<void(const SQLToken &)> &each)
{
    // The common token stream would number the same tokens the same way:
    // nothing is discarded or moved to another channel on the way.
    pANTLR3_LEXER lexer = asLexer(lexer_)->pLexer;
    pANTLR3_TOKEN_FACTORY own = lexer->rec->state->tokFactory;
    TokenRing ring;
    std::memcpy(static_cast<ANTLR3_TOKEN_FACTORY *>(&ring), own, sizeof(ANTLR3_TOKEN_FACTORY));
    ring.newToken = TokenRing::handOut;
    ring.reset = TokenRing::keep;
    ring.close = TokenRing::keep;
    // The lexer frees its own factory: it gets it back however the loop ends.
    struct Restore {
        pANTLR3_LEXER lexer;
        pANTLR3_TOKEN_FACTORY factory;
        ~Restore() { lexer->rec->state->tokFactory = factory; }
    } restore{lexer, own};
    lexer->rec->state->tokFactory = &ring;
    pANTLR3_TOKEN_SOURCE source = TOKENSOURCE(asLexer(lexer_));
    SQLToken info;
    long index = 0;
    for (pANTLR3_COMMON_TOKEN token = source->nextToken(source); token != nullptr && token->type != ANTLR3_TOKEN_EOF;
         token = source->nextToken(source)) {
        describeToken(token, index++, info);
        each(info);
        if (session_.mappedText != nullptr && index % TokenRing::size == 0) {
            releaseTextBefore(static_cast<const char16_t *>(asInput(input_)->nextChar));
        }
        // No token before the next one is read again.
        if (windowed_) {
            moveTextWindow(asInput(input_)->nextChar);
        }
    }
}

bool RecognizerPipeline::atEnd() const
{
    pANTLR3_INT_STREAM stream = asParser(parser_)->pParser->tstream->istream;
    return stream->_LA(stream, 1) == ANTLR3_TOKEN_EOF;
}

SQLParseProgress RecognizerPipeline::progress() const
{
    // A token's start is a pointer into its input's text.
    pANTLR3_TOKEN_STREAM stream = asParser(parser_)->pParser->tstream;
    pANTLR3_COMMON_TOKEN next = stream->_LT(stream, 1);
    // Of the whole text, not of the window the runtime reads; at the end of
    // input all of it is done.
    SQLParseProgress progress;
    progress.total = text_.size() * sizeof(char16_t);
    progress.done = progress.total;
    if (next != nullptr && next->type != ANTLR3_TOKEN_EOF) {
        const auto *data = reinterpret_cast<const char *>(text_.data());
        const auto *start = reinterpret_cast<const char *>(next->start);
        if (start >= data && start <= data + progress.total) {
            progress.done = static_cast<std::size_t>(start - data);
        }
    }
    return progress;
}

SQLSyntaxTree *RecognizerPipeline::parseScript()
{
    pVellumGrammarCParser parser = asParser(parser_);
    return treeHandle(parser->schema(parser).tree);
}

SQLSyntaxTree *RecognizerPipeline::parseStatement()
{
    static const StatementFollowSet follow;
    pVellumGrammarCParser parser = asParser(parser_);
    kp_resetRecognitionState(parser->pParser->rec);  // an error ends with its statement
    pANTLR3_STACK following = parser->pParser->rec->state->following;
    following->push(following, const_cast<ANTLR3_BITSET_LIST *>(&follow.list), nullptr);
    pANTLR3_TOKEN_STREAM tokens = parser->pParser->tstream;
    kp_statementStart(parser->pParser->rec, tokens->_LT(tokens, 1));
    VellumGrammarCParser_schemaEntry_return entry = parser->schemaEntry(parser);
    following->pop(following);
    return treeHandle(entry.tree);
}

bool RecognizerPipeline::skipDataStatement(bool *leavesTree)
{
    *leavesTree = false;
    if (parser_ == nullptr || window_ == nullptr || !session_.skipDataStatements || !window_->skipDataStatement()) {
        return false;
    }
    pANTLR3_TOKEN_STREAM tokens = asParser(parser_)->pParser->tstream;
    pANTLR3_COMMON_TOKEN first = tokens->_LT(tokens, 1);
    pANTLR3_COMMON_TOKEN end = tokens->_LT(tokens, 2);
    if (first == nullptr || end == nullptr || end->type != SEMI) {
        return false;
    }
    // The grammar keeps INSERT and DROP statements in the tree (which the
    // walker passes over); other statements it drops leave no tree.
    static const std::array<ANTLR3_UINT32, 2> kept = {kp_literalType("INSERT"), kp_literalType("DROP")};
    *leavesTree = std::find(kept.begin(), kept.end(), first->type) != kept.end();
    tokens->istream->consume(tokens->istream);
    tokens->istream->consume(tokens->istream);
    return true;
}

bool RecognizerPipeline::importPlainStatement(SQLContainer &container)
{
    return parser_ != nullptr && window_ != nullptr &&
           kp_importPlainTable(session_, asParser(parser_)->pParser->tstream, container);
}

bool RecognizerPipeline::walkStatement(SQLSyntaxTree *tree, SQLContainer &container, KpError *error)
{
    if (walker_ == nullptr) {
        walker_ = std::make_unique<StatementWalker>(driver_.useCustomErrorDisplay(), &session_);
    }
    return walker_->walk(asTree(tree), container, error);
}

void RecognizerPipeline::releaseFinishedStatements()
{
    pANTLR3_BASE_TREE_ADAPTOR adaptor = asParser(parser_)->adaptor;
    auto common = static_cast<pANTLR3_COMMON_TREE_ADAPTOR>(adaptor->super);
    // A statement imported without the grammar built no tree: the factories
    // are kept as they are.
    pANTLR3_ARBORETUM fresh = treeFactoriesUnused(adaptor) ? nullptr : antlr3ArboretumNew(adaptor->strFactory);
    if (fresh != nullptr) {  // else keep the old factory (on failure memory is only held longer)
        common->arboretum->close(common->arboretum);
        common->arboretum = fresh;
        useDirectTreeBuilding(adaptor);
        if (adaptor->tokenFactory != nullptr) {
            adaptor->tokenFactory->reset(adaptor->tokenFactory);
        }
    }
    if (window_ != nullptr) {
        window_->releaseConsumed();
    }
    // The kept DEFAULT/CHECK texts and the walker's name lists belong to the
    // tokens and tree nodes of the statement just walked; the model holds
    // copies, so they go with it instead of piling up until the end.
    session_.customValues.clear();
    session_.nameLists.clear();
    session_.plainColumnReadings.clear();
    session_.plainProbe.name = nullptr;
    if (session_.mappedText != nullptr || windowed_) {
        // The statements to come are read from the next token on; the last
        // one consumed may still be asked for its text.
        pANTLR3_TOKEN_STREAM stream = asParser(parser_)->pParser->tstream;
        const void *from = asInput(input_)->nextChar;
        for (const ANTLR3_INT32 k : {-1, 1}) {
            pANTLR3_COMMON_TOKEN token = stream->_LT(stream, k);
            // (A token made up by the recovery may point anywhere.)
            if (token != nullptr && token->type != ANTLR3_TOKEN_EOF &&
                reinterpret_cast<const void *>(token->start) < from &&
                reinterpret_cast<const void *>(token->start) >= asInput(input_)->data &&
                token->start % alignof(char16_t) == 0) {
                from = reinterpret_cast<const void *>(token->start);
            }
        }
        if (session_.mappedText != nullptr) {
            releaseTextBefore(static_cast<const char16_t *>(from));
        }
        if (windowed_) {
            moveTextWindow(from);
        }
    }
}

// The text before `from` (the first token still wanted) and before the line
// the lexer stands in is given back: the line decisions of the tokens to
// come read back to their line's start. The DELIMITER lines before it are
// followed first, as the lexer would follow them at its next '$' (a text
// without a '$' never has them followed).
void RecognizerPipeline::releaseTextBefore(const char16_t *from)
{
    ScriptFileText *text = session_.mappedText;
    const char16_t *kept = text->keptFrom();
    // A token made up by the recovery may point anywhere.
    if (text->inMemory() || from <= kept || from > text->decodedEnd()) {
        return;
    }
    pANTLR3_INPUT_STREAM input = asInput(input_);
    const auto *next = static_cast<const char16_t *>(input->nextChar);
    const auto *line = static_cast<const char16_t *>(input->currentLine);
    const char16_t *at = from;
    if (line != nullptr && line <= next && line >= kept) {
        at = std::min(at, line);
    } else {
        while (at > kept && at[-1] != u'\n' && at[-1] != u'\r') {
            --at;
        }
    }
    if (at <= kept) {
        return;
    }
    const auto *data = static_cast<const char16_t *>(input->data);
    if (at > data && text->holdsDollar()) {
        advanceDelimiterTrack(session_.delimiterTrack, data, at, kp_readableEnd(input));
    }
    text->releaseBefore(at);
}

void RecognizerPipeline::moveTextWindow(const void *from)
{
    pANTLR3_INPUT_STREAM input = asInput(input_);
    const auto *data = static_cast<const char16_t *>(input->data);
    const auto *at = static_cast<const char16_t *>(from);
    // Of a text decoded as it is read, what is decoded so far.
    const char16_t *const textEnd =
        input->super != nullptr ? feed_.text->decodedEnd() : text_.data() + text_.size();
    const std::size_t window = windowUnits_;
    if (at < data || at > textEnd || static_cast<std::size_t>(at - data) < window / 2) {
        return;
    }
    // From the start of the line, which the look-back of line decisions
    // (REM and PROMPT lines) reads.
    while (at > data && at[-1] != u'\n' && at[-1] != u'\r') {
        --at;
    }
    input->data = const_cast<char16_t *>(at);
    input->sizeBuf =
        static_cast<ANTLR3_UINT32>(std::min(static_cast<std::size_t>(textEnd - at), window) * sizeof(char16_t));
}

} // namespace sqlantlr
