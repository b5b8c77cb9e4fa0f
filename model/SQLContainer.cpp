#include <SchemaModel/SQLContainer.h>

#include "NameLookup.h"

#include <algorithm>
#include <type_traits>

using SchemaModel::namesEqualIgnoringCase;

namespace {

enum class Match { Exact, IgnoringCase };

bool namesMatch(std::string_view a, std::string_view b, Match match)
{
    return match == Match::Exact ? a == b : namesEqualIgnoringCase(a, b);
}

bool schemaMatches(const std::optional<std::string> &objectSchema, std::string_view schema, Match match)
{
    return objectSchema && namesMatch(*objectSchema, schema, match);
}

// The first object of `items` named `name` whose schema satisfies `accept`,
// comparing names as `match` says.
template <typename List, typename Accept>
auto findObject(const List &items, std::string_view name, Match match, Accept accept) -> decltype(&*items.front())
{
    for (const auto &item : items)
        if (item->hasName() && namesMatch(item->getName(), name, match) && accept(*item))
            return &*item;
    return nullptr;
}

// Tables and views share the same look-up rules; `lists` are searched in
// order of preference, each pass going over all of them.
template <typename Result, typename... Lists>
Result *findWithSchema(std::string_view rawName, std::optional<std::string_view> rawSchema, const Lists &...lists)
{
    const std::string name = SchemaModel::trim(rawName);
    if (name.empty())
        return nullptr;
    const std::string schema = rawSchema ? SchemaModel::trim(*rawSchema) : std::string();

    Result *found = nullptr;
    auto search = [&](Match match, auto accept) {
        ((found = found ? found : findObject(lists, name, match, accept)), ...);
        return found != nullptr;
    };
    if (!schema.empty()) {
        for (Match match : {Match::Exact, Match::IgnoringCase})
            if (search(match, [&](const auto &object) { return schemaMatches(object.getSchemaName(), schema, match); }))
                return found;
        for (Match match : {Match::Exact, Match::IgnoringCase})
            if (search(match, [](const auto &object) { return !object.getSchemaName().has_value(); }))
                return found;
        return nullptr;
    }
    for (Match match : {Match::Exact, Match::IgnoringCase})
        if (search(match, [](const auto &) { return true; }))
            return found;
    return nullptr;
}

} // namespace

SQLContainer::~SQLContainer() = default;
SQLContainer::SQLContainer(SQLContainer &&) noexcept = default;
SQLContainer &SQLContainer::operator=(SQLContainer &&) noexcept = default;

SQLTable *SQLContainer::add(std::unique_ptr<SQLTable> table)
{
    if (!table)
        return nullptr;
    tables_.push_back(std::move(table));
    SQLTable *added = tables_.back().get();
    if (added->hasName())
        tablesByName_[SchemaModel::detail::foldedName(added->getName())].push_back(added);
    return added;
}

SQLView *SQLContainer::add(std::unique_ptr<SQLView> view)
{
    if (!view)
        return nullptr;
    views_.push_back(std::move(view));
    SQLView *added = views_.back().get();
    if (added->hasName())
        viewsByName_[SchemaModel::detail::foldedName(added->getName())].push_back(added);
    return added;
}

void SQLContainer::append(SQLContainer &&other)
{
    if (&other == this)
        return;
    for (auto &table : other.tables_)
        add(std::move(table));
    for (auto &view : other.views_)
        add(std::move(view));
    other.tables_.clear();
    other.views_.clear();
    other.tablesByName_.clear();
    other.viewsByName_.clear();
}

namespace {

// The indexed objects of one folded name, in the order they were added.
template <typename T>
const std::vector<T *> &candidates(const std::unordered_map<std::string, std::vector<T *>> &index,
                                   const std::string &folded)
{
    static const std::vector<T *> none;
    const auto found = index.find(folded);
    return found == index.end() ? none : found->second;
}

} // namespace

