#pragma once

#include <SchemaModel/SQLIndex.h>
#include <SchemaModel/SQLObject.h>
#include <SchemaModel/SQLReferentialActions.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SQLTable;
class SQLField;

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
    SQLField() = default;
    ~SQLField() override;

    static std::unique_ptr<SQLField> fieldWithName(std::string_view name, std::string_view type);

    /// Type text as written.
    const std::string &getType() const { return type_; }
    void setType(std::string_view type);

    void setNotNull(bool notNull) { notNull_ = notNull; }
    bool isNotNull() const { return notNull_; }
    void setAutoIncrement(bool autoIncrement) { autoIncrement_ = autoIncrement; }
    bool isAutoIncrement() const { return autoIncrement_; }
    void setPrimaryKey(bool primaryKey) { primaryKey_ = primaryKey; }
    bool isPrimaryKey() const { return primaryKey_; }

    /// Default value text, stored exactly as given.
    void setDefaultValueFromParsedString(std::string_view value);
    std::optional<std::string> getDefaultValue() const { return defaultValue_; }

    /// Returns the added constraint, or nullptr when given nullptr.
    SQLConstraint *addCheckConstraint(std::unique_ptr<SQLConstraint> constraint);
    const std::vector<std::unique_ptr<SQLConstraint>> &checkConstraints() const { return checks_; }

    /// Replaces any previous reference by a fresh, unresolved one to the
    /// (trimmed) table and optional field; an empty field name means "the
    /// target's primary key".
    void setReferences(std::string_view table, std::optional<std::string_view> field);
    /// Names the reference's constraint; does nothing without a reference.
    void setReferenceId(std::string_view referenceId);
    const SQLFieldReference *getReferences() const { return reference_.get(); }
    SQLFieldReference *getReferences() { return reference_.get(); }

    void setDefaultCardinalityForImport();
    void setSourceCardinality(SQLCardinality cardinality) { sourceCardinality_ = cardinality; }
    void setTargetCardinality(SQLCardinality cardinality) { targetCardinality_ = cardinality; }
    SQLCardinality getSourceCardinality() const { return sourceCardinality_; }
    SQLCardinality getTargetCardinality() const { return targetCardinality_; }

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
    std::string type_;
    bool notNull_ = false;
    bool autoIncrement_ = false;
    bool primaryKey_ = false;
    std::optional<std::string> defaultValue_;
    std::vector<std::unique_ptr<SQLConstraint>> checks_;
    std::unique_ptr<SQLFieldReference> reference_;
    SQLCardinality sourceCardinality_ = SQLCardinality::Unspecified;
    SQLCardinality targetCardinality_ = SQLCardinality::Unspecified;
};
