#include <SchemaModel/SQLForeignKey.h>

#include <SchemaModel/SQLField.h>

#include "NameLookup.h"

using SchemaModel::detail::trimmedOrNone;

SQLForeignKeyEntry::SQLForeignKeyEntry(SQLField *source, SQLField *target)
    : source_(source), target_(target)
{
    if (target_ && target_->hasName())
        targetName_ = target_->getName();
}

void SQLForeignKeyEntry::setTargetByName(std::string_view targetName)
{
    targetName_ = trimmedOrNone(targetName);
    // A field given earlier may not carry this name; resolution decides.
    target_ = nullptr;
}

std::optional<std::string> SQLForeignKeyEntry::getTargetName() const
{
    if (targetName_)
        return targetName_;
    if (target_ && target_->hasName())
        return target_->getName();
    return std::nullopt;
}

SQLForeignKey::~SQLForeignKey() = default;

void SQLForeignKey::setDefaultCardinalityForImport()
{
    sourceCardinality_ = SQLCardinality::ZeroOrMore;
    targetCardinality_ = SQLCardinality::ExactlyOne;
}

void SQLForeignKey::setTargetTableByName(std::string_view tableName)
{
    targetTableName_ = trimmedOrNone(tableName);
}

SQLForeignKeyEntry *SQLForeignKey::addForeignKeyEntry(std::unique_ptr<SQLForeignKeyEntry> entry)
{
    if (!entry)
        return nullptr;
    entries_.push_back(std::move(entry));
    return entries_.back().get();
}
