// The DAO seam: the engine behind database files, and the databases, tables and fields that the
// library looks at and changes. The operations bear the platform's names and take its arguments.
// A failing layer raises a Failure with its own number and a text that says what is wrong; nothing
// of a failed operation is stored.
#pragma once

#include <memory>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/variant.h>

namespace kvarta16::dao {

// The types of a field, by the platform's codes. Other codes stand for types that the library
// leaves alone.
inline constexpr Integer dbBoolean = 1;
inline constexpr Integer dbByte = 2;
inline constexpr Integer dbInteger = 3;
inline constexpr Integer dbLong = 4;
inline constexpr Integer dbCurrency = 5;
inline constexpr Integer dbSingle = 6;
inline constexpr Integer dbDouble = 7;
inline constexpr Integer dbDate = 8;
inline constexpr Integer dbBinary = 9;
inline constexpr Integer dbText = 10;
inline constexpr Integer dbLongBinary = 11;
inline constexpr Integer dbMemo = 12;

// A column of a table. Its name, type and size are those of the moment at which its collection was
// read. It stays the field of that column until the column is dropped; then the other operations
// fail.
class KVARTA16_EXPORT Field : public Object {
  public:
    [[nodiscard]] virtual String Name() = 0;
    [[nodiscard]] virtual Integer Type() = 0;
    // The most characters that a dbText column takes; of another type the bytes of a value, 0 for
    // dbMemo and dbLongBinary.
    [[nodiscard]] virtual Long Size() = 0;

    // What a new row has in the column where nothing is given, as an expression of the engine's
    // dialect: "" none, "0", "NOW()", "\"\"" the empty text. Writing takes a text or a number and
    // is stored at once; it applies to rows inserted afterwards.
    [[nodiscard]] virtual Variant DefaultValue() = 0;
    virtual void PutDefaultValue(const Variant& value) = 0;

    // Whether a dbText or dbMemo column takes the empty text. Writing is stored at once and leaves
    // the rows that are there alone. Writing to another type fails.
    [[nodiscard]] virtual bool AllowZeroLength() = 0;
    virtual void PutAllowZeroLength(bool allow) = 0;
};

// The columns of a table as they were when the collection was first read: columns that statements
// add or drop afterwards change neither the count nor the places.
class KVARTA16_EXPORT Fields : public Object {
  public:
    [[nodiscard]] virtual Integer Count() = 0;
    // By the index from 0. Fails: 3265 for an index that is none.
    [[nodiscard]] virtual std::shared_ptr<Field> Item(Long index) = 0;
};

class KVARTA16_EXPORT TableDef : public Object {
  public:
    // The table's name. Writing renames the table in the file at once; also to a name that differs
    // in case alone.
    [[nodiscard]] virtual String Name() = 0;
    virtual void PutName(StringView name) = 0;
    [[nodiscard]] virtual std::shared_ptr<dao::Fields> Fields() = 0;
};

// An object may be a Database and a connection of another seam at once, and is one Object then.
class KVARTA16_EXPORT Database : public virtual Object {
  public:
    // The tables, in the collection's own order, which is that of their names without case; the
    // engine's own tables (names that begin with "MSys") are among them if the file has them. Read
    // at the first call: tables that statements make or drop afterwards are not taken in or out.
    [[nodiscard]] virtual std::vector<std::shared_ptr<TableDef>> TableDefs() = 0;

    // Runs one statement that gives no rows. Durable when it returns. Fails: 3065 for a select.
    virtual void Execute(StringView query) = 0;

    // Ends the use of the file. Everything that is got from the database fails from then on. A
    // database that is dropped without Close closes itself.
    virtual void Close() = 0;
};

class KVARTA16_EXPORT DBEngine {
  public:
    virtual ~DBEngine() = default;

    // Makes an empty database file and opens it. `locale` is what callers give to have the file
    // sorted by the rules of a language, e.g. ";LANGID=0x0415;CP=1250;COUNTRY=0"; it is kept in
    // the file. Fails: 3204 for a name that exists, 3044 for a folder that does not.
    [[nodiscard]] virtual std::shared_ptr<Database> CreateDatabase(StringView name,
                                                                   StringView locale) = 0;

    // Opens a database file, shared and to write. Fails: 3024 for a missing file, 3343 for one that
    // is no database, 3051 where the system refuses.
    [[nodiscard]] virtual std::shared_ptr<Database> OpenDatabase(StringView name) = 0;
};

}  // namespace kvarta16::dao
