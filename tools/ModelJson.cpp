#include "ModelJson.h"

#include "JsonWriter.h"

#include <SchemaModel/SchemaModel.h>

#include <optional>
#include <sstream>
#include <string>
#include <variant>

namespace sqlantlr {

namespace {

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
    if (object.getProperties().empty()) {
        json.emptyObjectMember("properties"_key);  // most objects have none
        return;
    }
    json.key("properties"_key);
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
    if (constraints.empty()) {
        json.emptyArrayMember("checks"_key);
        return;
    }
    json.key("checks"_key);
    json.beginArray();
    for (const auto &check : constraints) {
        json.beginObject();
        json.key("name"_key);
        json.value(check->getName());
        json.key("expression"_key);
        json.value(check->getCheckConstraintExpression().value_or(""));
        json.endObject();
    }
    json.endArray();
}

void reference(JsonWriter &json, const SQLFieldReference &reference)
{
    json.beginObject();
    json.key("table"_key);
    json.value(reference.table);
    json.member("field"_key, reference.field);
    json.member("referenceId"_key, reference.referenceId);
    json.key("onDelete"_key);
    json.value(int64_t{reference.onDelete});
    json.key("onUpdate"_key);
    json.value(int64_t{reference.onUpdate});
    json.key("deferrable"_key);
    json.value(reference.deferrable);
    json.key("initiallyDeferred"_key);
    json.value(reference.initiallyDeferred);
    json.key("resolved"_key);
    json.value(reference.resolved);
    json.endObject();
}

void field(JsonWriter &json, const SQLField &field)
{
    json.beginObject();
    json.member("name"_key, field.getName());
    json.member("type"_key, field.getType());
    json.member("notNull"_key, field.isNotNull());
    json.member("autoIncrement"_key, field.isAutoIncrement());
    json.member("primaryKey"_key, field.isPrimaryKey());
    json.member("defaultValue"_key, field.getDefaultValue());
    properties(json, field);
    if (const SQLFieldReference *target = field.getReferences()) {
        json.key("references"_key);
        reference(json, *target);
    } else {
        json.nullMember("references"_key);
    }
    checks(json, field.checkConstraints());
    json.endObject();
}

void index(JsonWriter &json, const SQLIndex &index)
{
    json.beginObject();
    json.key("kind"_key);
    json.value(index.isConstraint() ? "unique" : "index");
    json.key("name"_key);
    nameOrNull(json, index);
    json.member("indexType"_key, index.getIndexType());
    json.member("fieldName"_key, index.getFieldName());
    json.key("entries"_key);
    json.beginArray();
    for (const auto &entry : index.entries()) {
        json.beginObject();
        json.key("name"_key);
        json.value(entry->getName());
        json.member("prefixSize"_key, entry->getPrefixSize());
        json.endObject();
    }
    json.endArray();
    properties(json, index);
    json.endObject();
}

void foreignKey(JsonWriter &json, const SQLForeignKey &key)
{
    json.beginObject();
    json.key("name"_key);
    nameOrNull(json, key);
    json.key("targetTable"_key);
    json.value(key.getTargetTableName().value_or(""));
    json.key("entries"_key);
    json.beginArray();
    for (const auto &entry : key.entries()) {
        json.beginObject();
        json.key("field"_key);
        json.value(entry->getSource() != nullptr ? std::string_view(entry->getSource()->getName()) : std::string_view());
        json.member("target"_key, entry->getTargetName());
        json.endObject();
    }
    json.endArray();
    json.key("onDelete"_key);
    json.value(int64_t{key.getDeleteAction()});
    json.key("onUpdate"_key);
    json.value(int64_t{key.getUpdateAction()});
    json.key("deferrable"_key);
    json.value(key.isDeferrable());
    json.key("initiallyDeferred"_key);
    json.value(key.isInitiallyDeferred());
    properties(json, key);
    json.key("resolved"_key);
    json.value(key.isResolved());
    json.endObject();
}

void table(JsonWriter &json, const SQLTable &table)
{
    json.beginObject();
    json.member("name"_key, table.getName());
    json.member("schemaName"_key, table.getSchemaName());
    json.member("baseName"_key, table.getBaseName());
    json.member("tableType"_key, table.getTableType());
    properties(json, table);
    json.key("fields"_key);
    json.beginArray();
    for (const auto &item : table.fields()) {
        field(json, *item);
    }
    json.endArray();
    json.key("indexes"_key);
    json.beginArray();
    for (const auto &item : table.indexes()) {
        index(json, *item);
    }
    json.endArray();
    json.key("foreignKeys"_key);
    json.beginArray();
    for (const auto &item : table.foreignKeys()) {
        foreignKey(json, *item);
    }
    json.endArray();
    checks(json, table.checkConstraints());
    json.endObject();
}

void textList(JsonWriter &json, JsonKey name, const std::vector<std::string> &items)
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
    json.key("name"_key);
    json.value(view.getName());
    json.member("schemaName"_key, view.getSchemaName());
    json.member("baseName"_key, view.getBaseName());
    json.member("queryString"_key, view.getQueryString());
    textList(json, "columns"_key, view.columns());
    textList(json, "selectColumns"_key, view.selectColumns());
    json.key("tables"_key);
    json.beginArray();
    for (const SQLViewTableEntry &entry : view.tableEntries()) {
        json.beginObject();
        json.key("name"_key);
        json.value(entry.name);
        json.key("alias"_key);
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
    json.key("tables"_key);
    json.beginArray();
    for (const auto &item : container.tables()) {
        table(json, *item);
    }
    json.endArray();
    json.key("views"_key);
    json.beginArray();
    for (const auto &item : container.views()) {
        view(json, *item);
    }
    json.endArray();
    json.key("exceptions"_key);
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
