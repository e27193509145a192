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
#include "rpc_menus.h"

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

// How many items a list of the host's may have.
constexpr std::size_t most_items = 100'000;

// A list comes as the one param, or as the params themselves.
const Json& items_of(const Json& params) {
    return params.size() == 1 && params[0].is_array() ? params[0] : params;
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
    std::size_t fewest;  // params
    std::size_t most;
    std::string (HostMethods::*carry_out)(const Json&);
};

const HostMethods::Method HostMethods::methods[] = {
    {u"create", 1, 1, &HostMethods::create},
    {u"release", 1, 1, &HostMethods::release},
    {u"connect", 1, 1, &HostMethods::connect},
    {u"answers", 1, most_items, &HostMethods::answers},
    {u"now", 1, 1, &HostMethods::now},
    {u"sleep", 1, 1, &HostMethods::sleep},
    {u"drive", 2, 2, &HostMethods::drive},
    {u"version", 1, 3, &HostMethods::version},
    {u"keys", 1, most_items, &HostMethods::keys},
    {u"mouse", 1, 1, &HostMethods::mouse},
    {u"dialog", 1, 1, &HostMethods::dialog},
    {u"on_event", 4, 4, &HostMethods::on_event},
    {u"fault", 4, 4, &HostMethods::fault},
    {u"window", 0, most_items, &HostMethods::window},
    {u"menu", 1, 1, &HostMethods::menu},
    {u"catalogue", 0, 0, &HostMethods::catalogue},
};

std::string HostMethods::call(StringView name, const Json& params) {
    const auto* found = std::find_if(std::begin(methods), std::end(methods),
                                     [&](const Method& method) { return method.name == name; });
    if (found == std::end(methods)) {
        throw Refusal(RefusalCode::UnknownMethod, "no method host." + to_utf8(name));
    }
    if (params.size() < found->fewest || params.size() > found->most) {
        refuse("host." + to_utf8(name) + " takes other params");
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
    const auto object = std::make_shared<ClassObject>(*info);
    platform_.events.listen(*info, object->self());
    return object_json(object);
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
    std::deque<MsgBoxResult> answers;
    for (const Json& param : items_of(params)) {
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

std::string HostMethods::version(const Json& params) {
    const Json& items = items_of(params);
    SettableVersion& record = platform_.version;
    if (items.size() == 1 && variant_of(items[0], objects_).is(Subtype::Null)) {
        record.version.reset();
    } else if (items.size() == 3) {
        record.version = {number_param(items[0], objects_), number_param(items[1], objects_),
                          number_param(items[2], objects_)};
    } else {
        refuse("platform, major and minor, or null are wanted");
    }
    record.is_set = true;
    return empty_json();
}

std::string HostMethods::keys(const Json& params) {
    std::vector<Long> codes;
    for (const Json& param : items_of(params)) {
        codes.push_back(number_param(param, objects_));
    }
    for (const Long code : codes) {
        platform_.messages.add_key(code);
    }
    return empty_json();
}

std::string HostMethods::mouse(const Json& params) {
    const Long count = number_param(params[0], objects_);
    if (count < 0 || static_cast<std::size_t>(count) > most_items) {
        refuse("a count of messages is wanted");
    }
    for (Long i = 0; i < count; ++i) {
        platform_.messages.add_mouse_move();
    }
    return empty_json();
}

std::string HostMethods::dialog(const Json& params) {
    std::optional<String> answer;
    if (!variant_of(params[0], objects_).is(Subtype::Null)) {
        answer = text_param(params[0], objects_);
    }
    platform_.dialogs.answers.push_back(std::move(answer));
    return empty_json();
}

std::string HostMethods::on_event(const Json& params) {
    const Variant value = variant_of(params[0], objects_);
    const auto* pointer = value.get_if<ObjectPointer>();
    const auto* object =
        pointer == nullptr ? nullptr : dynamic_cast<const ClassObject*>(pointer->get());
    if (object == nullptr) {
        refuse("an object of a class is wanted");
    }
    platform_.events.prepare(*object, text_param(params[1], objects_),
                             number_param(params[2], objects_), params[3], objects_);
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

// The list of menus comes as the one param, or as the params themselves; a menu begins with a text.
std::string HostMethods::window(const Json& params) {
    const bool is_list =
        params.size() == 1 && params[0].is_array() && (params[0].empty() || !is_text(params[0][0]));
    const Long handle = make_window(is_list ? params[0] : params);
    JsonWriter json;
    write_value(json, handle, objects_);
    return json.take();
}

std::string HostMethods::menu(const Json& params) {
    return menus_json(number_param(params[0], objects_));
}

}  // namespace kvarta16::tool
