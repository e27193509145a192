#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

template <class T>
T coerced(const Variant& source) {
    if constexpr (std::same_as<T, Byte>) {
        return to_byte(source);
    } else if constexpr (std::same_as<T, Integer>) {
        return ToInteger16(source);
    } else if constexpr (std::same_as<T, Long>) {
        return ToLong(source);
    } else if constexpr (std::same_as<T, Single>) {
        return to_single(source);
    } else if constexpr (std::same_as<T, Double>) {
        return to_double(source);
    } else if constexpr (std::same_as<T, Currency>) {
        return ToCurrency(source);
    } else if constexpr (std::same_as<T, Date>) {
        return ToDate(source);
    } else if constexpr (std::same_as<T, String>) {
        return ToText(source);
    } else if constexpr (std::same_as<T, Boolean>) {
        return to_boolean(source);
    } else {  // no coercion leads to the others: they are assigned what they are
        const T* same = source.get_if<T>();
        if (same == nullptr) {
            fail(source.is(Subtype::Null) ? error::invalid_null : error::type_mismatch);
        }
        return *same;
    }
}

}  // namespace

void Variant::assign(const Variant& source) {
    auto* reference = std::get_if<Reference>(&storage_);
    if (reference == nullptr) {
        *this = source.value();
        return;
    }
    std::visit(
        [&source]<class T>(T* variable) {
            if constexpr (std::same_as<T, Variant>) {
                variable->assign(source);
            } else {
                *variable = coerced<T>(source);
            }
        },
        *reference);
}

bool operator==(const Variant& a, const Variant& b) noexcept {
    return a.visit([&b]<class T>(const T& held) {
        const T* other = b.get_if<T>();
        return other != nullptr && held == *other;
    });
}

}  // namespace kvarta16
