#include <new>

#include <kvarta16/platform/sqlite/sql_translator.h>
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

void give_seconds(sqlite3_context* context, sqlite3_value* value) {
    if (sqlite3_value_type(value) == SQLITE_TEXT && is_text_to_seconds(text_of(value))) {
        sqlite3_result_value(context, value);
    } else {
        give_moment(context, value, length_to_seconds);
    }
}

void give_milliseconds(sqlite3_context* context, sqlite3_value* value) {
    give_moment(context, value, MomentText().size());
}

void give_number(sqlite3_context* context, sqlite3_value* value) {
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) {
        sqlite3_result_value(context, value);
    } else if (const auto number = number_of(cell_of(value))) {
        sqlite3_result_double(context, *number);
    }
}

void give_truth(sqlite3_context* context, sqlite3_value* value) {
    if (const auto truth = truth_of(cell_of(value))) {
        sqlite3_result_int(context, *truth ? -1 : 0);
    }
}

using Giver = void (*)(sqlite3_context*, sqlite3_value*);

// No exception may cross the engine.
template <Giver give>
void function(sqlite3_context* context, int, sqlite3_value** arguments) noexcept {
    try {
        give(context, arguments[0]);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

struct Function {
    const char* name;
    void (*body)(sqlite3_context*, int, sqlite3_value**);
};
constexpr Function functions[] = {
    {seconds_function, function<give_seconds>},
    {milliseconds_function, function<give_milliseconds>},
    {number_function, function<give_number>},
    {truth_function, function<give_truth>},
};

}  // namespace

int register_functions(sqlite3* db) noexcept {
    // Direct: no view or index of a file can come to depend on them.
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;
    for (const Function& entry : functions) {
        const int code = sqlite3_create_function_v2(db, entry.name, 1, flags, nullptr, entry.body,
                                                    nullptr, nullptr, nullptr);
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
