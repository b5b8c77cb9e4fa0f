// The parse driver: text -> case-folding stream -> lexer -> token stream ->
// parser (syntax tree) -> tree walker (model). The recognizers of one call
// belong to a RecognizerPipeline, which frees them on every path.
#include <SQLAntlrParser/SQLParserC.h>

#include "Log.h"
#include "RecognizerPipeline.h"
#include "ScriptFileText.h"
#include "TextEncoding.h"

#include <SchemaModel/SchemaModel.h>

#include <unicode/ustring.h>


using sqlantlr::logf;
using sqlantlr::RecognizerPipeline;

namespace {

std::u16string scriptUnits(std::string_view sql)
{
    std::u16string text = sqlantlr::utf8ToUtf16(sql);
    char16_t *end = text.data() + text.size();
    const char16_t *begin = sqlantlr::keepScriptUnits(text.data(), end, true, sql);
    text.erase(static_cast<size_t>(end - text.data()));
    text.erase(0, static_cast<size_t>(begin - text.data()));
    return text;
}

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
    // A long script is decoded as the parse reads it, as a long script file
    // is, so that the parse does not hold its UTF-16 text as well as the
    // caller's UTF-8 whole in memory.
    if (sql.size() >= sqlantlr::ScriptFileText::heldInMemoryBelow()) {
        if (std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::fromUtf8(sql)) {
            return parseUnits(text->units(), text.get(), error);
        }
    }
    return parseUnits(scriptUnits(sql), nullptr, error);
}

std::unique_ptr<SQLContainer> SQLParserC::parseFile(const std::string &path, KpError *error)
{
    if (std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::open(path)) {
        return parseUnits(text->units(), text.get(), error);
    }
    return parseString(sqlantlr::scriptFileString(path), error);
}

std::unique_ptr<SQLContainer> SQLParserC::parseUnits(std::u16string_view text, sqlantlr::ScriptFileText *mapped,
                                                     KpError *error)
{
    RecognizerPipeline pipeline(*this, RecognizerPipeline::Use::Parse);
    pipeline.session().skipDataStatements = skipsDataStatements_;
    // A subclass that displays each statement's tree sees every token of it.
    pipeline.session().plainColumns = readsPlainColumns_ && !displayNodeList();
    pipeline.session().mappedText = mapped;
    if (!pipeline.openTokens(text, error)) {
        return nullptr;
    }
    if (displayTokenStream()) {
        displayTokenStream(pipeline.tokenStream());
    }
    if (!pipeline.openParser(error)) {
        return nullptr;
    }
    if (pipeline.atEnd()) {
        // No statement at all: the whole-script rule reports it.
        return parseTree(pipeline.parseScript(), error);
    }
    return parseStatements(pipeline, error);
}

