#include <new>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/jet_values.h>
#include <kvarta16/platform/sqlite/jet_writer.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>
#include <kvarta16/platform/sqlite/sqlite_functions.h>

namespace kvarta16::sqlite {
namespace {

std::string_view text_of(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (text == nullptr) {
        throw std::bad_alloc();
    }
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

std::string_view bytes_of(sqlite3_value* value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    return {bytes, bytes == nullptr ? 0 : static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void give_moment(sqlite3_context* context, sqlite3_value* value, std::size_t length) {
    if (const auto moment = moment_of(cell_of(value))) {
        const MomentText text = moment_text(*moment);
        sqlite3_result_text(context, text.data(), static_cast<int>(length), SQLITE_TRANSIENT);
    }
}

using Arguments = sqlite3_value**;

void give_cell(sqlite3_context* context, const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        sqlite3_result_int64(context, *whole);
    } else if (const auto* real = std::get_if<double>(&cell)) {
        sqlite3_result_double(context, *real);
    } else if (const auto* text = std::get_if<std::string>(&cell)) {
        sqlite3_result_text64(context, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else if (const auto* blob = std::get_if<Blob>(&cell)) {
        sqlite3_result_blob64(context, blob->bytes.data(), blob->bytes.size(), SQLITE_TRANSIENT);
    }
}

void give_seconds(sqlite3_context* context, Arguments arguments) {
    sqlite3_value* value = arguments[0];
    if (sqlite3_value_type(value) == SQLITE_TEXT && is_text_to_seconds(text_of(value))) {
        sqlite3_result_value(context, value);
    } else {
        give_moment(context, value, length_to_seconds);
    }
}

void give_milliseconds(sqlite3_context* context, Arguments arguments) {
    sqlite3_value* value = arguments[0];
    give_moment(context, value, MomentText().size());
}

void give_number(sqlite3_context* context, Arguments arguments) {
    sqlite3_value* value = arguments[0];
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) {
        sqlite3_result_value(context, value);
    } else if (const auto number = number_of(cell_of(value))) {
        sqlite3_result_double(context, *number);
    }
}

void give_truth(sqlite3_context* context, Arguments arguments) {
    sqlite3_value* value = arguments[0];
    if (const auto truth = truth_of(cell_of(value))) {
        sqlite3_result_int(context, *truth ? -1 : 0);
    }
}

// The value of a column, what it is beyond its storage class, and the type and size to convert to.
void give_converted(sqlite3_context* context, Arguments arguments) {
    const auto kind = static_cast<ColumnKind>(sqlite3_value_int(arguments[1]));
    const FieldType type{static_cast<Integer>(sqlite3_value_int(arguments[2])),
                         sqlite3_value_int(arguments[3])};
    give_cell(context, jet::converted(cell_of(arguments[0]), kind, type));
}

void give_computed(sqlite3_context* context, Arguments arguments) {
    give_cell(context,
              jet::computed(text_of(arguments[0]), cell_of(arguments[1]), cell_of(arguments[2])));
}

void give_like(sqlite3_context* context, Arguments arguments) {
    const auto is_null = [](sqlite3_value* value) {
        return sqlite3_value_type(value) == SQLITE_NULL;
    };
    if (!is_null(arguments[0]) && !is_null(arguments[1])) {
        const bool fits =
            jet::is_like(from_utf8(text_of(arguments[0])), from_utf8(text_of(arguments[1])));
        sqlite3_result_int(context, fits ? 1 : 0);
    }
}

using Giver = void (*)(sqlite3_context*, Arguments);

// No exception may cross the engine.
template <Giver give>
void function(sqlite3_context* context, int, Arguments arguments) noexcept {
    try {
        give(context, arguments);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const Failure& failure) {
        sqlite3_result_error(context, failure_message(failure).c_str(), -1);
    }
}

struct Function {
    const char* name;
    int arguments;
    void (*body)(sqlite3_context*, int, sqlite3_value**);
};
constexpr Function functions[] = {
    {jet::seconds_function, 1, function<give_seconds>},
    {jet::milliseconds_function, 1, function<give_milliseconds>},
    {jet::number_function, 1, function<give_number>},
    {jet::truth_function, 1, function<give_truth>},
    {jet::convert_function, 4, function<give_converted>},
    {jet::compute_function, 3, function<give_computed>},
    {jet::like_function, 2, function<give_like>},
};

}  // namespace

int register_functions(sqlite3* db) noexcept {
    // Direct: no view or index of a file can come to depend on them.
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;
    for (const Function& entry : functions) {
        const int code = sqlite3_create_function_v2(db, entry.name, entry.arguments, flags, nullptr,
                                                    entry.body, nullptr, nullptr, nullptr);
        if (code != SQLITE_OK) {
            return code;
        }
    }
    return SQLITE_OK;
}

Cell cell_of(sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            return std::int64_t{sqlite3_value_int64(value)};
        case SQLITE_FLOAT:
            return sqlite3_value_double(value);
        case SQLITE_TEXT:
            return std::string(text_of(value));
        case SQLITE_BLOB:
            return Blob{std::string(bytes_of(value))};
        default:
            return {};
    }
}

}  // namespace kvarta16::sqlite
