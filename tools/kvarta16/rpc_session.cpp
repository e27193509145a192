#include "rpc_session.h"

#include <charconv>
#include <new>

#include <kvarta16/frame/utf8.h>

#include "json_values.h"
#include "lookup.h"

namespace kvarta16::tool {

struct RpcSession::Request {
    std::optional<std::string> id;  // JSON; nothing in a notification
    String method;
    Json params;
};

// What a method's name leads to.
struct RpcSession::Target {
    const MemberInfo* member = nullptr;
    Receiver receiver;
};

namespace {

// What a client may do with a connection of its own, beside handing it to members.
constexpr auto connection_members = std::to_array<MemberInfo>({
    method<&ado::Connection::BeginTrans>(u"BeginTrans"),
    method<&ado::Connection::CommitTrans>(u"CommitTrans"),
    method<&ado::Connection::RollbackTrans>(u"RollbackTrans"),
    method<&ado::Connection::Close>(u"Close"),
});

// Not one of the library's own numbers, but the one that its callers know for this.
constexpr Long out_of_memory = 7;

// The id of an answer to a request whose own is not known.
constexpr const char* null_id = "null";

[[noreturn]] void refuse_method(StringView method) {
    throw Refusal(RefusalCode::UnknownMethod, "no method " + to_utf8(method));
}

// ---- Requests -------------------------------------------------------------------------------

std::string id_json(const Json& id) {
    JsonWriter json;
    if (id.is_null()) {
        json.null();
    } else if (is_text(id)) {
        json.text(text_of(id));
    } else if (id.is_number_integer()) {
        json.raw(id.dump());
    } else if (const std::optional<Double> number = number_of(id)) {
        json.number(*number);
    } else {
        throw Refusal(RefusalCode::NoRequest, "an id is a text, a number or null");
    }
    return json.take();
}

// ---- Members --------------------------------------------------------------------------------

// The number behind "@"; 0, which no object has, if there is none.
std::int64_t object_number(StringView text) {
    const std::string digits = to_utf8(text);
    std::int64_t number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return read.ptr == digits.data() + digits.size() && read.ec == std::errc() ? number : 0;
}

}  // namespace

std::optional<std::string> RpcSession::answer(std::string_view line) {
    std::optional<std::string> id = null_id;
    std::string answer;
    platform_.begin_call();
    try {
        if (line.size() > longest_request) {
            throw Refusal(RefusalCode::NoJson, "a line is too long");
        }
        Json json = parse_json(line);
        if (!json.is_object()) {
            throw Refusal(RefusalCode::NoRequest, "a request is an object");
        }
        if (json.contains("id")) {
            id = id_json(json["id"]);
        }
        const Request request = read_request(std::move(json));
        id = request.id;
        answer = carry_out(request);
    } catch (const Refusal& refusal) {
        answer = AnswerWriter::refusal(id.value_or(null_id), refusal);
    } catch (const std::bad_alloc&) {
        answer =
            answers_.failure(id.value_or(null_id), Failure(out_of_memory, u"Out of memory"), {});
    }
    return id ? std::optional(std::move(answer)) : std::nullopt;
}

RpcSession::Request RpcSession::read_request(Json json) {
    if (!is_text(json["jsonrpc"]) || text_of(json["jsonrpc"]) != u"2.0") {
        throw Refusal(RefusalCode::NoRequest, R"("jsonrpc" is not "2.0")");
    }
    if (!is_text(json["method"])) {
        throw Refusal(RefusalCode::NoRequest, R"("method" is no text)");
    }
    Request request{std::nullopt, text_of(json["method"]), Json::array()};
    if (json.contains("id")) {
        request.id = id_json(json["id"]);
    }
    if (json.contains("params")) {
        request.params = std::move(json["params"]);
    }
    return request;
}

std::string RpcSession::carry_out(const Request& request) {
    const std::string id = request.id.value_or(null_id);
    Arguments arguments;
    try {
        if (!request.params.is_array()) {
            throw Refusal(RefusalCode::BadParams, "params is an array");
        }
        const std::string value = value_of(request, arguments);
        return answers_.success(id, value, arguments);
    } catch (const WrongArgumentCount& wrong) {
        throw Refusal(RefusalCode::BadParams, wrong.what());
    } catch (const Failure& failure) {
        return answers_.failure(id, failure, arguments);
    }
}

std::string RpcSession::value_of(const Request& request, Arguments& arguments) {
    constexpr StringView host = u"host.";
    if (request.method.starts_with(host)) {
        return host_.call(StringView(request.method).substr(host.size()), request.params);
    }
    const Target target = find_target(request.method);
    if (request.params.size() > target.member->parameter_count) {
        throw WrongArgumentCount();  // before anything long is made of them
    }
    for (const Json& param : request.params) {
        arguments.push_back(variant_of(param, objects_));
    }
    JsonWriter json;
    write_value(json, invoke(*target.member, target.receiver.self, arguments), objects_);
    return json.take();
}

RpcSession::Target RpcSession::find_target(StringView method) {
    const std::size_t dot = method.find(u'.');
    if (dot == StringView::npos) {
        refuse_method(method);
    }
    const StringView owner = method.substr(0, dot);
    const StringView name = method.substr(dot + 1);
    Target target;
    if (owner == u"value") {
        target.member = find_entry(value_primitives(), name);
    } else if (owner.starts_with(u'@')) {
        const ObjectPointer object = objects_.find(object_number(owner.substr(1)));
        if (const auto* instance = dynamic_cast<const ClassObject*>(object.get())) {
            target = {find_called(instance->info(), name), {instance->self(), object}};
        } else if (auto* connection = dynamic_cast<ado::Connection*>(object.get())) {
            target = {find_entry(connection_members, name), {connection, object}};
        }
    } else if (const ClassInfo* info = find_offered_class(owner);
               info != nullptr && info->is_built()) {
        target = {find_called(*info, name), receiver_of(*info)};
        platform_.events.listen(*info, target.receiver.self);
    }
    if (target.member == nullptr) {
        refuse_method(method);
    }
    return target;
}

}  // namespace kvarta16::tool
