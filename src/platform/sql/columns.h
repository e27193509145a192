// How a recordset finds its columns.
#pragma once

#include <cstddef>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/sql/errors.h>
#include <kvarta16/platform/sql/names.h>

namespace kvarta16::sql {

// Where the column stands that `item` tells: a text by its name, everything else by its number,
// counted from 0. Fails: 3265 no such column.
template <class Columns>
[[nodiscard]] std::size_t index_of_column(const Columns& columns, const Variant& item) {
    String wanted;
    if (const String* name = item.get_if<String>()) {
        const auto found = find_name(columns, *name);
        if (found != columns.end()) {
            return static_cast<std::size_t>(found - columns.begin());
        }
        wanted = *name;
    } else {
        const Long ordinal = ToLong(item);
        if (ordinal >= 0 && static_cast<std::size_t>(ordinal) < columns.size()) {
            return static_cast<std::size_t>(ordinal);
        }
        wanted = ToText(ordinal);
    }
    fail_about(ado::error_item_not_found, u"The recordset has no such column", wanted);
}

}  // namespace kvarta16::sql