template <typename Result>
Result *SQLContainer::lookUp(std::string_view name, std::optional<std::string_view> schema) const
{
    // Only objects of the same folded name can match; search them with the
    // rules of a full search, then fall back to one for renamed objects.
    const std::string folded = SchemaModel::detail::foldedName(SchemaModel::trim(name));
    if constexpr (std::is_same_v<Result, SQLTable>) {
        if (SQLTable *found = findWithSchema<SQLTable>(name, schema, candidates(tablesByName_, folded)))
            return found;
        return findWithSchema<SQLTable>(name, schema, tables_);
    } else if constexpr (std::is_same_v<Result, SQLView>) {
        if (SQLView *found = findWithSchema<SQLView>(name, schema, candidates(viewsByName_, folded)))
            return found;
        return findWithSchema<SQLView>(name, schema, views_);
    } else {
        if (SQLObject *found = findWithSchema<SQLObject>(name, schema, candidates(tablesByName_, folded),
                                                         candidates(viewsByName_, folded)))
            return found;
        return findWithSchema<SQLObject>(name, schema, tables_, views_);
    }
}

SQLObject *SQLContainer::getObjectByName(std::string_view name) const
{
    return getObjectWithSchema(name, std::nullopt);
}

SQLObject *SQLContainer::getObjectWithSchema(std::string_view name, std::optional<std::string_view> schema) const
{
    return lookUp<SQLObject>(name, schema);
}

SQLTable *SQLContainer::getTableByName(std::string_view name) const
{
    return getTableWithSchema(name, std::nullopt);
}

SQLTable *SQLContainer::getTableWithSchema(std::string_view name, std::optional<std::string_view> schema) const
{
    return lookUp<SQLTable>(name, schema);
}

SQLView *SQLContainer::getViewByName(std::string_view name) const
{
    return lookUp<SQLView>(name, std::nullopt);
}

SQLTable *SQLContainer::findReferencedTable(std::string_view reference) const
{
    const SchemaModel::QualifiedName qualified = SchemaModel::splitQualifiedName(reference);
    if (SQLTable *table = getTableWithSchema(qualified.name, qualified.schema))
        return table;
    // A quoted name such as `a.b` reaches us unquoted; it may name a table
    // whose name contains the dot.
    if (qualified.schema)
        return getTableByName(reference);
    return nullptr;
}

void SQLContainer::resolveFieldReference(SQLFieldReference &reference) const
{
    reference.targetTable = findReferencedTable(reference.table);
    reference.targetField = nullptr;
    if (reference.targetTable) {
        if (reference.field) {
            reference.targetField = reference.targetTable->getFieldByName(*reference.field);
        } else {
            // No column written: the target's primary key, if it is a single column.
            const std::vector<SQLField *> key = reference.targetTable->getPrimaryKeyFields();
            if (key.size() == 1)
                reference.targetField = key.front();
        }
    }
    reference.resolved = reference.targetField != nullptr;
}

void SQLContainer::resolveForeignKey(SQLForeignKey &foreignKey) const
{
    SQLTable *target = foreignKey.targetTableName_ ? findReferencedTable(*foreignKey.targetTableName_) : nullptr;
    foreignKey.targetTable_ = target;

    auto &entries = foreignKey.entries_;
    bool targetsPrimaryKey = foreignKey.getPropertyAsBoolean("targetsPrimaryKey");
    if (!targetsPrimaryKey) {
        // Entries that name no target column at all also mean the primary key.
        targetsPrimaryKey = std::none_of(entries.begin(), entries.end(),
                                         [](const auto &entry) { return entry->targetName_.has_value(); });
    }

    if (targetsPrimaryKey) {
        // Pair up by position; a key of a different width pairs nothing.
        const std::vector<SQLField *> key = target ? target->getPrimaryKeyFields() : std::vector<SQLField *>();
        const bool widthsMatch = target && key.size() == entries.size();
        for (std::size_t i = 0; i < entries.size(); ++i)
            entries[i]->target_ = widthsMatch ? key[i] : nullptr;
    } else {
        for (const auto &entry : entries)
            entry->target_ = (target && entry->targetName_) ? target->getFieldByName(*entry->targetName_) : nullptr;
    }

    foreignKey.resolved_ = target && !entries.empty() &&
                           std::all_of(entries.begin(), entries.end(),
                                       [](const auto &entry) { return entry->target_ != nullptr; });
}

void SQLContainer::postLoadProcess()
{
    for (const auto &table : tables_) {
        for (const auto &field : table->fields())
            if (SQLFieldReference *reference = field->getReferences())
                resolveFieldReference(*reference);
        for (const auto &foreignKey : table->foreignKeys())
            resolveForeignKey(*foreignKey);
    }
}
