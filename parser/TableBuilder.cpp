#include "TableBuilder.h"

#include "Log.h"
#include "ParseSession.h"
#include "VellumGrammarCParser.h"

#include <SQLAntlrParser/SQLParserC.h>
#include <SchemaModel/SchemaModel.h>

#include <optional>

using sqlantlr::logf;
using sqlantlr::ParseSession;

// ---- Parser ----------------------------------------------------------------

std::string kp_sourceText(pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    if (start == nullptr || stop == nullptr || start->input == nullptr || start->input->data == nullptr ||
        start->type == ANTLR3_TOKEN_EOF || stop->type == ANTLR3_TOKEN_EOF) {
        return {};
    }
    // Token bounds are addresses in the UTF-16 buffer: start is the first
    // byte of the first unit, stop the last byte of the last unit.
    const auto *data = static_cast<const char *>(start->input->data);
    const char *limit = data + start->input->sizeBuf;
    const auto *from = reinterpret_cast<const char *>(start->start);
    const auto *to = reinterpret_cast<const char *>(stop->stop) + 1;
    if (from < data || to > limit || to <= from) {
        return {};
    }
    return kp_utf16Slice(reinterpret_cast<const char16_t *>(from), static_cast<size_t>(to - from) / 2);
}

void setCustomStringValueOnToken(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN carrier,
                                 pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    ParseSession *session = kp_session(recognizer);
    if (carrier == nullptr || session == nullptr) {
        return;
    }
    carrier->custom = const_cast<std::string *>(session->addCustomValue(kp_sourceText(start, stop)));
}

const std::string *kp_customValue(pANTLR3_BASE_TREE node)
{
    pANTLR3_COMMON_TOKEN token = node != nullptr ? node->getToken(node) : nullptr;
    return token != nullptr ? static_cast<const std::string *>(token->custom) : nullptr;
}

namespace {

pANTLR3_INT_STREAM parserStream(pANTLR3_BASE_RECOGNIZER recognizer)
{
    return static_cast<pANTLR3_PARSER>(recognizer->super)->tstream->istream;
}

} // namespace

void kp_requireTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_INT_STREAM is = parserStream(recognizer);
    const ANTLR3_UINT32 next = is->_LA(is, 1);
    if (next == COMMA || next == CLOSEPAREN || next == SEMI || next == ANTLR3_TOKEN_EOF) {
        return;
    }
    recognizer->exConstruct(recognizer);
    pANTLR3_EXCEPTION ex = recognizer->state->exception;
    ex->type = ANTLR3_MISMATCHED_TOKEN_EXCEPTION;
    ex->name = const_cast<char *>(ANTLR3_MISMATCHED_EX_NAME);
    ex->expecting = CLOSEPAREN;
    recognizer->state->error = ANTLR3_TRUE;
}

void kp_recoverToTableEntryEnd(pANTLR3_BASE_RECOGNIZER recognizer)
{
    pANTLR3_INT_STREAM is = parserStream(recognizer);
    recognizer->beginResync(recognizer);
    long depth = 0;
    for (;;) {
        const ANTLR3_UINT32 next = is->_LA(is, 1);
        if (next == ANTLR3_TOKEN_EOF || next == SEMI || (depth == 0 && (next == COMMA || next == CLOSEPAREN))) {
            break;
        }
        if (next == OPENPAREN) {
            ++depth;
        } else if (next == CLOSEPAREN) {
            --depth;
        }
        is->consume(is);
    }
    recognizer->endResync(recognizer);
    recognizer->state->lastErrorIndex = is->index(is);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
}

pANTLR3_BASE_TREE kp_treeEndingInError(pANTLR3_BASE_TREE_ADAPTOR adaptor, pANTLR3_BASE_TREE partial,
                                       pANTLR3_BASE_TREE errorNode)
{
    if (errorNode == nullptr) {
        return partial;
    }
    if (partial == nullptr || (partial->isNilNode(partial) && partial->getChildCount(partial) == 0)) {
        return errorNode;
    }
    pANTLR3_BASE_TREE last = partial;
    if (partial->isNilNode(partial)) {
        last = static_cast<pANTLR3_BASE_TREE>(partial->getChild(partial, partial->getChildCount(partial) - 1));
    }
    if (last != nullptr && last->getType(last) == ERROR_NODE) {
        return partial;  // a sub-rule's error already ends the tree
    }
    auto root = static_cast<pANTLR3_BASE_TREE>(adaptor->nilNode(adaptor));
    adaptor->addChild(adaptor, root, partial);
    adaptor->addChild(adaptor, root, errorNode);
    return root;
}

// ---- Tree walker: texts ----------------------------------------------------

