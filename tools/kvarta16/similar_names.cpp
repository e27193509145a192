#include "similar_names.h"

#include <algorithm>
#include <utility>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>

#include "lookup.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

// In lower case and without the marks of the Polish letters.
String folded(StringView name) {
    constexpr StringView marked = u"ąćęłńóśźż";
    constexpr StringView plain = u"acelnoszz";
    String result = lower_case(name);
    for (char16_t& letter : result) {
        const std::size_t place = marked.find(letter);
        letter = place == StringView::npos ? letter : plain[place];
    }
    return result;
}

// How many letters must be put in, left out or changed to make one text of the other. One row of
// the usual table is kept: the distances of `a`'s start so far to every start of `b`.
std::size_t distance(StringView a, StringView b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, changed}));
        }
    }
    return row[b.size()];
}

[[noreturn]] void fail_unknown(const std::string& what, StringView wanted,
                               const std::vector<StringView>& names, const std::string& see) {
    std::string message = what;
    std::string before = "; similar: ";
    for (const StringView name : similar_names(wanted, names)) {
        message += before + to_utf8(name);
        before = ", ";
    }
    throw UsageError(message + "\nSee " + see + '.');
}

}  // namespace

std::vector<StringView> similar_names(StringView wanted, const std::vector<StringView>& names) {
    constexpr std::size_t most = 5;
    const String plain = folded(wanted);
    std::vector<std::pair<std::size_t, StringView>> found;
    for (const StringView name : names) {
        const String candidate = folded(name);
        const std::size_t changes = distance(plain, candidate);
        const bool holds = !plain.empty() && candidate.find(plain) != String::npos;
        if (holds || changes <= std::max<std::size_t>(1, plain.size() / 3)) {
            found.emplace_back(changes, name);
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<StringView> nearest;
    for (const auto& [changes, name] : found) {
        const bool known = std::find(nearest.begin(), nearest.end(), name) != nearest.end();
        if (!known && nearest.size() < most) {
            nearest.push_back(name);
        }
    }
    return nearest;
}

const ClassInfo& listed_class(StringView name) {
    if (const ClassInfo* found = find_offered_class(name)) {
        return *found;
    }
    std::vector<StringView> names{u"value"};
    for (const std::span<const ClassInfo> classes : {public_classes(), private_classes()}) {
        for (const ClassInfo& info : classes) {
            names.push_back(info.header.name);
        }
    }
    fail_unknown("there is no class \"" + to_utf8(name) + '"', name, names, "kvarta16 catalogue");
}

void fail_unknown_member(StringView owner, StringView name, std::span<const MemberInfo> entries) {
    std::vector<StringView> names;
    for (const MemberInfo& entry : entries) {
        if (entry.name == name && !entry.is_built()) {
            throw UsageError(to_utf8(owner) + '.' + to_utf8(name) + " is not built yet");
        }
        if (entry.is_built()) {
            names.push_back(entry.name);
        }
    }
    fail_unknown(to_utf8(owner) + " has no member \"" + to_utf8(name) + '"', name, names,
                 "kvarta16 catalogue " + to_utf8(owner));
}

}  // namespace kvarta16::tool
