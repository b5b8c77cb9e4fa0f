#include <SchemaModel/SQLField.h>

#include "FieldTexts.h"
#include "NameLookup.h"
#include "SlotPool.h"

using SchemaModel::detail::FieldTexts;

struct SQLField::Rare {
    std::vector<std::unique_ptr<SQLConstraint>> checks;
    std::optional<SQLFieldReference> reference;
    SQLCardinality sourceCardinality = SQLCardinality::Unspecified;
    SQLCardinality targetCardinality = SQLCardinality::Unspecified;
};

static_assert(alignof(FieldTexts) > 4, "a field keeps its three flags in the low bits of its texts' address");

SQLField::SQLField() = default;

SQLField::~SQLField()
{
    SchemaModel::detail::releaseFieldTexts(texts());
}

const FieldTexts *SQLField::texts() const
{
    return reinterpret_cast<const FieldTexts *>(textsAndFlags_ & ~flags);
}

void *SQLField::operator new(std::size_t size)
{
    static_assert(alignof(SQLField) <= SchemaModel::detail::slotAlignment, "a slot must be aligned for the class");
    return SchemaModel::detail::allocateSlotFor(size, sizeof(SQLField));
}

void SQLField::operator delete(void *field, std::size_t size) noexcept
{
    SchemaModel::detail::releaseSlotFor(field, size, sizeof(SQLField));
}

std::unique_ptr<SQLField> SQLField::fieldWithName(std::string_view name, std::string_view type)
{
    auto field = std::make_unique<SQLField>();
    field->setName(name);
    field->setType(type);
    return field;
}

std::unique_ptr<SQLField> SQLField::fieldWithName(std::string_view name, std::string_view type,
                                                  std::optional<std::string_view> defaultValue)
{
    auto field = std::make_unique<SQLField>();
    field->setName(name);
    field->setTexts(type, defaultValue);
    return field;
}

SQLField::Rare &SQLField::rare()
{
    if (!rare_)
        rare_ = std::make_unique<Rare>();
    return *rare_;
}

void SQLField::setTexts(std::string_view type, std::optional<std::string_view> defaultValue)
{
    const FieldTexts *previous = texts();
    const FieldTexts *texts = SchemaModel::detail::acquireFieldTexts(type, defaultValue);
    textsAndFlags_ = reinterpret_cast<std::uintptr_t>(texts) | (textsAndFlags_ & flags);
    SchemaModel::detail::releaseFieldTexts(previous);
}

const std::string &SQLField::getType() const
{
    static const std::string none;
    const FieldTexts *shared = texts();
    return shared != nullptr ? shared->type : none;
}

void SQLField::setType(std::string_view type)
{
    std::optional<std::string_view> defaultValue;
    const FieldTexts *shared = texts();
    if (shared != nullptr && shared->defaultValue)
        defaultValue = *shared->defaultValue;
    setTexts(type, defaultValue);
}

void SQLField::setDefaultValueFromParsedString(std::string_view value)
{
    setTexts(getType(), value);
}

const std::optional<std::string> &SQLField::getDefaultValue() const
{
    static const std::optional<std::string> none;
    const FieldTexts *shared = texts();
    return shared != nullptr ? shared->defaultValue : none;
}

SQLConstraint *SQLField::addCheckConstraint(std::unique_ptr<SQLConstraint> constraint)
{
    if (!constraint)
        return nullptr;
    std::vector<std::unique_ptr<SQLConstraint>> &checks = rare().checks;
    checks.push_back(std::move(constraint));
    return checks.back().get();
}

const std::vector<std::unique_ptr<SQLConstraint>> &SQLField::checkConstraints() const
{
    static const std::vector<std::unique_ptr<SQLConstraint>> none;
    return rare_ ? rare_->checks : none;
}

void SQLField::setReferences(std::string_view table, std::optional<std::string_view> field)
{
    SQLFieldReference &reference = rare().reference.emplace();
    reference.table = SchemaModel::trim(table);
    if (field)
        reference.field = SchemaModel::detail::trimmedOrNone(*field);
}

const SQLFieldReference *SQLField::getReferences() const
{
    return rare_ && rare_->reference ? &*rare_->reference : nullptr;
}

SQLFieldReference *SQLField::getReferences()
{
    return rare_ && rare_->reference ? &*rare_->reference : nullptr;
}

void SQLField::setReferenceId(std::string_view referenceId)
{
    if (SQLFieldReference *reference = getReferences())
        reference->referenceId = SchemaModel::detail::trimmedOrNone(referenceId);
}

void SQLField::setSourceCardinality(SQLCardinality cardinality)
{
    if (rare_ || cardinality != SQLCardinality::Unspecified)
        rare().sourceCardinality = cardinality;
}

void SQLField::setTargetCardinality(SQLCardinality cardinality)
{
    if (rare_ || cardinality != SQLCardinality::Unspecified)
        rare().targetCardinality = cardinality;
}

SQLCardinality SQLField::getSourceCardinality() const
{
    return rare_ ? rare_->sourceCardinality : SQLCardinality::Unspecified;
}

SQLCardinality SQLField::getTargetCardinality() const
{
    return rare_ ? rare_->targetCardinality : SQLCardinality::Unspecified;
}

void SQLField::setDefaultCardinalityForImport()
{
    setSourceCardinality(SQLCardinality::ZeroOrMore);
    setTargetCardinality(SQLCardinality::ExactlyOne);
}

void SQLField::setDeleteAction(int action)
{
    if (SQLFieldReference *reference = getReferences())
        reference->onDelete = action;
}

void SQLField::setUpdateAction(int action)
{
    if (SQLFieldReference *reference = getReferences())
        reference->onUpdate = action;
}

void SQLField::setDeferrable(bool deferrable)
{
    if (SQLFieldReference *reference = getReferences())
        reference->deferrable = deferrable;
}

void SQLField::setInitiallyDeferred(bool initiallyDeferred)
{
    if (SQLFieldReference *reference = getReferences())
        reference->initiallyDeferred = initiallyDeferred;
}

int SQLField::getDeleteAction() const
{
    const SQLFieldReference *reference = getReferences();
    return reference != nullptr ? reference->onDelete : SQLNoActionWritten;
}

int SQLField::getUpdateAction() const
{
    const SQLFieldReference *reference = getReferences();
    return reference != nullptr ? reference->onUpdate : SQLNoActionWritten;
}

bool SQLField::isDeferrable() const
{
    const SQLFieldReference *reference = getReferences();
    return reference != nullptr && reference->deferrable;
}

bool SQLField::isInitiallyDeferred() const
{
    const SQLFieldReference *reference = getReferences();
    return reference != nullptr && reference->initiallyDeferred;
}
