// A tagged value: what a database field, a text box or a late-bound caller hands over.
//
//   Variant amount = Currency::raw(125000);      // 12.5
//   Variant nothing = Variant::null();           // a database NULL: a value, not an absence
//   Integer length = 3;
//   Variant argument = Variant::reference(length);  // behaves as the variable it refers to
//
// Copying a number allocates nothing.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <variant>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// GCC takes an enumerator of a scoped enum for a shadow of the type of its name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"

// The subtype codes that callers know. 12 and 15 to 16 are no subtypes.
enum class Subtype : std::uint8_t {
    Empty = 0,
    Null = 1,
    Integer = 2,
    Long = 3,
    Single = 4,
    Double = 5,
    Currency = 6,
    Date = 7,
    String = 8,
    Object = 9,
    Error = 10,
    Boolean = 11,
    UnknownObject = 13,
    Decimal = 14,
    Byte = 17,
};
#pragma GCC diagnostic pop

struct EmptyValue {
    friend constexpr bool operator==(EmptyValue, EmptyValue) noexcept = default;
};
struct NullValue {
    friend constexpr bool operator==(NullValue, NullValue) noexcept = default;
};
struct ErrorCode {
    Long code = 0;
    friend constexpr bool operator==(ErrorCode, ErrorCode) noexcept = default;
};
using ObjectPointer = std::shared_ptr<Object>;  // an empty one is Nothing
struct UnknownObject {
    ObjectPointer object;
    friend bool operator==(const UnknownObject&, const UnknownObject&) noexcept = default;
};

namespace detail {

// The values in the order of VariantValue's alternatives, with the subtype code of each.
using VariantValue =
    std::variant<EmptyValue, NullValue, Integer, Long, Single, Double, Currency, Date, String,
                 ObjectPointer, ErrorCode, Boolean, UnknownObject, Decimal, Byte>;
inline constexpr Subtype value_subtypes[] = {
    Subtype::Empty,  Subtype::Null,     Subtype::Integer,       Subtype::Long,    Subtype::Single,
    Subtype::Double, Subtype::Currency, Subtype::Date,          Subtype::String,  Subtype::Object,
    Subtype::Error,  Subtype::Boolean,  Subtype::UnknownObject, Subtype::Decimal, Subtype::Byte};
static_assert(std::variant_size_v<VariantValue> == std::size(value_subtypes));

template <class T, class Alternatives>
inline constexpr std::size_t index_of = 0;
template <class T, class First, class... Rest>
inline constexpr std::size_t index_of<T, std::variant<First, Rest...>> =
    std::is_same_v<T, First> ? 0 : 1 + index_of<T, std::variant<Rest...>>;

template <class T>
inline constexpr std::size_t value_index = index_of<T, VariantValue>;

}  // namespace detail

// The C++ types that a Variant holds as they are, and the subtype of each.
template <class T>
concept VariantAlternative = detail::value_index<T> < std::variant_size_v<detail::VariantValue>;
template <VariantAlternative T>
inline constexpr Subtype subtype_of = detail::value_subtypes[detail::value_index<T>];

class KVARTA16_EXPORT Variant {
    template <class Visitor>
    using VisitResult = std::invoke_result_t<Visitor&, const EmptyValue&>;

  public:
    Variant() noexcept = default;  // Empty

    // Only the value types themselves convert: no number is widened or narrowed on its way in.
    template <VariantAlternative T>
    Variant(T value) noexcept : storage_(std::in_place_type<T>, std::move(value)) {}
    Variant(std::same_as<bool> auto truth) noexcept : Variant(Boolean(truth)) {}
    Variant(StringView text) : Variant(String(text)) {}
    Variant(const char16_t* text) : Variant(String(text)) {}
    template <std::derived_from<Object> T>
    requires(!std::same_as<T, Object>) Variant(std::shared_ptr<T> object)
    noexcept : Variant(ObjectPointer(std::move(object))) {}

    [[nodiscard]] static Variant null() noexcept { return NullValue{}; }
    [[nodiscard]] static Variant error(Long code) noexcept { return ErrorCode{code}; }
    // An optional argument that the caller left out.
    [[nodiscard]] static Variant missing() noexcept { return error(missing_code); }

