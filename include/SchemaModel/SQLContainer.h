#pragma once

#include <SchemaModel/SQLObject.h>
#include <SchemaModel/SQLTable.h>
#include <SchemaModel/SQLView.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SchemaModel::detail {
struct ContainerNameIndexes;
}

/// The result of an import: owns the tables and views in the order added.
class SQLContainer {
public:
    SQLContainer();
    ~SQLContainer();
    SQLContainer(const SQLContainer &) = delete;
    SQLContainer &operator=(const SQLContainer &) = delete;
    SQLContainer(SQLContainer &&) noexcept;
    SQLContainer &operator=(SQLContainer &&) noexcept;

    /// Return the added object, or nullptr when given nullptr.
    SQLTable *add(std::unique_ptr<SQLTable> table);
    SQLView *add(std::unique_ptr<SQLView> view);

    /// Moves every table and view of other, in order, to the end of this
    /// container and leaves other empty. References keep their state until
    /// the next postLoadProcess, which can then resolve keys between them.
    void append(SQLContainer &&other);

    const std::vector<std::unique_ptr<SQLTable>> &tables() const { return tables_; }
    const std::vector<std::unique_ptr<SQLView>> &views() const { return views_; }

    /// Exact name first (tables, then views), then case-insensitively
    /// (tables, then views); nullptr when absent.
    SQLObject *getObjectByName(std::string_view name) const;
    /// With a schema: the object whose schema and name both match (exact,
    /// then case-insensitively), else an object of that name without a
    /// schema. Without a schema: getObjectByName.
    SQLObject *getObjectWithSchema(std::string_view name, std::optional<std::string_view> schema) const;
    SQLTable *getTableByName(std::string_view name) const;
    SQLTable *getTableWithSchema(std::string_view name, std::optional<std::string_view> schema) const;
    SQLView *getViewByName(std::string_view name) const;

    /// Resolves field references and foreign keys by name. Anything that
    /// cannot be resolved keeps its names and is marked unresolved. Safe to
    /// call repeatedly.
    void postLoadProcess();

private:
    SQLTable *findReferencedTable(std::string_view reference) const;
    void resolveFieldReference(SQLFieldReference &reference) const;
    void resolveForeignKey(SQLForeignKey &foreignKey) const;

    std::vector<std::unique_ptr<SQLTable>> tables_;
    std::vector<std::unique_ptr<SQLView>> views_;

    // Tables and views by the folded name they had when added, in the order
    // added, so that look-ups in large schemas need not scan every object.
    // Made at the first object; a look-up that finds nothing there scans the
    // lists, which also finds objects renamed after they were added.
    std::unique_ptr<SchemaModel::detail::ContainerNameIndexes> names_;

    template <typename Result>
    Result *lookUp(std::string_view name, std::optional<std::string_view> schema) const;
};