std::unique_ptr<SQLContainer> SQLParserC::parseStatements(RecognizerPipeline &pipeline, KpError *error)
{
    // Statements are parsed and walked one at a time, as the script rule's
    // statement loop would parse them; records keep the order of a parse
    // that walks the whole tree afterwards: the parser's first, then the
    // walker's.
    auto container = std::make_unique<SQLContainer>();
    bool built = false;
    while (!pipeline.atEnd()) {
        // A plain CREATE TABLE goes straight into the model; a data
        // statement leaves nothing in it.
        bool leavesTree = false;
        if (pipeline.importPlainStatement(*container)) {
            built = true;
        } else if (pipeline.skipDataStatement(&leavesTree)) {
            built = built || leavesTree;
        } else if (SQLSyntaxTree *tree = pipeline.parseStatement()) {
            built = true;
            if (displayNodeList()) {
                displayTreeString(tree);
            }
            session_->deferRecords = true;
            const bool walked = walkStatement(tree, *container, error);
            session_->deferRecords = false;
            if (!walked) {
                return nullptr;
            }
        }
        pipeline.releaseFinishedStatements();
        if (progressHandler_) {
            SQLParseProgress progress = pipeline.progress();
            progress.tables = container->tables().size();
            progressHandler_(progress);
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

bool SQLParserC::walkStatement(SQLSyntaxTree *tree, SQLContainer &container, KpError *error)
{
    if (session_ == nullptr || session_->pipeline == nullptr) {
        // Called outside a parse: walk the tree on its own.
        SQLTreeNodeStream *nodes = sqlantlr::newTreeNodeStream(tree);
        if (nodes == nullptr) {
            KpError::handleErrorWithLocalizedString("Tried to parse empty Tree", KpErrorEmptyTree, error);
            return false;
        }
        const bool walked = walkTree(nodes, container, error);
        sqlantlr::freeTreeNodeStream(nodes);
        return walked;
    }
    return session_->pipeline->walkStatement(tree, container, error);
}

SQLInputStream *SQLParserC::inputStreamFromString(std::u16string_view text)
{
    return sqlantlr::newInputStream(text);
}

SQLLexer *SQLParserC::lexerForInputStream(SQLInputStream *input)
{
    return sqlantlr::newLexer(input, session_);
}

SQLRecognizer *SQLParserC::parserForTokenStream(SQLTokenStream *tokens)
{
    return sqlantlr::newParser(tokens, session_, useCustomErrorDisplay());
}

std::unique_ptr<SQLContainer> SQLParserC::parseTree(SQLSyntaxTree *tree, KpError *error)
{
    if (tree == nullptr) {
        logf("tree is nil");
        KpError::handleErrorWithLocalizedString("Tried to parse unallocated Tree", KpErrorUnallocatedTree, error);
        return nullptr;
    }
    SQLTreeNodeStream *nodes = sqlantlr::newTreeNodeStream(tree);
    if (nodes == nullptr) {
        logf("empty tree to parse");
        KpError::handleErrorWithLocalizedString("Tried to parse empty Tree", KpErrorEmptyTree, error);
        return nullptr;
    }
    if (displayNodeList()) {
        displayTreeString(tree);
    }
    std::unique_ptr<SQLContainer> container = parseTreeStream(nodes, error);
    sqlantlr::freeTreeNodeStream(nodes);
    return container;
}

std::unique_ptr<SQLContainer> SQLParserC::parseTreeStream(SQLTreeNodeStream *nodes, KpError *error)
{
    auto container = std::make_unique<SQLContainer>();
    if (!walkTree(nodes, *container, error)) {
        return nullptr;
    }
    return container;
}

bool SQLParserC::walkTree(SQLTreeNodeStream *nodes, SQLContainer &container, KpError *error)
{
    return sqlantlr::walkTreeStream(nodes, container, session_, useCustomErrorDisplay(), error);
}

std::vector<SQLToken> SQLParserC::tokensForString(std::string_view sql)
{
    const std::u16string text = scriptUnits(sql);
    RecognizerPipeline pipeline(*this, RecognizerPipeline::Use::Tokens);
    if (!pipeline.openTokens(text, nullptr)) {
        return {};
    }
    return pipeline.tokenList();
}

void SQLParserC::forEachToken(std::string_view sql, const std::function<void(const SQLToken &)> &each)
{
    streamTokens(scriptUnits(sql), nullptr, each);
}

void SQLParserC::forEachTokenOfFile(const std::string &path, const std::function<void(const SQLToken &)> &each)
{
    if (std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::open(path)) {
        streamTokens(text->units(), text.get(), each);
        return;
    }
    forEachToken(sqlantlr::scriptFileString(path), each);
}

void SQLParserC::streamTokens(std::u16string_view text, sqlantlr::ScriptFileText *mapped,
                              const std::function<void(const SQLToken &)> &each)
{
    RecognizerPipeline pipeline(*this, RecognizerPipeline::Use::Tokens);
    pipeline.session().mappedText = mapped;
    if (pipeline.openTokens(text, nullptr)) {
        pipeline.streamTokens(each);
    }
}

bool SQLParserC::writeSyntaxTree(std::string_view sql, const std::function<void(std::string_view)> &write,
                                 KpError *error)
{
    return streamSyntaxTree(scriptUnits(sql), nullptr, write, error);
}

bool SQLParserC::writeSyntaxTreeOfFile(const std::string &path, const std::function<void(std::string_view)> &write,
                                       KpError *error)
{
    if (std::unique_ptr<sqlantlr::ScriptFileText> text = sqlantlr::ScriptFileText::open(path)) {
        return streamSyntaxTree(text->units(), text.get(), write, error);
    }
    return writeSyntaxTree(sqlantlr::scriptFileString(path), write, error);
}

bool SQLParserC::streamSyntaxTree(std::u16string_view text, sqlantlr::ScriptFileText *mapped,
                                  const std::function<void(std::string_view)> &write, KpError *error)
{
    RecognizerPipeline pipeline(*this, RecognizerPipeline::Use::Parse);
    pipeline.session().mappedText = mapped;
    if (!pipeline.openTokens(text, nullptr) || !pipeline.openParser(nullptr)) {
        KpError::handleErrorWithLocalizedString("Failed to allocate parser (out of memory?)", KpErrorParser, error);
        return false;
    }
    if (pipeline.atEnd()) {
        // No statement at all: the whole-script rule makes what there is.
        write(sqlantlr::syntaxTreeString(pipeline.parseScript()));
        return true;
    }
    // The whole-script tree is a list of the statements' items, so writing
    // each statement's items with a blank between any two gives its text.
    std::string piece;
    bool first = true;
    while (!pipeline.atEnd()) {
        piece.clear();
        sqlantlr::appendSyntaxTreeItems(pipeline.parseStatement(), piece, first);
        if (!piece.empty()) {
            write(piece);
        }
        pipeline.releaseFinishedStatements();
    }
    return true;
}

std::string SQLParserC::syntaxTreeForString(std::string_view sql, KpError *error)
{
    const std::u16string text = scriptUnits(sql);
    RecognizerPipeline pipeline(*this, RecognizerPipeline::Use::Parse);
    if (!pipeline.openTokens(text, nullptr) || !pipeline.openParser(nullptr)) {
        KpError::handleErrorWithLocalizedString("Failed to allocate parser (out of memory?)", KpErrorParser, error);
        return {};
    }
    return sqlantlr::syntaxTreeString(pipeline.parseScript());
}

void SQLParserC::displayTokenStream(SQLTokenStream *tokens) const
{
    sqlantlr::logTokenStream(tokens);
}

void SQLParserC::displayTreeString(SQLSyntaxTree *tree) const
{
    sqlantlr::logSyntaxTree(tree);
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
            logf("table is nil");  // no field can be found: the record below follows
        }
        SQLField *field = table != nullptr ? table->getFieldByName(local) : nullptr;
        if (field == nullptr) {
            addExceptionWithMessage("[" + std::to_string(line) + "], local field not found when parsing foreign key:'" +
                                        local + "' -> '" + (foreign ? std::string(*foreign) : std::string("(null)")) +
                                        "' -- " + (table != nullptr ? table->getFieldNameListString() : "(null)"),
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
    // Without a table the key is dropped, but every column is still reported.
    SQLForeignKey *added = table != nullptr ? table->add(std::move(foreignKey)) : nullptr;
    for (size_t i = 0; i < localFieldList.size(); ++i) {
        const std::string *foreign = i < foreignFieldList.size() ? &foreignFieldList[i] : nullptr;
        SQLField *field = table != nullptr ? table->getFieldByName(localFieldList[i]) : nullptr;
        if (field == nullptr) {
            addExceptionWithMessage("Table Constraint foreign key Field Name " +
                                        (foreign != nullptr ? *foreign : std::string("(null)")) +
                                        " not found in table " + (table != nullptr ? table->getName() : "(null)") +
                                        "\n",
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
