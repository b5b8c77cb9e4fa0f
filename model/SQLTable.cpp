#include <SchemaModel/SQLTable.h>

#include "NameLookup.h"
#include "SlotPool.h"

#include <algorithm>

using SchemaModel::detail::textOrNone;
using SchemaModel::detail::trimmedOrNone;

namespace SchemaModel::detail {

struct TableNameIndexes {
    NameIndex<SQLField> fields;
    NameIndex<SQLIndex> indexes;
};

} // namespace SchemaModel::detail

SQLTable::SQLTable() : names_(std::make_unique<SchemaModel::detail::TableNameIndexes>()) {}

SQLTable::~SQLTable() = default;

void *SQLTable::operator new(std::size_t size)
{
    static_assert(alignof(SQLTable) <= SchemaModel::detail::slotAlignment, "a slot must be aligned for the class");
    return SchemaModel::detail::allocateSlotFor(size, sizeof(SQLTable));
}

void SQLTable::operator delete(void *table, std::size_t size) noexcept
{
    SchemaModel::detail::releaseSlotFor(table, size, sizeof(SQLTable));
}

std::unique_ptr<SQLTable> SQLTable::tableForImportWithName(std::string_view name)
{
    auto table = std::make_unique<SQLTable>();
    table->setName(name);
    return table;
}

void SQLTable::setSchemaName(std::string_view schemaName)
{
    schemaName_ = trimmedOrNone(schemaName);
}

void SQLTable::setBaseName(std::string_view baseName)
{
    baseName_ = trimmedOrNone(baseName);
    // The parser creates a table from the full "s.t" text and then splits it;
    // the table is known by its base name from then on.
    setName(baseName);
}

void SQLTable::setTableType(std::string_view tableType)
{
    tableType_ = textOrNone(tableType);
}

SQLField *SQLTable::getFieldByName(std::string_view name) const
{
    return names_->fields.find(fields_, SchemaModel::trim(name));
}

std::string SQLTable::getFieldNameListString() const
{
    std::string list;
    for (const auto &field : fields_) {
        if (!list.empty())
            list += ", ";
        list += field->getName();
    }
    return list;
}

SQLField *SQLTable::addWithRenaming(std::unique_ptr<SQLField> field, bool *didRename)
{
    if (didRename)
        *didRename = false;
    if (!field)
        return nullptr;
    const bool renamed = names_->fields.makeUnique(fields_, *field);
    if (didRename)
        *didRename = renamed;
    fields_.push_back(std::move(field));
    names_->fields.added(fields_, *fields_.back());
    return fields_.back().get();
}

void SQLTable::moveFieldsToFront(const std::vector<std::string> &names)
{
    // Look every name up before moving anything: the name index refers to
    // fields by their place in the list.
    std::vector<const SQLField *> front;
    for (const std::string &name : names) {
        const SQLField *field = getFieldByName(name);
        if (field != nullptr && std::find(front.begin(), front.end(), field) == front.end()) {
            front.push_back(field);
        }
    }
    if (front.empty()) {
        return;
    }
    std::vector<std::unique_ptr<SQLField>> ordered;
    ordered.reserve(fields_.size());
    for (const SQLField *field : front) {
        const auto at = std::find_if(fields_.begin(), fields_.end(),
                                     [field](const std::unique_ptr<SQLField> &f) { return f.get() == field; });
        ordered.push_back(std::move(*at));
    }
    for (std::unique_ptr<SQLField> &field : fields_) {
        if (field) {
            ordered.push_back(std::move(field));
        }
    }
    fields_ = std::move(ordered);
    names_->fields.reordered(fields_);
}

SQLIndex *SQLTable::addWithRenaming(std::unique_ptr<SQLIndex> index)
{
    if (!index)
        return nullptr;
    names_->indexes.makeUnique(indexes_, *index);
    return add(std::move(index));
}

SQLIndex *SQLTable::add(std::unique_ptr<SQLIndex> index)
{
    if (!index)
        return nullptr;
    indexes_.push_back(std::move(index));
    names_->indexes.added(indexes_, *indexes_.back());
    return indexes_.back().get();
}

SQLForeignKey *SQLTable::add(std::unique_ptr<SQLForeignKey> foreignKey)
{
    if (!foreignKey)
        return nullptr;
    foreignKeys_.push_back(std::move(foreignKey));
    return foreignKeys_.back().get();
}

SQLConstraint *SQLTable::addCheckConstraint(std::unique_ptr<SQLConstraint> constraint)
{
    if (!constraint)
        return nullptr;
    checks_.push_back(std::move(constraint));
    return checks_.back().get();
}

SQLIndex *SQLTable::addParsedIndexWithName(std::optional<std::string_view> name,
                                           const std::vector<std::string> &fieldNames,
                                           std::string_view type)
{
    auto index = std::make_unique<SQLIndex>();
    if (name)
        index->setName(*name);
    index->setIndexType(type);
    for (const std::string &fieldName : fieldNames) {
        auto entry = std::make_unique<SQLIndexEntry>();
        entry->setName(fieldName);
        entry->setFieldName(fieldName);
        index->addIndexEntry(std::move(entry));
    }
    if (!index->entries().empty())
        index->setFieldName(index->entries().back()->getFieldName());
    return addWithRenaming(std::move(index));
}

void SQLTable::setPrimaryKeyToFieldNames(const std::vector<std::string> &names)
{
    std::vector<const SQLField *> keyFields;
    for (const std::string &name : names)
        if (const SQLField *field = getFieldByName(name))
            keyFields.push_back(field);
    for (const auto &field : fields_) {
        const bool isKey = std::find(keyFields.begin(), keyFields.end(), field.get()) != keyFields.end();
        field->setPrimaryKey(isKey);
    }
}

std::vector<SQLField *> SQLTable::getPrimaryKeyFields() const
{
    std::vector<SQLField *> keyFields;
    for (const auto &field : fields_)
        if (field->isPrimaryKey())
            keyFields.push_back(field.get());
    return keyFields;
}
