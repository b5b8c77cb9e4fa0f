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

namespace SchemaModel::detail {

struct ContainerNameIndexes {
    PositionsByHash tables;
    PositionsByHash views;
};

} // namespace SchemaModel::detail

namespace {

template <typename T>
void index(std::unique_ptr<SchemaModel::detail::ContainerNameIndexes> &names,
           SchemaModel::detail::PositionsByHash SchemaModel::detail::ContainerNameIndexes::*list,
           const std::vector<std::unique_ptr<T>> &items)
{
    const T &added = *items.back();
    if (!added.hasName())
        return;
    if (!names)
        names = std::make_unique<SchemaModel::detail::ContainerNameIndexes>();
    ((*names).*list).add(SchemaModel::detail::FoldedKey::ofName(added.getName()).hash(),
                         static_cast<std::uint32_t>(items.size() - 1));
}

// The objects indexed under the folded name's hash, in the order added.
template <typename T>
std::vector<T *> candidates(const SchemaModel::detail::ContainerNameIndexes *names,
                            SchemaModel::detail::PositionsByHash SchemaModel::detail::ContainerNameIndexes::*list,
                            const std::vector<std::unique_ptr<T>> &items, std::uint32_t hash)
{
    std::vector<T *> found;
    if (names != nullptr)
        (names->*list).visit(hash, [&](std::uint32_t position) {
            found.push_back(items[position].get());
            return false;
        });
    return found;
}

} // namespace

SQLContainer::SQLContainer() = default;
SQLContainer::~SQLContainer() = default;
SQLContainer::SQLContainer(SQLContainer &&) noexcept = default;
SQLContainer &SQLContainer::operator=(SQLContainer &&) noexcept = default;

SQLTable *SQLContainer::add(std::unique_ptr<SQLTable> table)
{
    if (!table)
        return nullptr;
    tables_.push_back(std::move(table));
    index(names_, &SchemaModel::detail::ContainerNameIndexes::tables, tables_);
    return tables_.back().get();
}

SQLView *SQLContainer::add(std::unique_ptr<SQLView> view)
{
    if (!view)
        return nullptr;
    views_.push_back(std::move(view));
    index(names_, &SchemaModel::detail::ContainerNameIndexes::views, views_);
    return views_.back().get();
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
    other.names_.reset();
}

template <typename Result>
Result *SQLContainer::lookUp(std::string_view name, std::optional<std::string_view> schema) const
{
    // Only objects of the same folded name can match; search them with the
    // rules of a full search, then fall back to one for renamed objects.
    using SchemaModel::detail::ContainerNameIndexes;
    const std::uint32_t hash = SchemaModel::detail::FoldedKey::ofName(SchemaModel::trim(name)).hash();
    const ContainerNameIndexes *names = names_.get();
    if constexpr (std::is_same_v<Result, SQLTable>) {
        if (SQLTable *found = findWithSchema<SQLTable>(
                name, schema, candidates(names, &ContainerNameIndexes::tables, tables_, hash)))
            return found;
        return findWithSchema<SQLTable>(name, schema, tables_);
    } else if constexpr (std::is_same_v<Result, SQLView>) {
        if (SQLView *found = findWithSchema<SQLView>(
                name, schema, candidates(names, &ContainerNameIndexes::views, views_, hash)))
            return found;
        return findWithSchema<SQLView>(name, schema, views_);
    } else {
        if (SQLObject *found = findWithSchema<SQLObject>(
                name, schema, candidates(names, &ContainerNameIndexes::tables, tables_, hash),
                candidates(names, &ContainerNameIndexes::views, views_, hash)))
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
