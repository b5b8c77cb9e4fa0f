// The model side of the CREATE TABLE rules (treegrammar/20-CreateTable.g):
// the table itself and its table options.
#include "TableBuilder.h"

#include "AlterBuilder.h"

#include <SchemaModel/SchemaModel.h>

#include <sstream>
#include <variant>

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
    if (table != nullptr && engine != nullptr && !kp_isRecoveryNode(engine)) {
        table->setTableType(kp_nodeText(engine));
    }
}

void kp_setTableProperty(SQLTable *table, const char *key, pANTLR3_BASE_TREE value)
{
    if (table != nullptr && value != nullptr && !kp_isRecoveryNode(value)) {
        table->setProperty(key, kp_nodeText(value));
    }
}

std::optional<std::string> kp_commentText(std::string_view written)
{
    const size_t first = written.find_first_not_of(" \t\r\n");
    const std::string_view text = first == std::string_view::npos
                                      ? std::string_view()
                                      : written.substr(first, written.find_last_not_of(" \t\r\n") - first + 1);
    if (kp_textIsWord(text, "NULL")) {
        return std::nullopt;
    }
    if (!text.empty() && text.front() == '$') {
        const size_t tagEnd = text.find('$', 1);
        if (tagEnd != std::string_view::npos) {
            const std::string_view tag = text.substr(0, tagEnd + 1);
            const size_t close = text.rfind(tag);
            if (close > tagEnd) {
                return std::string(text.substr(tagEnd + 1, close - tagEnd - 1));
            }
        }
        return std::string(text);
    }
    const size_t open = text.find_first_of("'\"`");
    if (open == std::string_view::npos || text.size() < open + 2 || text.back() != text[open]) {
        return std::string(text);
    }
    // The body between the quotes, a doubled quote in it standing for one;
    // copied a run at a time (most comments hold no quote at all).
    const char quote = text[open];
    const std::string_view body = text.substr(open + 1, text.size() - open - 2);
    std::string comment;
    comment.reserve(body.size());
    for (size_t from = 0;;) {
        const size_t at = body.find(quote, from);
        if (at == std::string_view::npos) {
            comment.append(body.substr(from));
            break;
        }
        comment.append(body.substr(from, at + 1 - from));
        from = at + 1 < body.size() && body[at + 1] == quote ? at + 2 : at + 1;
    }
    return comment;
}

namespace {

void applyComment(SQLObject *target, const std::optional<std::string> &comment)
{
    if (target == nullptr) {
        return;
    }
    if (comment) {
        target->setProperty("comment", *comment);
    } else {
        target->removeProperty("comment");
    }
}

std::optional<std::string> commentOnValue(pANTLR3_BASE_TREE is)
{
    const std::string *written = kp_customValue(is);
    return written != nullptr ? kp_commentText(*written) : std::nullopt;
}

} // namespace

void kp_setCommentFromNode(SQLObject *target, pANTLR3_BASE_TREE value)
{
    if (target != nullptr && value != nullptr && !kp_isRecoveryNode(value)) {
        kp_setCommentText(target, kp_nodeText(value));
    }
}

void kp_setCommentText(SQLObject *target, std::string_view written)
{
    applyComment(target, kp_commentText(written));
}

void kp_commentOnTable(SQLContainer *container, const std::vector<std::string> *nameParts, pANTLR3_BASE_TREE is)
{
    if (nameParts == nullptr || nameParts->empty() || kp_customValue(is) == nullptr) {
        return;
    }
    // A database name before schema and table is not part of the model.
    const size_t keep = std::min<size_t>(nameParts->size(), 2);
    const std::vector<std::string> table(nameParts->end() - static_cast<std::ptrdiff_t>(keep), nameParts->end());
    applyComment(kp_findAlterTarget(container, &table), commentOnValue(is));
}

void kp_commentOnColumn(SQLContainer *container, const std::vector<std::string> *nameParts, pANTLR3_BASE_TREE is)
{
    if (nameParts == nullptr || nameParts->size() < 2 || kp_customValue(is) == nullptr) {
        return;
    }
    const size_t keep = std::min<size_t>(nameParts->size() - 1, 2);
    const std::vector<std::string> table(nameParts->end() - 1 - static_cast<std::ptrdiff_t>(keep), nameParts->end() - 1);
    if (SQLTable *target = kp_findAlterTarget(container, &table)) {
        applyComment(target->getFieldByName(nameParts->back()), commentOnValue(is));
    }
}

