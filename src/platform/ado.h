// The ADO seam: connections that callers open and own, and the recordsets that the library opens
// on them. The operations bear the platform's names and take its arguments. A failing layer
// raises a Failure with its own number and a text that says what is wrong; nothing of a failed
// operation is stored.
#pragma once

#include <memory>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/variant.h>

namespace kvarta16::ado {

// The platform's constants, under its names.
enum class CursorType : Long {
    adOpenForwardOnly = 0,
    adOpenKeyset = 1,
    adOpenDynamic = 2,
    adOpenStatic = 3
};
enum class LockType : Long {
    adLockReadOnly = 1,
    adLockPessimistic = 2,
    adLockOptimistic = 3,
    adLockBatchOptimistic = 4
};
enum class Affect : Long { adAffectCurrent = 1, adAffectGroup = 2, adAffectAll = 3 };
inline constexpr Long adCmdUnspecified = -1;

// Failures that callers know from this family of interfaces.
inline constexpr Long error_no_current_record = 3021;   // neither a row found nor one added
inline constexpr Long error_item_not_found = 3265;      // no such column in the recordset
inline constexpr Long error_object_closed = 3704;       // the recordset or connection is closed
inline constexpr Long error_object_open = 3705;         // the recordset is open already
inline constexpr Long error_invalid_connection = 3709;  // no connection, or a closed one

class Connection;

class KVARTA16_EXPORT Field {
  public:
    virtual ~Field() = default;

    // The column's name as the statement gives it.
    [[nodiscard]] virtual String Name() = 0;
    // The value in the current row; Null for a NULL.
    [[nodiscard]] virtual Variant Value() = 0;
    // Sets the value in the current row; stored by UpdateBatch.
    virtual void PutValue(const Variant& value) = 0;
};

class KVARTA16_EXPORT Recordset : public Object {
  public:
    // Runs a statement and stands on its first row. Fails if the recordset is open, the connection
    // is not, or the statement cannot be run.
    virtual void Open(StringView source, const std::shared_ptr<Connection>& active_connection,
                      CursorType cursor_type, LockType lock_type, Long options) = 0;

    // The platform's EOF (a macro in C): whether the recordset stands behind its last row.
    [[nodiscard]] virtual bool IsEOF() = 0;

    // Begins a new row, which becomes the current one; Close or destruction drops it if no
    // UpdateBatch has stored it.
    virtual void AddNew() = 0;

    // A column by its ordinal position from 0 (Integer or Long) or its name (String, in any
    // case). The field belongs to the recordset and lives as long. Fails: 3265.
    [[nodiscard]] virtual Field& Fields(const Variant& item) = 0;

    // Stores what has been put into the current row. Once it has returned the row is durable,
    // unless a transaction is open on the connection.
    virtual void UpdateBatch(Affect affect_records) = 0;

    // To the next row. The library reads one row at the most; hosts walk with it.
    virtual void MoveNext() = 0;

    virtual void Close() = 0;
};

class KVARTA16_EXPORT Connection : public virtual Object {
  public:
    // A new, closed recordset, to be opened on this connection.
    [[nodiscard]] virtual std::shared_ptr<Recordset> CreateRecordset() = 0;

    // The caller's own transaction. Without one each UpdateBatch is durable by itself. A
    // connection that is closed or dropped inside a transaction rolls it back. Fails if a
    // transaction is open (BeginTrans) or none is (the others).
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void RollbackTrans() = 0;

    // Ends the connection. Operations on it, and on its recordsets, fail from then on.
    virtual void Close() = 0;
};

}  // namespace kvarta16::ado
