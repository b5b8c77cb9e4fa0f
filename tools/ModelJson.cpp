#include "ModelJson.h"

#include "JsonWriter.h"

#include <SchemaModel/SchemaModel.h>

#include <optional>
#include <sstream>
#include <string>
#include <variant>

namespace sqlantlr {

namespace {

void optionalText(JsonWriter &json, const std::optional<std::string> &value)
{
    if (value) {
        json.value(*value);
    } else {
        json.null();
    }
}

void nameOrNull(JsonWriter &json, const SQLObject &object)
{
    if (object.hasName()) {
        json.value(object.getName());
    } else {
        json.null();
    }
}

void properties(JsonWriter &json, const SQLObject &object)
{
    json.key("properties");
    json.beginObject();
    for (const auto &[key, value] : object.getProperties()) {
        json.key(key);
        if (const bool *flag = std::get_if<bool>(&value)) {
            json.value(*flag);
        } else {
            json.value(std::get<std::string>(value));
        }
    }
    json.endObject();
}

void checks(JsonWriter &json, const std::vector<std::unique_ptr<SQLConstraint>> &constraints)
{
    json.key("checks");
    json.beginArray();
    for (const auto &check : constraints) {
        json.beginObject();
        json.key("name");
        json.value(check->getName());
        json.key("expression");
        json.value(check->getCheckConstraintExpression().value_or(""));
        json.endObject();
    }
    json.endArray();
}

void reference(JsonWriter &json, const SQLFieldReference &reference)
{
    json.beginObject();
    json.key("table");
    json.value(reference.table);
    json.key("field");
    optionalText(json, reference.field);
    json.key("referenceId");
    optionalText(json, reference.referenceId);
    json.key("onDelete");
    json.value(int64_t{reference.onDelete});
    json.key("onUpdate");
    json.value(int64_t{reference.onUpdate});
    json.key("deferrable");
    json.value(reference.deferrable);
    json.key("initiallyDeferred");
    json.value(reference.initiallyDeferred);
    json.key("resolved");
    json.value(reference.resolved);
    json.endObject();
}

void field(JsonWriter &json, const SQLField &field)
{
    json.beginObject();
    json.key("name");
    json.value(field.getName());
    json.key("type");
    json.value(field.getType());
    json.key("notNull");
    json.value(field.isNotNull());
    json.key("autoIncrement");
    json.value(field.isAutoIncrement());
    json.key("primaryKey");
    json.value(field.isPrimaryKey());
    json.key("defaultValue");
    optionalText(json, field.getDefaultValue());
    properties(json, field);
    json.key("references");
    if (const SQLFieldReference *target = field.getReferences()) {
        reference(json, *target);
    } else {
        json.null();
    }
    checks(json, field.checkConstraints());
    json.endObject();
}

void index(JsonWriter &json, const SQLIndex &index)
{
    json.beginObject();
    json.key("kind");
    json.value(index.isConstraint() ? "unique" : "index");
    json.key("name");
    nameOrNull(json, index);
    json.key("indexType");
    optionalText(json, index.getIndexType());
    json.key("fieldName");
    optionalText(json, index.getFieldName());
    json.key("entries");
    json.beginArray();
    for (const auto &entry : index.entries()) {
        json.beginObject();
        json.key("name");
        json.value(entry->getName());
        json.key("prefixSize");
        optionalText(json, entry->getPrefixSize());
        json.endObject();
    }
    json.endArray();
    properties(json, index);
    json.endObject();
}

void foreignKey(JsonWriter &json, const SQLForeignKey &key)
{
    json.beginObject();
    json.key("name");
    nameOrNull(json, key);
    json.key("targetTable");
    json.value(key.getTargetTableName().value_or(""));
    json.key("entries");
    json.beginArray();
    for (const auto &entry : key.entries()) {
        json.beginObject();
        json.key("field");
        json.value(entry->getSource() != nullptr ? std::string_view(entry->getSource()->getName()) : std::string_view());
        json.key("target");
        optionalText(json, entry->getTargetName());
        json.endObject();
    }
    json.endArray();
    json.key("onDelete");
    json.value(int64_t{key.getDeleteAction()});
    json.key("onUpdate");
    json.value(int64_t{key.getUpdateAction()});
    json.key("deferrable");
    json.value(key.isDeferrable());
    json.key("initiallyDeferred");
    json.value(key.isInitiallyDeferred());
    properties(json, key);
    json.key("resolved");
    json.value(key.isResolved());
    json.endObject();
}

void table(JsonWriter &json, const SQLTable &table)
{
    json.beginObject();
    json.key("name");
    json.value(table.getName());
    json.key("schemaName");
    optionalText(json, table.getSchemaName());
    json.key("baseName");
    optionalText(json, table.getBaseName());
    json.key("tableType");
    optionalText(json, table.getTableType());
    properties(json, table);
    json.key("fields");
    json.beginArray();
    for (const auto &item : table.fields()) {
        field(json, *item);
    }
    json.endArray();
    json.key("indexes");
    json.beginArray();
    for (const auto &item : table.indexes()) {
        index(json, *item);
    }
    json.endArray();
    json.key("foreignKeys");
    json.beginArray();
    for (const auto &item : table.foreignKeys()) {
        foreignKey(json, *item);
    }
    json.endArray();
    checks(json, table.checkConstraints());
    json.endObject();
}

void textList(JsonWriter &json, const char *name, const std::vector<std::string> &items)
{
    json.key(name);
    json.beginArray();
    for (const std::string &item : items) {
        json.value(item);
    }
    json.endArray();
}

void view(JsonWriter &json, const SQLView &view)
{
    json.beginObject();
    json.key("name");
    json.value(view.getName());
    json.key("schemaName");
    optionalText(json, view.getSchemaName());
    json.key("baseName");
    optionalText(json, view.getBaseName());
    json.key("queryString");
    optionalText(json, view.getQueryString());
    textList(json, "columns", view.columns());
    textList(json, "selectColumns", view.selectColumns());
    json.key("tables");
    json.beginArray();
    for (const SQLViewTableEntry &entry : view.tableEntries()) {
        json.beginObject();
        json.key("name");
        json.value(entry.name);
        json.key("alias");
        json.value(entry.alias);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

} // namespace

void writeModelJson(std::ostream &out, const SQLContainer &container, const std::vector<SQLParserException> &exceptions,
                    bool pretty)
{
    JsonWriter json(out, pretty);
    json.beginObject();
    json.key("tables");
    json.beginArray();
    for (const auto &item : container.tables()) {
        table(json, *item);
    }
    json.endArray();
    json.key("views");
    json.beginArray();
    for (const auto &item : container.views()) {
        view(json, *item);
    }
    json.endArray();
    json.key("exceptions");
    json.beginArray();
    for (const SQLParserException &exception : exceptions) {
        json.value(exception.reason);
    }
    json.endArray();
    json.endObject();
}

std::string modelJsonText(const SQLContainer &container, const std::vector<SQLParserException> &exceptions, bool pretty)
{
    std::ostringstream out;
    writeModelJson(out, container, exceptions, pretty);
    return out.str();
}

} // namespace sqlantlr
