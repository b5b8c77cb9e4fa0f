// The parse driver: text -> case-folding stream -> lexer -> token stream ->
// parser (syntax tree) -> tree walker (model). It owns the recognizers for
// the length of one call and frees them on every path.
#include <SQLAntlrParser/SQLParserC.h>

#include "Log.h"
#include "ParseSession.h"
#include "RecognizerSupport.h"
#include "TextEncoding.h"
#include "TokenWindow.h"
#include "VellumGrammarCLexer.h"
#include "VellumGrammarCParser.h"
#include "VellumTreeGrammarC.h"

#include <SchemaModel/SchemaModel.h>

#include <unicode/ustring.h>

#include <optional>

using sqlantlr::logf;
using sqlantlr::ParseSession;

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

// The recognizers of one parse, freed in the order parser, token stream,
// lexer, character stream, whichever exist.
struct Pipeline {
    pANTLR3_INPUT_STREAM input = nullptr;
    pVellumGrammarCLexer lexer = nullptr;
    pANTLR3_COMMON_TOKEN_STREAM tokens = nullptr;
    pVellumGrammarCParser parser = nullptr;

    Pipeline() = default;
    Pipeline(const Pipeline &) = delete;
    Pipeline &operator=(const Pipeline &) = delete;
    ~Pipeline()
    {
        if (parser != nullptr) {
            parser->free(parser);
        }
        if (tokens != nullptr) {
            tokens->free(tokens);
        }
        if (lexer != nullptr) {
            lexer->free(lexer);
        }
        if (input != nullptr) {
            input->close(input);
        }
    }
};

// The runtime leaves the end-of-input token at position 0 of its line; place
// it after the last character so that errors there point at the right spot.
pANTLR3_COMMON_TOKEN nextTokenPlacingEnd(pANTLR3_TOKEN_SOURCE source)
{
    auto lexer = static_cast<pANTLR3_LEXER>(source->super);
    auto session = static_cast<ParseSession *>(lexer->rec->state->userp);
    pANTLR3_COMMON_TOKEN token = session->lexerNextToken(source);
    if (token != nullptr && token->type == ANTLR3_TOKEN_EOF) {
        token->line = lexer->input->line;
        token->charPosition = lexer->input->charPositionInLine;
    }
    return token;
}

std::u16string scriptUnits(std::string_view sql)
{
    std::u16string text = sqlantlr::utf8ToUtf16(sql);
    if (!text.empty() && text.front() == u'\uFEFF') {
        text.erase(0, 1);  // a byte order mark is not part of the script
    }
    return text;
}

// Makes the session current in the driver for the length of a call.
class SessionScope {
public:
    SessionScope(sqlantlr::ParseSession *&slot, sqlantlr::ParseSession *session) : slot_(slot), previous_(slot)
    {
        slot_ = session;
    }
    ~SessionScope() { slot_ = previous_; }
    SessionScope(const SessionScope &) = delete;
    SessionScope &operator=(const SessionScope &) = delete;

private:
    sqlantlr::ParseSession *&slot_;
    sqlantlr::ParseSession *previous_;
};

} // namespace

SQLParserC::SQLParserC() = default;
SQLParserC::~SQLParserC() = default;

std::unique_ptr<SQLParserC> SQLParserC::parser()
{
    return std::make_unique<SQLParserC>();
}

char16_t SQLParserC::uppercaseCharacter(char16_t character)
{
    char16_t upper[4];
    UErrorCode status = U_ZERO_ERROR;
    auto unit = static_cast<UChar>(character);
    const int32_t length = u_strToUpper(reinterpret_cast<UChar *>(upper), 4, &unit, 1, "", &status);
    return U_SUCCESS(status) && length > 0 ? upper[0] : character;
}

std::string SQLParserC::tableNameFromReturnArray(const std::vector<std::string> &parts)
{
    std::string name;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) {
            name += '.';
        }
        name += SchemaModel::trim(parts[i]);
    }
    return name;
}

