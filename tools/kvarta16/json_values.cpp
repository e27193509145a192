#include "json_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <kvarta16/frame/utf8.h>

#include "date_forms.h"
#include "number_forms.h"
#include "refusal.h"

namespace kvarta16::tool {
namespace {

[[noreturn]] void refuse(const std::string& message) {
    throw Refusal(RefusalCode::BadParams, message);
}

// ---- Reading --------------------------------------------------------------------------------

// What stands behind the key of a value, and the objects that it may name.
struct Tagged {
    const Json& value;
    const ObjectTable& objects;
};

template <class T>
T read_whole(const Json& value) {
    const std::optional<std::int64_t> whole = whole_number_of(value);
    if (!whole || !std::in_range<T>(*whole)) {
        refuse("a whole number within the range of the type is wanted");
    }
    return static_cast<T>(*whole);
}

Double read_number(const Json& value) {
    const std::optional<Double> number = number_of(value);
    if (!number) {
        refuse("a number is wanted");
    }
    return *number;
}

String read_text(const Json& value) {
    if (!is_text(value)) {
        refuse("a text is wanted");
    }
    return text_of(value);
}

template <class T>
T read_null(const Json& value, T result) {
    if (!value.is_null()) {
        refuse("null is wanted");
    }
    return result;
}

Variant read_single(const Json& value) {
    constexpr Double largest = std::numeric_limits<Single>::max();
    constexpr Double rounds_beyond = 0x1.ffffffp127;  // half way from the largest to the next one
    const Double number = read_number(value);
    if (std::isinf(number)) {
        return static_cast<Single>(number);
    }
    if (std::abs(number) >= rounds_beyond) {
        refuse("a number within the range of Single is wanted");
    }
    return static_cast<Single>(std::clamp(number, -largest, largest));
}

// Money, or a decimal: a text that `reader` takes.
template <class Reader>
Variant read_exact(const Json& value, Reader reader, const char* form) {
    const auto number = reader(to_utf8(read_text(value)));
    if (!number) {
        refuse(form);
    }
    return *number;
}

Variant read_date_value(const Json& value) {
    if (!is_text(value)) {
        return Date{read_number(value)};
    }
    const std::optional<Date> date = read_date(to_utf8(text_of(value)));
    if (!date) {
        refuse(R"(a number of days, "yyyy-MM-dd" or "yyyy-MM-ddTHH:mm:ss" is wanted)");
    }
    return *date;
}

// An error code is written as a signed or as an unsigned number of 32 bits.
Variant read_error(const Json& value) {
    const std::optional<std::int64_t> code = whole_number_of(value);
    if (!code || (!std::in_range<std::int32_t>(*code) && !std::in_range<std::uint32_t>(*code))) {
        refuse("an error code of 32 bits is wanted");
    }
    return Variant::error(wrap32(*code));
}

Variant read_object(const Tagged& tagged) {
    const auto number = read_whole<std::int64_t>(tagged.value);
    const ObjectPointer object = tagged.objects.find(number);
    if (object == nullptr && number != 0) {
        throw Refusal(RefusalCode::UnknownMethod, "no object " + std::to_string(number));
    }
    return object;
}

struct Form {
    std::string_view key;
    Variant (*read)(const Tagged&);
};

constexpr auto forms = std::to_array<Form>({
    {"Null", [](const Tagged& t) { return read_null(t.value, Variant::null()); }},
    {"Empty", [](const Tagged& t) { return read_null(t.value, Variant()); }},
    {"Missing", [](const Tagged& t) { return read_null(t.value, Variant::missing()); }},
    {"Boolean",
     [](const Tagged& t) { return Variant(Boolean::from_raw(read_whole<Integer>(t.value))); }},
    {"Byte", [](const Tagged& t) { return Variant(read_whole<Byte>(t.value)); }},
    {"Integer", [](const Tagged& t) { return Variant(read_whole<Integer>(t.value)); }},
    {"Long", [](const Tagged& t) { return Variant(read_whole<Long>(t.value)); }},
    {"Single", [](const Tagged& t) { return read_single(t.value); }},
    {"Double", [](const Tagged& t) { return Variant(read_number(t.value)); }},
    {"Currency",
     [](const Tagged& t) {
         return read_exact(t.value, read_currency, "an amount with up to four decimals is wanted");
     }},
    {"Decimal",
     [](const Tagged& t) {
         return read_exact(t.value, read_decimal, "a decimal of 96 bits is wanted");
     }},
    {"Date", [](const Tagged& t) { return read_date_value(t.value); }},
    {"String", [](const Tagged& t) { return Variant(read_text(t.value)); }},
    {"Error", [](const Tagged& t) { return read_error(t.value); }},
    {"Object", read_object},
});

Variant read_tagged(const Json& value, const ObjectTable& objects) {
    const auto* found = std::find_if(forms.begin(), forms.end(), [&](const Form& form) {
        return value.size() == 1 && value.begin().key() == form.key;
    });
    if (found == forms.end()) {
        refuse("a value is an object of one key that names its type");
    }
    return found->read({value.front(), objects});
}

// ---- Writing --------------------------------------------------------------------------------

class ValueWriter {
  public:
    ValueWriter(JsonWriter& json, ObjectTable& objects) : json_(json), objects_(objects) {}

    void operator()(EmptyValue) { json_.key("Empty").null(); }
    void operator()(NullValue) { json_.key("Null").null(); }
    void operator()(Byte value) { json_.key("Byte").whole(value); }
    void operator()(Integer value) { json_.key("Integer").whole(value); }
    void operator()(Long value) { json_.key("Long").whole(value); }
    void operator()(Single value) { json_.key("Single").number(value); }
    void operator()(Double value) { json_.key("Double").number(value); }
    void operator()(Currency value) { json_.key("Currency").plain(currency_text(value)); }
    void operator()(const Decimal& value) { json_.key("Decimal").plain(decimal_text(value)); }
    void operator()(Date value) { json_.key("Date").number(value.days); }
    void operator()(const String& value) { json_.key("String").text(value); }
    void operator()(Boolean value) { json_.key("Boolean").whole(value.raw); }
    void operator()(const ObjectPointer& value) {
        json_.key("Object").whole(objects_.number_of(value));
    }
    void operator()(const UnknownObject& value) { (*this)(value.object); }
    void operator()(ErrorCode value) {
        if (Variant(value).is_missing()) {
            json_.key("Missing").null();
        } else {
            json_.key("Error").whole(value.code);
        }
    }

  private:
    JsonWriter& json_;
    ObjectTable& objects_;
};

}  // namespace

Variant variant_of(const Json& value, const ObjectTable& objects) {
    if (value.is_null()) {
        return Variant::null();
    }
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (is_text(value)) {
        return text_of(value);
    }
    const std::optional<std::int64_t> whole = whole_number_of(value);
    if (whole && std::in_range<Long>(*whole)) {
        return static_cast<Long>(*whole);
    }
    if (const std::optional<Double> number = number_of(value)) {
        return *number;
    }
    if (value.is_object()) {
        return read_tagged(value, objects);
    }
    refuse("an array is no value");
}

void write_value(JsonWriter& json, const Variant& value, ObjectTable& objects) {
    json.begin_object();
    value.visit(ValueWriter(json, objects));
    json.end_object();
}

}  // namespace kvarta16::tool
