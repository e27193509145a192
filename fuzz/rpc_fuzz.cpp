// A JSON-RPC session: every line that is a request gets exactly one answer, every line that is none
// gets one too, each answer is JSON in one line and bears the id of its request; and every value
// that is read is written so that it reads the same again. An input is the lines of a session.
#include <algorithm>
#include <cmath>
#include <optional>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>

#include "fuzz_support.h"
#include "json_values.h"
#include "refusal.h"
#include "rpc_session.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;
using tool::Json;

// ---- JSON, by its grammar -------------------------------------------------------------------

class Grammar {
  public:
    explicit Grammar(std::string_view text) : rest_(text) {}

    // Whether all of the text is one JSON text no deeper than a session takes.
    bool holds() {
        take("\xEF\xBB\xBF");  // a mark that the parser passes over
        blanks();
        const bool is_value = value(1);
        blanks();
        return is_value && rest_.empty();
    }

  private:
    bool take(std::string_view word) {
        const bool is_there = rest_.starts_with(word);
        rest_.remove_prefix(is_there ? word.size() : 0);
        return is_there;
    }
    bool take_any(std::string_view characters) {
        const bool is_there =
            !rest_.empty() && characters.find(rest_.front()) != std::string_view::npos;
        rest_.remove_prefix(is_there ? 1 : 0);
        return is_there;
    }
    void blanks() {
        while (take_any(" \t\r\n")) {
        }
    }
    bool digits() {
        const bool any = take_any("0123456789");
        while (take_any("0123456789")) {
        }
        return any;
    }

    bool value(int depth) {
        if (rest_.starts_with('"')) {
            return text();
        }
        if (take("{")) {
            return depth <= tool::deepest_json && members(depth);
        }
        if (take("[")) {
            return depth <= tool::deepest_json && elements(depth);
        }
        return take("null") || take("true") || take("false") || number();
    }
    bool elements(int depth) {
        blanks();
        if (take("]")) {
            return true;
        }
        do {
            blanks();
            if (!value(depth + 1)) {
                return false;
            }
            blanks();
        } while (take(","));
        return take("]");
    }
    bool members(int depth) {
        blanks();
        if (take("}")) {
            return true;
        }
        do {
            blanks();
            if (!text()) {
                return false;
            }
            blanks();
            if (!take(":")) {
                return false;
            }
            blanks();
            if (!value(depth + 1)) {
                return false;
            }
            blanks();
        } while (take(","));
        return take("}");
    }
    bool number() {
        take("-");
        if (!take("0") && !digits()) {
            return false;
        }
        if (take(".") && !digits()) {
            return false;
        }
        if (take_any("eE")) {
            take_any("+-");
            return digits();
        }
        return true;
    }
    bool text() {
        if (!take("\"")) {
            return false;
        }
        while (!take("\"")) {
            if (rest_.empty() || static_cast<unsigned char>(rest_.front()) < 0x20) {
                return false;
            }
            if (take("\\")) {
                if (take("u")) {
                    for (int i = 0; i < 4; ++i) {
                        if (!take_any("0123456789abcdefABCDEF")) {
                            return false;
                        }
                    }
                } else if (!take_any("\"\\/bfnrt")) {
                    return false;
                }
            } else if (!character()) {
                return false;
            }
        }
        return true;
    }
    // One character of UTF-8: neither longer than it need be nor half of a pair.
    bool character() {
        for (std::size_t length = 1; length <= std::min<std::size_t>(4, rest_.size()); ++length) {
            const std::string_view bytes = rest_.substr(0, length);
            const String units = fuzz::text_of(bytes);
            const bool is_one = units.size() == 1 || (units.size() == 2 && length == 4);
            if (is_one && to_utf8(units) == bytes) {
                rest_.remove_prefix(length);
                return true;
            }
        }
        return false;
    }

    std::string_view rest_;
};

bool is_json(std::string_view text) {
    return Grammar(text).holds();
}

// ---- A platform without a world -------------------------------------------------------------

class NoSleep final : public Sleeper {
  public:
    void Sleep(Long) override {}
};

class FixedClock final : public Clock {
  public:
    Date Now() override { return {45429.5}; }
};

Platform bare_platform() {
    static NoSleep sleeper;
    static FixedClock clock;
    Platform operations;
    operations.message_boxes = platform().message_boxes;
    operations.sleeper = &sleeper;
    operations.clock = &clock;
    return operations;
}

// What must not be called here: what opens files by itself or maps drives for the whole process,
// what waits for a world that there is not, and what runs for ever on some arguments.
bool is_kept_out(const String& method) {
    constexpr StringView names[] = {u"host.connect", u"host.drive", u".skasuj_po_pakowaniu",
                                    u".replace2", u".apostrof3"};
    const String lower = lower_case(method);
    return std::ranges::any_of(names, [&](StringView name) { return lower.ends_with(name); });
}

// A number that makes a member build a text of gigabytes is no fault of the protocol.
bool may_be_large(std::string_view line) {
    int digits = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool is_digit = line[i] >= '0' && line[i] <= '9';
        const bool is_exponent = i > 0 && line[i - 1] >= '0' && line[i - 1] <= '9' &&
                                 std::string_view("eEdD").find(line[i]) != std::string_view::npos;
        digits = is_digit ? digits + 1 : 0;
        if (digits > 5 || is_exponent || line[i] == '&' || line.substr(i).starts_with("\\u")) {
            return true;
        }
    }
    return false;
}