std::unique_ptr<SQLContainer> SQLParserC::parseString(const char *sql, KpError *error)
{
    if (sql == nullptr) {
        KpError::handleErrorWithLocalizedString("Invalid input (is nil)", KpErrorNilInput, error);
        return nullptr;
    }
    return parseString(std::string_view(sql), error);
}

std::unique_ptr<SQLContainer> SQLParserC::parseString(std::string_view sql, KpError *error)
{
    const std::u16string text = scriptUnits(sql);
    ParseSession session;
    session.driver = this;
    session.stackBase = static_cast<const char *>(__builtin_frame_address(0));
    session.dropBlanks = true;
    SessionScope scope(session_, &session);
    Pipeline pipeline;

    pipeline.input = asInput(inputStreamFromString(text));
    if (pipeline.input == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create parser input stream (out of memory?)",
                                                KpErrorInputStream, error);
        return nullptr;
    }
    pipeline.lexer = asLexer(lexerForInputStream(reinterpret_cast<SQLInputStream *>(pipeline.input)));
    if (pipeline.lexer == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create the lexer (malloc failure)", KpErrorLexer, error);
        return nullptr;
    }
    pipeline.tokens = antlr3CommonTokenStreamSourceNew(streamSizeHint, TOKENSOURCE(pipeline.lexer));
    if (pipeline.tokens == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create token stream (out of memory?)", KpErrorTokenStream,
                                                error);
        return nullptr;
    }
    // Declared after the pipeline, so it is gone before the stream is freed.
    sqlantlr::TokenWindow window(pipeline.tokens, pipeline.lexer->pLexer);
    if (displayTokenStream()) {
        displayTokenStream(reinterpret_cast<SQLTokenStream *>(pipeline.tokens));
    }
    pipeline.parser = asParser(parserForTokenStream(reinterpret_cast<SQLTokenStream *>(pipeline.tokens)));
    if (pipeline.parser == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to allocate parser (out of memory?)", KpErrorParser, error);
        return nullptr;
    }
    pANTLR3_INT_STREAM stream = pipeline.tokens->tstream->istream;
    if (stream->_LA(stream, 1) == ANTLR3_TOKEN_EOF) {
        // No statement at all: the whole-script rule reports it.
        VellumGrammarCParser_schema_return result = pipeline.parser->schema(pipeline.parser);
        return parseTree(reinterpret_cast<SQLSyntaxTree *>(result.tree), error);
    }
    return parseStatements(reinterpret_cast<SQLRecognizer *>(pipeline.parser), error);
}

namespace {

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

// Releases the trees, child lists and imaginary tokens of statements that
// have been walked, so that memory follows the largest statement rather
// than the whole script.
void recycleStatementTrees(pVellumGrammarCParser parser)
{
    pANTLR3_BASE_TREE_ADAPTOR adaptor = parser->adaptor;
    auto common = static_cast<pANTLR3_COMMON_TREE_ADAPTOR>(adaptor->super);
    pANTLR3_ARBORETUM fresh = antlr3ArboretumNew(adaptor->strFactory);
    if (fresh == nullptr) {
        return;  // keep the old factory; memory is only held longer
    }
    common->arboretum->close(common->arboretum);
    common->arboretum = fresh;
    if (adaptor->tokenFactory != nullptr) {
        adaptor->tokenFactory->reset(adaptor->tokenFactory);
    }
}

} // namespace

// One tree node stream and one walker serve every statement of a parse:
// making them allocates pools of nodes and tokens, too much to repeat for
// each statement.
namespace {

// A tree walker over the nodes with the driver's hooks, or nullptr.
pVellumTreeGrammarC newWalker(SQLTreeNodeStream *handle, bool customErrorDisplay, ParseSession *session,
                              KpError *error)
{
    pVellumTreeGrammarC walker = VellumTreeGrammarCNew(asNodes(handle));
    if (walker == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to create the tree parser (out of memory)", KpErrorTreeParser,
                                                error);
        return nullptr;
    }
    pANTLR3_BASE_RECOGNIZER recognizer = walker->pTreeParser->rec;
    recognizer->displayRecognitionError = kp_parser_displayRecognitionError;
    if (customErrorDisplay) {
        recognizer->getMissingSymbol = kp_tree_getMissingSymbol;
        recognizer->recoverFromMismatchedToken = kp_recoverFromMismatchedToken;
        recognizer->recover = kp_parser_recover2;
    }
    recognizer->state->userp = session;
    return walker;
}

