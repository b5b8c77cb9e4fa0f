#pragma once

#include <SchemaModel/SQLIndex.h>
#include <SchemaModel/SQLObject.h>
#include <SchemaModel/SQLReferentialActions.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SQLTable;
class SQLField;

namespace SchemaModel::detail {
struct FieldTexts;
}

/// A single-column reference (`col ... REFERENCES t(c)`). The names are kept
/// as parsed; SQLContainer::postLoadProcess fills in the targets.
struct SQLFieldReference {
    std::string table;
    std::optional<std::string> field;
    std::optional<std::string> referenceId;
    int onDelete = 0, onUpdate = 0;
    bool deferrable = false, initiallyDeferred = false;
    bool resolved = false;
    SQLTable *targetTable = nullptr;
    SQLField *targetField = nullptr;
};

/// A column of a table.
class SQLField : public SQLObject, public SQLReferentialActions {
public:
    SQLField();
    ~SQLField() override;

    /// Columns are made by the hundred thousand: a field's storage is cut
    /// from large blocks that the model library keeps, not taken from the
    /// general allocator one by one (a subclass of another size is).
    static void *operator new(std::size_t size);
    static void operator delete(void *field, std::size_t size) noexcept;

    static std::unique_ptr<SQLField> fieldWithName(std::string_view name, std::string_view type);
    /// A field with its type and default set at once (as setType, then
    /// setDefaultValueFromParsedString), for importers that know both.
    static std::unique_ptr<SQLField> fieldWithName(std::string_view name, std::string_view type,
                                                   std::optional<std::string_view> defaultValue);

    /// Type text as written. The reference stays valid until the field's
    /// type or default value is set again, or the field is destroyed.
    const std::string &getType() const;
    void setType(std::string_view type);

    void setNotNull(bool notNull) { notNull_ = notNull; }
    bool isNotNull() const { return notNull_; }
    void setAutoIncrement(bool autoIncrement) { autoIncrement_ = autoIncrement; }
    bool isAutoIncrement() const { return autoIncrement_; }
    void setPrimaryKey(bool primaryKey) { primaryKey_ = primaryKey; }
    bool isPrimaryKey() const { return primaryKey_; }

    /// Default value text, stored exactly as given.
    void setDefaultValueFromParsedString(std::string_view value);
    const std::optional<std::string> &getDefaultValue() const;

    /// Returns the added constraint, or nullptr when given nullptr.
    SQLConstraint *addCheckConstraint(std::unique_ptr<SQLConstraint> constraint);
    const std::vector<std::unique_ptr<SQLConstraint>> &checkConstraints() const;

    /// Replaces any previous reference by a fresh, unresolved one to the
    /// (trimmed) table and optional field; an empty field name means "the
    /// target's primary key".
    void setReferences(std::string_view table, std::optional<std::string_view> field);
    /// Names the reference's constraint; does nothing without a reference.
    void setReferenceId(std::string_view referenceId);
    const SQLFieldReference *getReferences() const;
    SQLFieldReference *getReferences();

    void setDefaultCardinalityForImport();
    void setSourceCardinality(SQLCardinality cardinality)
    {
        sourceCardinality_ = static_cast<std::uint8_t>(cardinality);
    }
    void setTargetCardinality(SQLCardinality cardinality)
    {
        targetCardinality_ = static_cast<std::uint8_t>(cardinality);
    }
    SQLCardinality getSourceCardinality() const { return static_cast<SQLCardinality>(sourceCardinality_); }
    SQLCardinality getTargetCardinality() const { return static_cast<SQLCardinality>(targetCardinality_); }

    // Act on the reference; without one the setters do nothing and the
    // getters report 0 / false.
    void setDeleteAction(int action) override;
    void setUpdateAction(int action) override;
    void setDeferrable(bool deferrable) override;
    void setInitiallyDeferred(bool initiallyDeferred) override;
    int getDeleteAction() const override;
    int getUpdateAction() const override;
    bool isDeferrable() const override;
    bool isInitiallyDeferred() const override;

private:
    // A schema has hundreds of thousands of columns, so a column keeps what
    // most columns have in a few words: its type and default are a pair
    // shared with the columns that have the same pair, and CHECK constraints
    // and a reference, which few columns have, live in an object of their own.
    struct Rare;
    Rare &rare();
    void setTexts(std::string_view type, std::optional<std::string_view> defaultValue);

    const SchemaModel::detail::FieldTexts *texts_ = nullptr;  // none: no type, no default
    std::unique_ptr<Rare> rare_;
    bool notNull_ = false;
    bool autoIncrement_ = false;
    bool primaryKey_ = false;
    std::uint8_t sourceCardinality_ = static_cast<std::uint8_t>(SQLCardinality::Unspecified);
    std::uint8_t targetCardinality_ = static_cast<std::uint8_t>(SQLCardinality::Unspecified);
};