namespace {

// What a copied column takes along besides its name, type and NOT NULL.
enum CopiedParts : unsigned {
    copyDefaults = 1,     // default value
    copyIdentity = 2,     // auto-increment
    copyConstraints = 4,  // column checks
    copyComments = 8,     // the comment property
    copyEverything = copyDefaults | copyIdentity | copyConstraints | copyComments,
};

std::unique_ptr<SQLField> copyColumn(const SQLField &column, unsigned parts)
{
    std::unique_ptr<SQLField> copy = SQLField::fieldWithName(column.getName(), column.getType());
    copy->setNotNull(column.isNotNull());
    // serial columns read as auto-increment: their default makes them so.
    if ((parts & (copyIdentity | copyDefaults)) != 0) {
        copy->setAutoIncrement(column.isAutoIncrement());
    }
    if (const std::optional<std::string> value = column.getDefaultValue(); value && (parts & copyDefaults) != 0) {
        copy->setDefaultValueFromParsedString(*value);
    }
    for (const auto &[name, value] : column.getProperties()) {
        if (name == "comment" && (parts & copyComments) == 0) {
            continue;
        }
        if (const bool *flag = std::get_if<bool>(&value)) {
            copy->setPropertyAsBoolean(name, *flag);
        } else {
            copy->setProperty(name, std::get<std::string>(value));
        }
    }
    for (const std::unique_ptr<SQLConstraint> &check : column.checkConstraints()) {
        if ((parts & copyConstraints) == 0) {
            break;
        }
        std::unique_ptr<SQLConstraint> checkCopy = SQLConstraint::constraint();
        if (check->hasName()) {
            checkCopy->setName(check->getName());
        }
        if (const std::optional<std::string> expression = check->getCheckConstraintExpression()) {
            checkCopy->setCheckConstraintExpression(*expression);
        }
        copy->addCheckConstraint(std::move(checkCopy));
    }
    return copy;
}

// Adds a copy of each parent column the table does not have yet; the names
// of all the parent's columns are appended to `names` when it is given.
void copyColumns(const SQLTable &parent, SQLTable *table, unsigned parts, std::vector<std::string> *names)
{
    for (const std::unique_ptr<SQLField> &column : parent.fields()) {
        if (names != nullptr) {
            names->push_back(column->getName());
        }
        if (table->getFieldByName(column->getName()) == nullptr) {
            table->addWithRenaming(copyColumn(*column, parts));
        }
    }
}

// INCLUDING | EXCLUDING DEFAULTS, IDENTITY, CONSTRAINTS, COMMENTS or ALL, in
// the order written; the other options (INDEXES, STORAGE, ...) concern
// nothing a column keeps here.
unsigned likeOptionParts(const std::string &options)
{
    unsigned parts = 0;
    std::istringstream words(options);
    std::string verb;
    std::string what;
    while (words >> verb >> what) {
        unsigned named = 0;
        if (kp_textIsWord(what, "ALL")) {
            named = copyEverything;
        } else if (kp_textIsWord(what, "DEFAULTS")) {
            named = copyDefaults;
        } else if (kp_textIsWord(what, "IDENTITY")) {
            named = copyIdentity;
        } else if (kp_textIsWord(what, "CONSTRAINTS")) {
            named = copyConstraints;
        } else if (kp_textIsWord(what, "COMMENTS")) {
            named = copyComments;
        }
        parts = kp_textIsWord(verb, "INCLUDING") ? parts | named : parts & ~named;
    }
    return parts;
}

} // namespace

void kp_inheritColumns(SQLContainer *container, SQLTable *table, const std::vector<std::string> *parentParts,
                       const char *key, std::vector<std::string> *inheritedNames)
{
    if (table == nullptr || parentParts == nullptr || parentParts->empty()) {
        return;
    }
    std::string parentName;
    for (const std::string &part : *parentParts) {
        parentName += (parentName.empty() ? "" : ".") + part;
    }
    const std::optional<std::string> earlier = table->getPropertyAsString(key);
    table->setProperty(key, earlier.has_value() && !earlier->empty() ? *earlier + ", " + parentName : parentName);
    const SQLTable *parent = kp_findAlterTarget(container, parentParts);
    if (parent == nullptr || parent == table) {
        return;
    }
    copyColumns(*parent, table, copyEverything, inheritedNames);
    if (inheritedNames != nullptr) {
        table->moveFieldsToFront(*inheritedNames);
    }
}

void kp_copyLikeColumns(SQLContainer *container, SQLTable *table, const std::vector<std::string> *parentParts,
                        const std::string &options)
{
    if (table == nullptr || parentParts == nullptr || parentParts->empty()) {
        return;
    }
    const SQLTable *parent = kp_findAlterTarget(container, parentParts);
    if (parent != nullptr && parent != table) {
        copyColumns(*parent, table, likeOptionParts(options), nullptr);
    }
}