class StatementWalker {
public:
    StatementWalker(bool customErrorDisplay, ParseSession *session)
        : customErrorDisplay_(customErrorDisplay), session_(session)
    {
    }
    ~StatementWalker()
    {
        if (walker_ != nullptr) {
            walker_->free(walker_);
        }
        if (nodes_ != nullptr) {
            nodes_->free(nodes_);
        }
    }
    StatementWalker(const StatementWalker &) = delete;
    StatementWalker &operator=(const StatementWalker &) = delete;

    // Walks one statement's tree into the container; false with *error set
    // when the stream or the walker cannot be made.
    bool walk(pANTLR3_BASE_TREE tree, SQLContainer &container, KpError *error)
    {
        if (nodes_ == nullptr) {
            nodes_ = antlr3CommonTreeNodeStreamNewTree(tree, streamSizeHint);
            if (nodes_ == nullptr) {
                logf("empty tree to parse");
                KpError::handleErrorWithLocalizedString("Tried to parse empty Tree", KpErrorEmptyTree, error);
                return false;
            }
            walker_ = newWalker(reinterpret_cast<SQLTreeNodeStream *>(nodes_), customErrorDisplay_, session_, error);
            if (walker_ == nullptr) {
                return false;
            }
        } else {
            // Point the stream at the new tree, as a new stream would start,
            // and clear what a new walker would not know about.
            nodes_->nodes->clear(nodes_->nodes);
            nodes_->root = tree;
            nodes_->p = -1;
            nodes_->currentNode = nullptr;
            nodes_->previousNode = nullptr;
            nodes_->currentChildIndex = 0;
            nodes_->absoluteNodeIndex = 0;
            nodes_->reset(nodes_);
            pANTLR3_RECOGNIZER_SHARED_STATE state = walker_->pTreeParser->rec->state;
            state->lastErrorIndex = -1;
            state->errorRecovery = ANTLR3_FALSE;
            state->error = ANTLR3_FALSE;
            state->failed = ANTLR3_FALSE;
        }
        walker_->schema(walker_, &container);
        return true;
    }

private:
    bool customErrorDisplay_;
    ParseSession *session_;
    pANTLR3_COMMON_TREE_NODE_STREAM nodes_ = nullptr;
    pVellumTreeGrammarC walker_ = nullptr;
};

} // namespace

void SQLParserC::reportProgress(SQLRecognizer *handle, const SQLContainer &container) const
{
    // The next token's start is a pointer into the input's text.
    pANTLR3_TOKEN_STREAM stream = asParser(handle)->pParser->tstream;
    pANTLR3_COMMON_TOKEN next = stream->_LT(stream, 1);
    SQLParseProgress progress;
    progress.tables = container.tables().size();
    if (next != nullptr && next->input != nullptr && next->input->data != nullptr) {
        const auto *data = static_cast<const char *>(next->input->data);
        const auto *start = reinterpret_cast<const char *>(next->start);
        progress.total = next->input->sizeBuf;
        progress.done = next->type == ANTLR3_TOKEN_EOF || start < data || start > data + progress.total
                            ? progress.total
                            : static_cast<std::size_t>(start - data);
    }
    progressHandler_(progress);
}

