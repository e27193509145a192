#include "rpc_host.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_paths.h>

#include "catalogue_json.h"
#include "databases.h"
#include "date_forms.h"
#include "json_output.h"
#include "json_values.h"
#include "lookup.h"
#include "refusal.h"

namespace kvarta16::tool {
namespace {

[[noreturn]] void refuse(const std::string& message) {
    throw Refusal(RefusalCode::BadParams, message);
}

// The parameters of the host's methods are values like any other, so that a text may also come
// as {"String":"…"} and a number as {"Long":…}.
String text_param(const Json& param, const ObjectTable& objects) {
    const Variant value = variant_of(param, objects);
    const auto* text = value.get_if<String>();
    if (text == nullptr) {
        refuse("a text is wanted");
    }
    return *text;
}

Long number_param(const Json& param, const ObjectTable& objects) {
    const Variant value = variant_of(param, objects);
    const auto* number = value.get_if<Long>();
    if (number == nullptr) {
        refuse("a whole number is wanted");
    }
    return *number;
}

std::string empty_json() {
    ObjectTable none;
    JsonWriter json;
    write_value(json, Variant(), none);
    return json.take();
}

struct AnswerWord {
    StringView word;
    MsgBoxResult answer;
};
constexpr auto answer_words = std::to_array<AnswerWord>({{u"ok", MsgBoxResult::Ok},
                                                         {u"cancel", MsgBoxResult::Cancel},
                                                         {u"yes", MsgBoxResult::Yes},
                                                         {u"no", MsgBoxResult::No}});

}  // namespace

struct HostMethods::Method {
    StringView name;
    std::size_t parameter_count;
    std::string (HostMethods::*carry_out)(const Json&);
};

const HostMethods::Method HostMethods::methods[] = {
    {u"create", 1, &HostMethods::create},
    {u"release", 1, &HostMethods::release},
    {u"connect", 1, &HostMethods::connect},
    {u"answers", 1, &HostMethods::answers},
    {u"now", 1, &HostMethods::now},
    {u"sleep", 1, &HostMethods::sleep},
    {u"drive", 2, &HostMethods::drive},
    {u"fault", 4, &HostMethods::fault},
    {u"catalogue", 0, &HostMethods::catalogue},
};

std::string HostMethods::call(StringView name, const Json& params) {
    const auto* found = std::find_if(std::begin(methods), std::end(methods),
                                     [&](const Method& method) { return method.name == name; });
    if (found == std::end(methods)) {
        throw Refusal(RefusalCode::UnknownMethod, "no method host." + to_utf8(name));
    }
    if (params.size() != found->parameter_count) {
        refuse("host." + to_utf8(name) + " takes " + std::to_string(found->parameter_count) +
               " params");
    }
    return (this->*found->carry_out)(params);
}

std::string HostMethods::object_json(const ObjectPointer& object) {
    JsonWriter json;
    write_value(json, object, objects_);
    return json.take();
}

std::string HostMethods::create(const Json& params) {
    const String name = text_param(params[0], objects_);
    const ClassInfo* info = find_offered_class(name);
    if (info == nullptr || !info->is_built()) {
        throw Refusal(RefusalCode::UnknownMethod, "no class " + to_utf8(name));
    }
    return object_json(std::make_shared<ClassObject>(*info));
}

std::string HostMethods::release(const Json& params) {
    const Variant value = variant_of(params[0], objects_);
    const auto* object = value.get_if<ObjectPointer>();
    if (object == nullptr || *object == nullptr) {
        refuse("an object is wanted");
    }
    objects_.release(objects_.number_of(*object));
    return empty_json();
}

std::string HostMethods::connect(const Json& params) {
    const std::string name = to_utf8(text_param(params[0], objects_));
    if (!names_database(name)) {
        refuse("a database is named " + std::string(database_form));
    }
    return object_json(faulting(open_database(name, Use::Filling)->connection(), platform_.plan));
}

std::string HostMethods::answers(const Json& params) {
    if (!params[0].is_array()) {
        refuse("a list of answers is wanted");
    }
    std::deque<MsgBoxResult> answers;
    for (const Json& param : params[0]) {
        const String word = text_param(param, objects_);
        const auto* known =
            std::find_if(answer_words.begin(), answer_words.end(),
                         [&](const AnswerWord& answer) { return answer.word == word; });
        if (known == answer_words.end()) {
            refuse(R"(an answer is "ok", "yes", "no" or "cancel")");
        }
        answers.push_back(known->answer);
    }
    std::deque<MsgBoxResult>& queue = platform_.boxes.answers;
    queue.insert(queue.end(), answers.begin(), answers.end());
    return empty_json();
}

std::string HostMethods::catalogue(const Json&) {
    return catalogue_json(public_classes());
}

std::string HostMethods::now(const Json& params) {
    const Variant value = variant_of(params[0], objects_);
    const auto* text = value.get_if<String>();
    const auto* date = value.get_if<Date>();
    const std::optional<Date> moment = text != nullptr   ? read_date(to_utf8(*text))
                                       : date != nullptr ? std::optional(*date)
                                                         : std::nullopt;
    if (!moment && !value.is(Subtype::Null)) {
        refuse(R"("yyyy-MM-dd", "yyyy-MM-ddTHH:mm:ss" or null is wanted)");
    }
    platform_.clock.moment = moment;
    return empty_json();
}

std::string HostMethods::sleep(const Json& params) {
    const String mode = text_param(params[0], objects_);
    if (mode != u"real" && mode != u"record") {
        refuse(R"("real" or "record" is wanted)");
    }
    platform_.sleeper.records = mode == u"record";
    return empty_json();
}

std::string HostMethods::drive(const Json& params) {
    const String letter = text_param(params[0], objects_);
    const String folder = text_param(params[1], objects_);
    const bool is_folder = !folder.empty() && folder.find(u'\0') == String::npos;
    if (letter.size() != 1 || !is_folder || !posix::map_drive(letter[0], to_utf8(folder))) {
        refuse(R"(a letter from "A" to "Y" and a folder are wanted; Z is the root)");
    }
    return empty_json();
}

std::string HostMethods::fault(const Json& params) {
    const std::string operation = to_utf8(text_param(params[0], objects_));
    const Long n = number_param(params[1], objects_);
    const String span = text_param(params[2], objects_);
    const Long number = number_param(params[3], objects_);
    if (span != u"once" && span != u"from") {
        refuse(R"("once" or "from" is wanted)");
    }
    try {
        platform_.plan->fail_at(operation, n,
                                span == u"once" ? FaultSpan::Once : FaultSpan::FromThenOn, number);
    } catch (const std::invalid_argument& reason) {
        refuse(reason.what());
    }
    return empty_json();
}

}  // namespace kvarta16::tool
