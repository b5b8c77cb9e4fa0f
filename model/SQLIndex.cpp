#include <SchemaModel/SQLIndex.h>

#include "NameLookup.h"

using SchemaModel::detail::textOrNone;
using SchemaModel::detail::trimmedOrNone;

SQLIndexEntry::~SQLIndexEntry() = default;

void SQLIndexEntry::setFieldName(std::string_view fieldName)
{
    fieldName_ = SchemaModel::trim(fieldName);
}

void SQLIndexEntry::setPrefixSize(std::string_view prefixSize)
{
    prefixSize_ = textOrNone(prefixSize);
}

SQLIndex::~SQLIndex() = default;

void SQLIndex::setIndexType(std::string_view indexType)
{
    indexType_ = textOrNone(indexType);
}

SQLIndexEntry *SQLIndex::addIndexEntry(std::unique_ptr<SQLIndexEntry> entry)
{
    if (!entry)
        return nullptr;
    entries_.push_back(std::move(entry));
    return entries_.back().get();
}

void SQLIndex::setFieldName(std::string_view fieldName)
{
    fieldName_ = trimmedOrNone(fieldName);
}

SQLConstraint::~SQLConstraint() = default;

std::unique_ptr<SQLConstraint> SQLConstraint::constraint()
{
    return std::make_unique<SQLConstraint>();
}

void SQLConstraint::setCheckConstraintExpression(std::string_view expression)
{
    checkExpression_ = std::string(expression);
}