std::string kp_nodeRunText(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER from)
{
    pANTLR3_TREE_NODE_STREAM nodes = static_cast<pANTLR3_TREE_PARSER>(recognizer->super)->ctnstream->tnstream;
    const ANTLR3_MARKER to = nodes->istream->index(nodes->istream);
    std::string text;
    bool first = true;
    for (ANTLR3_MARKER i = from; i < to; ++i) {
        auto node = static_cast<pANTLR3_BASE_TREE>(nodes->get(nodes, static_cast<ANTLR3_INT32>(i)));
        if (node == nullptr) {
            continue;
        }
        const ANTLR3_UINT32 type = node->getType(node);
        if (type == ANTLR3_TOKEN_DOWN || type == ANTLR3_TOKEN_UP || type == ANTLR3_TOKEN_EOF) {
            continue;
        }
        if (!first) {
            text += ' ';
        }
        // A bracketed word is a quoted name of SQL Server: [int] is the type int.
        std::string word = kp_nodeText(node);
        if (word.size() >= 2 && word.front() == '[' && word.back() == ']') {
            word = word.substr(1, word.size() - 2);
        }
        text += word;
        first = false;
    }
    return text;
}

const std::string *kp_keepText(pANTLR3_BASE_RECOGNIZER recognizer, std::string text)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr) {
        static thread_local std::string scratch;  // only when walked outside a driver
        scratch = std::move(text);
        return &scratch;
    }
    return session->addCustomValue(std::move(text));
}

std::string kp_keptText(const std::string *text)
{
    return text != nullptr ? *text : std::string();
}

bool kp_isWordNode(pANTLR3_BASE_TREE node, const char *upperWord)
{
    return node != nullptr && kp_isWord(node->getToken(node), upperWord);
}

// ---- Tree walker: tables ---------------------------------------------------

void kp_skipToTableEntryEndInTree(pANTLR3_BASE_RECOGNIZER recognizer, ANTLR3_MARKER entryStart)
{
    pANTLR3_TREE_NODE_STREAM nodes = static_cast<pANTLR3_TREE_PARSER>(recognizer->super)->ctnstream->tnstream;
    pANTLR3_INT_STREAM is = nodes->istream;
    auto depthChange = [](ANTLR3_UINT32 type) { return type == OPENPAREN ? 1 : type == CLOSEPAREN ? -1 : 0; };
    long depth = 0;
    for (ANTLR3_MARKER i = entryStart; i < is->index(is); ++i) {
        auto node = static_cast<pANTLR3_BASE_TREE>(nodes->get(nodes, static_cast<ANTLR3_INT32>(i)));
        depth += node != nullptr ? depthChange(node->getType(node)) : 0;
    }
    recognizer->beginResync(recognizer);
    for (;;) {
        const ANTLR3_UINT32 next = is->_LA(is, 1);
        if (next == ANTLR3_TOKEN_EOF || next == SEMI || (depth <= 0 && (next == COMMA || next == CLOSEPAREN))) {
            break;
        }
        depth += depthChange(next);
        is->consume(is);
    }
    recognizer->endResync(recognizer);
    recognizer->state->lastErrorIndex = is->index(is);
    recognizer->state->error = ANTLR3_FALSE;
    recognizer->state->failed = ANTLR3_FALSE;
}

SQLTable *kp_beginTable(SQLContainer *container, const std::vector<std::string> *nameParts)
{
    if (container == nullptr || nameParts == nullptr || nameParts->empty()) {
        return nullptr;
    }
    // The table is made under the first part; a schema-qualified name then
    // gets its schema and its base name, in this order.
    std::unique_ptr<SQLTable> table = SQLTable::tableForImportWithName(nameParts->front());
    if (nameParts->size() == 2) {
        table->setSchemaName((*nameParts)[0]);
        table->setBaseName((*nameParts)[1]);
    }
    return container->add(std::move(table));
}

void kp_setTableType(SQLTable *table, pANTLR3_BASE_TREE engine)
{
    if (table != nullptr && engine != nullptr) {
        table->setTableType(kp_nodeText(engine));
    }
}

void kp_setTableProperty(SQLTable *table, const char *key, pANTLR3_BASE_TREE value)
{
    if (table != nullptr && value != nullptr) {
        table->setProperty(key, kp_nodeText(value));
    }
}

// ---- Tree walker: fields ---------------------------------------------------

SQLField *kp_addField(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE nameNode,
                      const std::string &type, bool accepted)
{
    if (!accepted || table == nullptr || nameNode == nullptr) {
        return nullptr;
    }
    std::unique_ptr<SQLField> field = SQLField::fieldWithName(kp_nodeText(nameNode), type);
    const std::string nameBeforeAdding = field->getName();
    bool didRename = false;
    SQLField *added = table->addWithRenaming(std::move(field), &didRename);
    ParseSession *session = kp_session(recognizer);
    if (didRename && added != nullptr && session != nullptr && session->driver != nullptr) {
        session->driver->addDuplicateFieldExceptionMessage(*added, *table, nameBeforeAdding,
                                                           static_cast<int>(nameNode->getLine(nameNode)),
                                                           static_cast<int>(nameNode->getCharPositionInLine(nameNode)));
    }
    return added;
}