    // A Variant that refers to the caller's variable and behaves as the value it holds. The
    // variable must outlive it.
    template <class T>
    requires VariantAlternative<T> || std::same_as<T, Variant>
    [[nodiscard]] static Variant reference(T& variable) noexcept {
        Variant result;
        result.storage_.template emplace<Reference>(&variable);
        return result;
    }

    // The subtype, for a reference that of the variable.
    [[nodiscard]] Subtype subtype() const noexcept {
        return visit([]<class T>(const T&) { return subtype_of<T>; });
    }
    [[nodiscard]] bool is(Subtype code) const noexcept { return subtype() == code; }
    [[nodiscard]] bool is_missing() const noexcept {
        const auto* code = get_if<ErrorCode>();
        return code != nullptr && code->code == missing_code;
    }
    [[nodiscard]] bool is_reference() const noexcept {
        return std::holds_alternative<Reference>(storage_);
    }

    // The value held, or the variable's if this refers to one; nullptr if it is of another type.
    template <VariantAlternative T>
    [[nodiscard]] const T* get_if() const noexcept {
        return visit([]<class U>(const U& value) -> const T* {
            if constexpr (std::is_same_v<U, T>) {
                return &value;
            } else {
                return nullptr;
            }
        });
    }

    // Calls `visitor` with the value held, or with the variable's if this refers to one. All
    // types must give one result type.
    template <class Visitor>
    VisitResult<Visitor> visit(Visitor&& visitor) const {
        if (const auto* reference = std::get_if<Reference>(&storage_)) [[unlikely]] {
            return std::visit(
                [&visitor]<class T>(T* variable) -> VisitResult<Visitor> {
                    if constexpr (std::is_same_v<T, Variant>) {
                        return std::as_const(*variable).visit(std::forward<Visitor>(visitor));
                    } else {
                        return visitor(std::as_const(*variable));
                    }
                },
                *reference);
        }
        return visit_value(std::forward<Visitor>(visitor));
    }

    // A copy that refers to nothing: the value itself.
    [[nodiscard]] Variant value() const {
        return visit([]<class T>(const T& held) { return Variant(T(held)); });
    }

    // Assigns `source` to the variable that this refers to, coerced to the variable's type; to
    // this Variant itself if it refers to none. Fails as the coercion fails, and then nothing
    // is changed.
    void assign(const Variant& source);

    // The same subtype and the same value; a reference compares as the value it refers to.
    KVARTA16_EXPORT friend bool operator==(const Variant& a, const Variant& b) noexcept;

  private:
    static constexpr Long missing_code = static_cast<Long>(0x80020004U);

    using Reference = std::variant<EmptyValue*, NullValue*, Integer*, Long*, Single*, Double*,
                                   Currency*, Date*, String*, ObjectPointer*, ErrorCode*, Boolean*,
                                   UnknownObject*, Decimal*, Byte*, Variant*>;
    using Storage =
        std::variant<EmptyValue, NullValue, Integer, Long, Single, Double, Currency, Date, String,
                     ObjectPointer, ErrorCode, Boolean, UnknownObject, Decimal, Byte, Reference>;

    // A switch and not std::visit: it is inlined into the primitives, which run once a field.
    template <class Visitor>
    VisitResult<Visitor> visit_value(Visitor&& visitor) const {
        switch (storage_.index()) {
            case 1:
                return visitor(*std::get_if<1>(&storage_));
            case 2:
                return visitor(*std::get_if<2>(&storage_));
            case 3:
                return visitor(*std::get_if<3>(&storage_));
            case 4:
                return visitor(*std::get_if<4>(&storage_));
            case 5:
                return visitor(*std::get_if<5>(&storage_));
            case 6:
                return visitor(*std::get_if<6>(&storage_));
            case 7:
                return visitor(*std::get_if<7>(&storage_));
            case 8:
                return visitor(*std::get_if<8>(&storage_));
            case 9:
                return visitor(*std::get_if<9>(&storage_));
            case 10:
                return visitor(*std::get_if<10>(&storage_));
            case 11:
                return visitor(*std::get_if<11>(&storage_));
            case 12:
                return visitor(*std::get_if<12>(&storage_));
            case 13:
                return visitor(*std::get_if<13>(&storage_));
            case 14:
                return visitor(*std::get_if<14>(&storage_));
            default:
                return visitor(empty_value);
        }
    }

    static constexpr EmptyValue empty_value{};
    Storage storage_;
};

}  // namespace kvarta16
