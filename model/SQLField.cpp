#include <SchemaModel/SQLField.h>

#include "NameLookup.h"

SQLField::~SQLField() = default;

std::unique_ptr<SQLField> SQLField::fieldWithName(std::string_view name, std::string_view type)
{
    auto field = std::make_unique<SQLField>();
    field->setName(name);
    field->setType(type);
    return field;
}

void SQLField::setType(std::string_view type)
{
    type_ = std::string(type);
}

void SQLField::setDefaultValueFromParsedString(std::string_view value)
{
    defaultValue_ = std::string(value);
}

SQLConstraint *SQLField::addCheckConstraint(std::unique_ptr<SQLConstraint> constraint)
{
    if (!constraint)
        return nullptr;
    checks_.push_back(std::move(constraint));
    return checks_.back().get();
}

void SQLField::setReferences(std::string_view table, std::optional<std::string_view> field)
{
    reference_ = std::make_unique<SQLFieldReference>();
    reference_->table = SchemaModel::trim(table);
    if (field)
        reference_->field = SchemaModel::detail::trimmedOrNone(*field);
}

void SQLField::setReferenceId(std::string_view referenceId)
{
    if (reference_)
        reference_->referenceId = SchemaModel::detail::trimmedOrNone(referenceId);
}

void SQLField::setDefaultCardinalityForImport()
{
    sourceCardinality_ = SQLCardinality::ZeroOrMore;
    targetCardinality_ = SQLCardinality::ExactlyOne;
}

void SQLField::setDeleteAction(int action)
{
    if (reference_)
        reference_->onDelete = action;
}

void SQLField::setUpdateAction(int action)
{
    if (reference_)
        reference_->onUpdate = action;
}

void SQLField::setDeferrable(bool deferrable)
{
    if (reference_)
        reference_->deferrable = deferrable;
}

void SQLField::setInitiallyDeferred(bool initiallyDeferred)
{
    if (reference_)
        reference_->initiallyDeferred = initiallyDeferred;
}

int SQLField::getDeleteAction() const
{
    return reference_ ? reference_->onDelete : SQLNoActionWritten;
}

int SQLField::getUpdateAction() const
{
    return reference_ ? reference_->onUpdate : SQLNoActionWritten;
}

bool SQLField::isDeferrable() const
{
    return reference_ && reference_->deferrable;
}

bool SQLField::isInitiallyDeferred() const
{
    return reference_ && reference_->initiallyDeferred;
}