// ---- Answers --------------------------------------------------------------------------------

constexpr int no_json = -32700;
constexpr int no_request = -32600;

bool is_id(const Json& id) {
    return id.is_null() || id.is_string() || id.is_number();
}

bool same_id(const Json& a, const Json& b) {
    return a == b || (a.is_number() && b.is_number() && a.get<double>() == b.get<double>());
}

void expect_refused(const std::string& answer, int code, const Json& id, const std::string& shown) {
    const Json json = Json::parse(answer, nullptr, false);
    const bool is_refusal = json.is_object() && json.contains("error") &&
                            json["error"]["code"] == code && same_id(json["id"], id);
    expect(is_refusal, "A refusal by " + show(code) + ", " + answer + ", of", shown);
}

void check_shape(const std::string& answer, const std::string& shown) {
    expect(is_json(answer) && answer.find('\n') == std::string::npos,
           "An answer that is JSON in one line, " + answer + ", of", shown);
    expect(answer.starts_with(R"({"jsonrpc":"2.0","id":)"), "The beginning of " + answer + " for",
           shown);
    const Json json = Json::parse(answer, nullptr, false);
    if (json.is_discarded()) {
        return;  // a number beyond Double or half of a pair, which that parser does not take
    }
    expect(json.size() == 3 && json.contains("result") != json.contains("error"),
           "Either a result or an error in " + answer + " for", shown);
    if (json.contains("error")) {
        expect(json["error"]["code"].is_number_integer() && json["error"]["message"].is_string(),
               "An error with a code and a text in " + answer + " for", shown);
    } else {
        const Json& result = json["result"];
        expect(result.is_object() && result.contains("value") && result["args"].is_array() &&
                   result["boxes"].is_array(),
               "A value, arguments and boxes in " + answer + " for", shown);
    }
}

void check_values(const Json& params) {
    if (!params.is_array()) {
        return;
    }
    tool::ObjectTable objects;
    for (const Json& param : params) {
        Variant value;
        try {
            value = tool::variant_of(param, objects);
        } catch (const tool::Refusal&) {  // no value at all
            continue;
        }
        tool::JsonWriter writer;
        tool::write_value(writer, value, objects);
        const std::string written = writer.take();
        const Variant again = tool::variant_of(tool::parse_json(written), objects);
        expect(is_json(written) && again == value, "The value written as " + written + " of",
               show(param.dump(-1, ' ', true, Json::error_handler_t::replace)));
    }
}

// What a line must be answered with, as far as the second parser takes it.
void check_answer(const std::string& line, const Json& request,
                  const std::optional<std::string>& answer) {
    const std::string shown = show(line);
    if (!request.is_object()) {
        expect(answer.has_value(), "An answer to", shown);
        expect_refused(*answer, no_request, nullptr, shown);
        return;
    }
    const bool has_id = request.contains("id");
    const Json id = has_id ? request["id"] : Json();
    const bool is_request = request.contains("jsonrpc") && request["jsonrpc"] == "2.0" &&
                            request.contains("method") && request["method"].is_string();
    if (!is_id(id) || !is_request) {
        expect(answer.has_value(), "An answer to", shown);
        expect_refused(*answer, no_request, is_id(id) ? id : Json(), shown);
        return;
    }
    expect_same("Whether there is an answer to", shown, answer.has_value(), has_id);
    const Json json = answer ? Json::parse(*answer, nullptr, false) : Json();
    if (json.is_object()) {
        expect(same_id(json["id"], id), "The id of the request in " + *answer + " for", shown);
    }
}

void check_line(tool::RpcSession& session, const std::string& line) {
    // To that parser a NUL is the end of the text, whatever stands behind it.
    const bool has_nul = line.find('\0') != std::string::npos;
    const Json request =
        has_nul ? Json(Json::value_t::discarded) : Json::parse(line, nullptr, false);
    const bool valid = is_json(line);
    expect(valid || request.is_discarded(), "One grammar is the other's for", show(line));
    if (valid) {
        const Json read = tool::parse_json(line);
        const bool has_method =
            read.is_object() && read.contains("method") && tool::is_text(read["method"]);
        const String method = has_method ? tool::text_of(read["method"]) : u"";
        const bool is_member = !method.starts_with(u"host.") && !method.starts_with(u"value.");
        if (is_kept_out(method) || (is_member && has_method && may_be_large(line))) {
            return;
        }
        if (read.is_object() && read.contains("params")) {
            check_values(read["params"]);
        }
    }
    const std::optional<std::string> answer = session.answer(line);
    if (answer) {
        check_shape(*answer, show(line));
    }
    if (!valid) {
        expect(answer.has_value(), "An answer to", show(line));
        expect_refused(*answer, no_json, nullptr, show(line));
    } else if (!request.is_discarded()) {
        check_answer(line, request, answer);
    }
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr int most_lines = 20;
    const Platform operations = bare_platform();
    const ScopedPlatform scope(operations);
    tool::RpcSession session;
    fuzz::Input input(data, size);
    for (int i = 0; i < most_lines && !input.rest().empty(); ++i) {
        check_line(session, std::string(input.line()));
    }
    return 0;
}