std::unique_ptr<SQLContainer> SQLParserC::parseStatements(SQLRecognizer *handle, KpError *error)
{
    // Statements are parsed and walked one at a time, as the script rule's
    // statement loop would parse them; records keep the order of a parse
    // that walks the whole tree afterwards: the parser's first, then the
    // walker's.
    static const StatementFollowSet follow;
    pVellumGrammarCParser parser = asParser(handle);
    pANTLR3_BASE_RECOGNIZER recognizer = parser->pParser->rec;
    pANTLR3_INT_STREAM stream = parser->pParser->tstream->istream;
    auto container = std::make_unique<SQLContainer>();
    StatementWalker statementWalker(useCustomErrorDisplay(), session_);
    bool built = false;
    while (stream->_LA(stream, 1) != ANTLR3_TOKEN_EOF) {
        recognizer->state->following->push(recognizer->state->following,
                                           const_cast<ANTLR3_BITSET_LIST *>(&follow.list), nullptr);
        VellumGrammarCParser_schemaEntry_return entry = parser->schemaEntry(parser);
        recognizer->state->following->pop(recognizer->state->following);
        if (entry.tree != nullptr) {
            built = true;
            if (displayNodeList()) {
                displayTreeString(reinterpret_cast<SQLSyntaxTree *>(entry.tree));
            }
            session_->deferRecords = true;
            const bool walked = statementWalker.walk(entry.tree, *container, error);
            session_->deferRecords = false;
            if (!walked) {
                return nullptr;
            }
        }
        recycleStatementTrees(parser);
        if (session_->tokenWindow != nullptr) {
            session_->tokenWindow->releaseConsumed();
        }
        if (progressHandler_) {
            reportProgress(handle, *container);
        }
    }
    if (!built) {
        logf("tree is nil");
        KpError::handleErrorWithLocalizedString("Tried to parse unallocated Tree", KpErrorUnallocatedTree, error);
        return nullptr;
    }
    for (SQLParserException &record : session_->deferredRecords) {
        exceptionsList_.push_back(std::move(record));
    }
    session_->deferredRecords.clear();
    return container;
}

SQLInputStream *SQLParserC::inputStreamFromString(std::u16string_view text)
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

SQLLexer *SQLParserC::lexerForInputStream(SQLInputStream *input)
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
    if (session_ != nullptr) {
        recognizer->state->userp = session_;
        session_->lexerNextToken = recognizer->state->tokSource->nextToken;
        recognizer->state->tokSource->nextToken = nextTokenPlacingEnd;
    }
    return reinterpret_cast<SQLLexer *>(lexer);
}

SQLRecognizer *SQLParserC::parserForTokenStream(SQLTokenStream *tokens)
{
    pVellumGrammarCParser parser = VellumGrammarCParserNew(asTokens(tokens));
    if (parser == nullptr) {
        return nullptr;
    }
    pANTLR3_BASE_RECOGNIZER recognizer = parser->pParser->rec;
    recognizer->displayRecognitionError = kp_parser_displayRecognitionError;
    if (useCustomErrorDisplay()) {
        recognizer->recover = kp_parser_recover2;
        recognizer->state->userp = session_;
        parser->adaptor->errorNode = kp_errorNode;
    }
    return reinterpret_cast<SQLRecognizer *>(parser);
}

std::unique_ptr<SQLContainer> SQLParserC::parseTree(SQLSyntaxTree *handle, KpError *error)
{
    pANTLR3_BASE_TREE tree = asTree(handle);
    if (tree == nullptr) {
        logf("tree is nil");
        KpError::handleErrorWithLocalizedString("Tried to parse unallocated Tree", KpErrorUnallocatedTree, error);
        return nullptr;
    }
    pANTLR3_COMMON_TREE_NODE_STREAM nodes = antlr3CommonTreeNodeStreamNewTree(tree, streamSizeHint);
    if (nodes == nullptr) {
        logf("empty tree to parse");
        KpError::handleErrorWithLocalizedString("Tried to parse empty Tree", KpErrorEmptyTree, error);
        return nullptr;
    }
    if (displayNodeList()) {
        displayTreeString(handle);
    }
    std::unique_ptr<SQLContainer> container = parseTreeStream(reinterpret_cast<SQLTreeNodeStream *>(nodes), error);
    nodes->free(nodes);
    return container;
}

std::unique_ptr<SQLContainer> SQLParserC::parseTreeStream(SQLTreeNodeStream *handle, KpError *error)
{
    auto container = std::make_unique<SQLContainer>();
    if (!walkTree(handle, *container, error)) {
        return nullptr;
    }
    return container;
}