void kp_traceRejectedType(pANTLR3_BASE_RECOGNIZER, pANTLR3_BASE_TREE typeWord)
{
    if (typeWord == nullptr) {
        return;
    }
    logf(" Tree Parser : syntax not recognized... type %s at [%u:%u] is not taken; the column is not built\n",
         kp_nodeText(typeWord).c_str(), typeWord->getLine(typeWord), typeWord->getCharPositionInLine(typeWord));
}

void kp_setPrimaryKey(SQLField *field)
{
    if (field != nullptr) {
        field->setPrimaryKey(true);
    }
}

void kp_setNotNull(SQLField *field)
{
    if (field != nullptr) {
        field->setNotNull(true);
    }
}

void kp_setAutoIncrement(SQLField *field)
{
    if (field != nullptr) {
        field->setAutoIncrement(true);
    }
}

void kp_setFieldFlag(SQLField *field, const char *key)
{
    if (field != nullptr) {
        field->setPropertyAsBoolean(key, true);
    }
}

void kp_setFieldProperty(SQLField *field, const char *key, pANTLR3_BASE_TREE value)
{
    if (field != nullptr && value != nullptr) {
        field->setProperty(key, kp_nodeText(value));
    }
}

void kp_setFieldProperty(SQLField *field, const char *key, const std::string &value)
{
    if (field != nullptr) {
        field->setProperty(key, value);
    }
}

void kp_setDefaultFromToken(SQLField *field, pANTLR3_BASE_TREE defaultNode)
{
    const std::string *value = kp_customValue(defaultNode);
    if (field != nullptr && value != nullptr) {
        field->setDefaultValueFromParsedString(*value);
    }
}

void kp_addCheckConstraintFromToken(SQLObject *target, pANTLR3_BASE_TREE checkNode, const std::string *name)
{
    const std::string *expression = kp_customValue(checkNode);
    if (expression == nullptr || target == nullptr) {
        return;
    }
    auto makeConstraint = [&] {
        std::unique_ptr<SQLConstraint> constraint = SQLConstraint::constraint();
        constraint->setName(name != nullptr ? *name : std::string("cons_check"));
        constraint->setCheckConstraintExpression(*expression);
        return constraint;
    };
    if (auto *table = dynamic_cast<SQLTable *>(target)) {
        table->addCheckConstraint(makeConstraint());
    } else if (auto *field = dynamic_cast<SQLField *>(target)) {
        field->addCheckConstraint(makeConstraint());
    }
}

// ---- Tree walker: references -----------------------------------------------

void kp_setFieldReference(pANTLR3_BASE_RECOGNIZER recognizer, SQLField *field,
                          const std::vector<std::string> *targetParts,
                          const std::vector<std::string> *targetColumns, pANTLR3_BASE_TREE referencesWord)
{
    const std::string tableName =
        targetParts != nullptr ? SQLParserC::tableNameFromReturnArray(*targetParts) : std::string();
    std::optional<std::string> foreignName;
    if (targetColumns != nullptr && !targetColumns->empty()) {
        foreignName = targetColumns->front();
    }
    if (field != nullptr) {
        field->setReferences(tableName, foreignName);
        field->setDefaultCardinalityForImport();
        return;
    }
    const std::string message = "local field not found when linking to " + tableName + "(" +
                                foreignName.value_or("(null)") + ")";
    logf("Parsing exception - no local field %s", message.c_str());
    ParseSession *session = kp_session(recognizer);
    if (session != nullptr && referencesWord != nullptr) {
        session->addException(message, static_cast<int>(referencesWord->getLine(referencesWord)),
                              static_cast<int>(referencesWord->getCharPositionInLine(referencesWord)));
    }
}

void kp_setUpdateAction(SQLReferentialActions *target, int code)
{
    if (target != nullptr) {
        target->setUpdateAction(code);
    }
}

void kp_setDeleteAction(SQLReferentialActions *target, int code)
{
    if (target != nullptr) {
        target->setDeleteAction(code);
    }
}

void kp_setDeferrable(SQLReferentialActions *target, bool deferrable)
{
    if (target != nullptr) {
        target->setDeferrable(deferrable);
    }
}

void kp_setInitiallyDeferred(SQLReferentialActions *target, bool initiallyDeferred)
{
    if (target != nullptr) {
        target->setInitiallyDeferred(initiallyDeferred);
    }
}
