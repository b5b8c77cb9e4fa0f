#include "ScriptGenerator.h"

#include <random>

namespace bench {

namespace {

const char *const mysqlTypes[] = {"int(11)", "bigint(20) unsigned", "varchar(255)", "datetime", "decimal(10,2)",
                                  "tinyint(1)", "text", "timestamp"};
const char *const postgresTypes[] = {"integer", "bigint", "character varying(120)", "timestamp without time zone",
                                     "numeric(12,4)", "boolean", "text", "double precision"};
const char *const oracleTypes[] = {"NUMBER(10)", "NUMBER(*,2)", "VARCHAR2(200 BYTE)", "DATE", "CLOB",
                                   "NVARCHAR2(50)", "TIMESTAMP(6)", "RAW(16)"};
const char *const sqliteTypes[] = {"INTEGER", "TEXT", "REAL", "BLOB", "NUMERIC", "VARCHAR(40)", "DATETIME", "INT"};

std::string column(std::mt19937 &random, int table, int index, const char *const *types)
{
    std::string name = "col_" + std::to_string(table) + "_" + std::to_string(index);
    return name + " " + types[random() % 8];
}

void mysqlTable(std::mt19937 &random, int n, std::string &out)
{
    out += "DROP TABLE IF EXISTS `t" + std::to_string(n) + "`;\n";
    out += "CREATE TABLE `t" + std::to_string(n) + "` (\n  `id` int(11) NOT NULL AUTO_INCREMENT,\n";
    const int columns = 4 + static_cast<int>(random() % 12);
    for (int i = 0; i < columns; ++i) {
        out += "  `c" + std::to_string(i) + "` " + mysqlTypes[random() % 8] +
               (i % 3 == 0 ? " NOT NULL" : " DEFAULT NULL") + (i % 4 == 1 ? " COMMENT 'generated column'" : "") +
               ",\n";
    }
    out += "  `updated` timestamp NOT NULL DEFAULT CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP,\n";
    out += "  PRIMARY KEY (`id`)\n) ENGINE=InnoDB AUTO_INCREMENT=42 DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_unicode_ci;\n\n";
}

void postgresTable(std::mt19937 &random, int n, std::string &out)
{
    out += "CREATE TABLE public.t" + std::to_string(n) + " (\n    id integer NOT NULL,\n";
    const int columns = 4 + static_cast<int>(random() % 12);
    for (int i = 0; i < columns; ++i) {
        out += "    " + column(random, n, i, postgresTypes) +
               (i % 5 == 2 ? " DEFAULT 'none'::character varying" : "") + (i % 3 == 0 ? " NOT NULL" : "") + ",\n";
    }
    out += "    created timestamp without time zone DEFAULT now()\n);\n\n";
}

void oracleTable(std::mt19937 &random, int n, std::string &out)
{
    out += "CREATE TABLE \"HR\".\"T" + std::to_string(n) + "\"\n   (\t\"ID\" NUMBER(10,0) NOT NULL ENABLE,\n";
    const int columns = 4 + static_cast<int>(random() % 12);
    for (int i = 0; i < columns; ++i) {
        out += "\t\"C" + std::to_string(i) + "\" " + oracleTypes[random() % 8] + (i % 4 == 0 ? " DEFAULT 0" : "") +
               ",\n";
    }
    out += "\tCONSTRAINT \"T" + std::to_string(n) + "_CK\" CHECK (\"ID\" > 0) ENABLE\n   );\n\n";
}

void sqliteTable(std::mt19937 &random, int n, std::string &out)
{
    out += "CREATE TABLE IF NOT EXISTS \"t" + std::to_string(n) + "\" (\n  \"id\" INTEGER PRIMARY KEY AUTOINCREMENT,\n";
    const int columns = 4 + static_cast<int>(random() % 12);
    for (int i = 0; i < columns; ++i) {
        out += "  " + column(random, n, i, sqliteTypes) + (i % 2 == 0 ? " NOT NULL DEFAULT 0" : "") + ",\n";
    }
    out += "  \"parent\" INTEGER REFERENCES \"t" + std::to_string(n) + "\" (\"id\") ON DELETE CASCADE\n);\n";
    out += "INSERT INTO \"t" + std::to_string(n) + "\" VALUES (1, 'a', 2.5, NULL);\n\n";
}

const char *const dumpStrings[] = {"plain text", "It\\'s quoted", "say \\\"hi\\\"", "line\\nbreak\\ttab",
                                  "back\\\\slash", "O''Brien", "semi; colon -- not a comment", "ünïcödé"};

void dumpTable(int n, std::string &out)
{
    const std::string name = "`data" + std::to_string(n) + "`";
    out += "DROP TABLE IF EXISTS " + name + ";\n";
    out += "CREATE TABLE " + name + " (\n  `id` int(11) NOT NULL AUTO_INCREMENT,\n  `label` varchar(255) DEFAULT NULL,\n"
           "  `amount` decimal(10,2) NOT NULL DEFAULT '0.00',\n  `note` text,\n  `created` datetime DEFAULT NULL,\n"
           "  PRIMARY KEY (`id`)\n) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;\n\n";
    out += "LOCK TABLES " + name + " WRITE;\n/*!40000 ALTER TABLE " + name + " DISABLE KEYS */;\n";
}

void dumpInsert(std::mt19937 &random, int table, int rows, long &row, std::string &out)
{
    out += "INSERT INTO `data" + std::to_string(table) + "` VALUES ";
    for (int i = 0; i < rows; ++i, ++row) {
        out += (i == 0 ? "(" : ",(") + std::to_string(row) + ",'" + dumpStrings[random() % 8] + "'," +
               std::to_string(random() % 100000) + "." + std::to_string(random() % 90 + 10) + "," +
               (row % 7 == 0 ? std::string("NULL") : "'" + std::string(dumpStrings[random() % 8]) + "'") +
               ",'2024-01-0" + std::to_string(1 + row % 9) + " 12:00:00')";
    }
    out += ";\n";
}

} // namespace

std::string generateDumpScript(size_t minimumBytes, int rowsPerInsert)
{
    std::mt19937 random(12345);
    std::string out;
    out.reserve(minimumBytes + 65536);
    out += "-- generated benchmark dump\n/*!40101 SET NAMES utf8mb4 */;\n\n";
    constexpr int tables = 4;
    long row = 1;
    for (int n = 0; n < tables; ++n) {
        dumpTable(n, out);
        // Each table gets its share of the data, the last one the remainder.
        const size_t share = minimumBytes * static_cast<size_t>(n + 1) / tables;
        do {
            dumpInsert(random, n, rowsPerInsert, row, out);
        } while (out.size() < share);
        out += "/*!40000 ALTER TABLE `data" + std::to_string(n) + "` ENABLE KEYS */;\nUNLOCK TABLES;\n\n";
    }
    return out;
}

std::string generateSchemaScript(size_t minimumBytes)
{
    std::mt19937 random(12345);
    std::string out;
    out.reserve(minimumBytes + 4096);
    out += "-- generated benchmark schema\nSET NAMES utf8mb4;\n\n";
    for (int n = 0; out.size() < minimumBytes; ++n) {
        switch (n % 4) {
        case 0: mysqlTable(random, n, out); break;
        case 1: postgresTable(random, n, out); break;
        case 2: oracleTable(random, n, out); break;
        default: sqliteTable(random, n, out); break;
        }
    }
    return out;
}

} // namespace bench