bool SQLParserC::walkTree(SQLTreeNodeStream *handle, SQLContainer &container, KpError *error)
{
    pVellumTreeGrammarC walker = newWalker(handle, useCustomErrorDisplay(), session_, error);
    if (walker == nullptr) {
        return false;
    }
    walker->schema(walker, &container);
    walker->free(walker);
    return true;
}


std::vector<SQLToken> SQLParserC::tokensForString(std::string_view sql)
{
    const std::u16string text = scriptUnits(sql);
    ParseSession session;
    session.driver = this;
    SessionScope scope(session_, &session);
    Pipeline pipeline;
    std::vector<SQLToken> result;
    pipeline.input = asInput(inputStreamFromString(text));
    if (pipeline.input == nullptr) {
        return result;
    }
    pipeline.lexer = asLexer(lexerForInputStream(reinterpret_cast<SQLInputStream *>(pipeline.input)));
    if (pipeline.lexer == nullptr) {
        return result;
    }
    pipeline.tokens = antlr3CommonTokenStreamSourceNew(streamSizeHint, TOKENSOURCE(pipeline.lexer));
    if (pipeline.tokens == nullptr) {
        return result;
    }
    pANTLR3_TOKEN_STREAM stream = pipeline.tokens->tstream;
    stream->_LT(stream, 1);  // the stream reads the whole input on first use
    pANTLR3_VECTOR vector = pipeline.tokens->tokens;
    result.reserve(vector->count);
    for (ANTLR3_UINT32 i = 0; i < vector->count; ++i) {
        auto token = static_cast<pANTLR3_COMMON_TOKEN>(vector->get(vector, i));
        SQLToken info;
        info.index = static_cast<long>(i);
        info.type = static_cast<int>(token->type);
        info.name = token->type < kp_parserTokenCount
                        ? reinterpret_cast<const char *>(VellumGrammarCParserTokenNames[token->type])
                        : "<unknown>";
        info.channel = static_cast<int>(token->channel);
        info.line = static_cast<int>(token->line);
        info.pos = token->charPosition;
        info.text = kp_tokenText(token);
        result.push_back(std::move(info));
    }
    return result;
}

std::string SQLParserC::syntaxTreeForString(std::string_view sql, KpError *error)
{
    const std::u16string text = scriptUnits(sql);
    ParseSession session;
    session.driver = this;
    session.stackBase = static_cast<const char *>(__builtin_frame_address(0));
    session.dropBlanks = true;
    SessionScope scope(session_, &session);
    Pipeline pipeline;
    pipeline.input = asInput(inputStreamFromString(text));
    pipeline.lexer = pipeline.input != nullptr
                         ? asLexer(lexerForInputStream(reinterpret_cast<SQLInputStream *>(pipeline.input)))
                         : nullptr;
    pipeline.tokens =
        pipeline.lexer != nullptr ? antlr3CommonTokenStreamSourceNew(streamSizeHint, TOKENSOURCE(pipeline.lexer)) : nullptr;
    std::optional<sqlantlr::TokenWindow> window;
    if (pipeline.tokens != nullptr) {
        window.emplace(pipeline.tokens, pipeline.lexer->pLexer);
    }
    pipeline.parser = pipeline.tokens != nullptr
                          ? asParser(parserForTokenStream(reinterpret_cast<SQLTokenStream *>(pipeline.tokens)))
                          : nullptr;
    if (pipeline.parser == nullptr) {
        KpError::handleErrorWithLocalizedString("Failed to allocate parser (out of memory?)", KpErrorParser, error);
        return {};
    }
    VellumGrammarCParser_schema_return result = pipeline.parser->schema(pipeline.parser);
    return AntlrTreeString(result.tree);
}

