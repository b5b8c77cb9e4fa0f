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

    void setNotNull(bool notNull) { setFlag(notNullFlag, notNull); }
    bool isNotNull() const { return (textsAndFlags_ & notNullFlag) != 0; }
    void setAutoIncrement(bool autoIncrement) { setFlag(autoIncrementFlag, autoIncrement); }
    bool isAutoIncrement() const { return (textsAndFlags_ & autoIncrementFlag) != 0; }
    void setPrimaryKey(bool primaryKey) { setFlag(primaryKeyFlag, primaryKey); }
    bool isPrimaryKey() const { return (textsAndFlags_ & primaryKeyFlag) != 0; }

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
    void setSourceCardinality(SQLCardinality cardinality);
    void setTargetCardinality(SQLCardinality cardinality);
    SQLCardinality getSourceCardinality() const;
    SQLCardinality getTargetCardinality() const;

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
    // shared with the columns that have the same pair, its three flags ride
    // in the low bits of that pair's (8-byte aligned) address, and CHECK
    // constraints, a reference and the cardinalities that come with one,
    // which few columns have, live in an object of their own.
    struct Rare;
    Rare &rare();
    void setTexts(std::string_view type, std::optional<std::string_view> defaultValue);
    const SchemaModel::detail::FieldTexts *texts() const;
    void setFlag(std::uintptr_t flag, bool on) { textsAndFlags_ = on ? textsAndFlags_ | flag : textsAndFlags_ & ~flag; }

    static constexpr std::uintptr_t notNullFlag = 1;
    static constexpr std::uintptr_t autoIncrementFlag = 2;
    static constexpr std::uintptr_t primaryKeyFlag = 4;
    static constexpr std::uintptr_t flags = notNullFlag | autoIncrementFlag | primaryKeyFlag;

    std::uintptr_t textsAndFlags_ = 0;  // the shared texts' address (none: no type, no default) | flags
    std::unique_ptr<Rare> rare_;
};