void SQLParserC::displayTokenStream(SQLTokenStream *handle) const
{
    pANTLR3_COMMON_TOKEN_STREAM tokens = asTokens(handle);
    pANTLR3_TOKEN_STREAM stream = tokens->tstream;
    if (sqlantlr::TokenWindow *window = sqlantlr::TokenWindow::of(stream)) {
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

void SQLParserC::displayTreeString(SQLSyntaxTree *tree) const
{
    const std::string text = AntlrTreeString(asTree(tree));
    if (text.empty()) {
        logf("tree string is nil");
    } else {
        logf("Nodes: %s\n--\n", text.c_str());
    }
}

void SQLParserC::displayErrors() const
{
    std::string text = "Parsing Errors: (";
    for (const SQLParserException &exception : exceptionsList_) {
        text += "\n    " + exception.reason;
    }
    text += exceptionsList_.empty() ? ")" : "\n)";
    sqlantlr::logMessage(text);
}

void SQLParserC::addException(SQLParserException exception)
{
    if (session_ != nullptr && session_->deferRecords) {
        session_->deferredRecords.push_back(std::move(exception));
        return;
    }
    exceptionsList_.push_back(std::move(exception));
}

void SQLParserC::addExceptionWithMessage(const std::string &message, int lineNumber, int charPos)
{
    addException({"ParsingException", "[" + std::to_string(lineNumber) + ":" + std::to_string(charPos) + "] " + message});
}

void SQLParserC::addDuplicateFieldExceptionMessage(const SQLField &field, const SQLTable &table,
                                                   const std::string &originalName, int lineNumber, int charPos)
{
    addExceptionWithMessage("Duplicate field '" + originalName + "' has been renamed to '" + field.getName() +
                                "' in table '" + table.getName() + "'",
                            lineNumber, charPos);
}

SQLReferentialActions *SQLParserC::addForeignKey(SQLTable *table, const std::optional<std::string> &fkRefName,
                                                 int line, int charPos, const std::vector<std::string> &tableNameParts,
                                                 const std::vector<std::string> &localFieldList,
                                                 const std::vector<std::string> &foreignFieldList)
{
    const std::string targetName = tableNameFromReturnArray(tableNameParts);
    const bool named = fkRefName.has_value() && !fkRefName->empty();

    // A one-column reference lives on its field.
    if (localFieldList.size() == 1 && foreignFieldList.size() < 2) {
        const std::string &local = localFieldList.front();
        std::optional<std::string_view> foreign;
        if (!foreignFieldList.empty()) {
            foreign = foreignFieldList.front();
        }
        if (table == nullptr) {
            logf("table is nil");
            return nullptr;
        }
        SQLField *field = table->getFieldByName(local);
        if (field == nullptr) {
            addExceptionWithMessage("[" + std::to_string(line) + "], local field not found when parsing foreign key:'" +
                                        local + "' -> '" + (foreign ? std::string(*foreign) : std::string("(null)")) +
                                        "' -- " + table->getFieldNameListString(),
                                    line, charPos);
            return nullptr;
        }
        field->setReferences(targetName, foreign);
        if (named) {
            field->setReferenceId(*fkRefName);
        }
        field->setDefaultCardinalityForImport();
        return field;
    }

    auto foreignKey = std::make_unique<SQLForeignKey>();
    foreignKey->setDefaultCardinalityForImport();
    foreignKey->setTargetTableByName(targetName);
    if (named) {
        foreignKey->setName(*fkRefName);
    }
    if (foreignFieldList.empty()) {
        foreignKey->setPropertyAsBoolean("targetsPrimaryKey", true);
    }
    if (table == nullptr) {
        logf("table is nil");
        return nullptr;
    }
    SQLForeignKey *added = table->add(std::move(foreignKey));
    for (size_t i = 0; i < localFieldList.size(); ++i) {
        const std::string *foreign = i < foreignFieldList.size() ? &foreignFieldList[i] : nullptr;
        SQLField *field = table->getFieldByName(localFieldList[i]);
        if (field == nullptr) {
            addExceptionWithMessage("Table Constraint foreign key Field Name " +
                                        (foreign != nullptr ? *foreign : std::string("(null)")) +
                                        " not found in table " + table->getName() + "\n",
                                    line, charPos);
            continue;
        }
        auto entry = std::make_unique<SQLForeignKeyEntry>(field, nullptr);
        if (foreign != nullptr) {
            entry->setTargetByName(*foreign);
        }
        added->addForeignKeyEntry(std::move(entry));
    }
    return added;
}
