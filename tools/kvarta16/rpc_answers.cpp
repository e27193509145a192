#include "rpc_answers.h"

#include <kvarta16/frame/utf8.h>

#include "json_values.h"

namespace kvarta16::tool {
namespace {

void begin_answer(JsonWriter& json, const std::string& id) {
    json.begin_object().key("jsonrpc").plain("2.0").key("id").raw(id);
}

std::string_view word_of(MsgBoxResult answer) {
    switch (answer) {
        case MsgBoxResult::Cancel:
            return "cancel";
        case MsgBoxResult::Yes:
            return "yes";
        case MsgBoxResult::No:
            return "no";
        default:
            return "ok";
    }
}

void write_boxes(JsonWriter& json, const std::vector<RecordingBoxes::Shown>& boxes) {
    json.key("boxes").begin_array();
    for (const RecordingBoxes::Shown& box : boxes) {
        json.begin_object().key("text").text(box.text).key("style").whole(box.style).key("title");
        if (box.title) {
            json.text(*box.title);
        } else {
            json.null();
        }
        json.key("answer").plain(word_of(box.answer)).end_object();
    }
    json.end_array();
}

void write_events(JsonWriter& json, const std::vector<EventDesk::Raised>& events,
                  ObjectTable& objects) {
    if (events.empty()) {
        return;
    }
    json.key("events").begin_array();
    for (const EventDesk::Raised& event : events) {
        json.begin_object().key("name").text(event.name).key("args").begin_array();
        for (const Variant& argument : event.arguments) {
            write_value(json, argument, objects);
        }
        json.end_array().end_object();
    }
    json.end_array();
}

void write_dialogs(JsonWriter& json, const std::vector<RecordingDialogs::Shown>& dialogs) {
    if (dialogs.empty()) {
        return;
    }
    json.key("dialogs").begin_array();
    for (const RecordingDialogs::Shown& dialog : dialogs) {
        json.begin_object().key("owner").whole(dialog.owner).key("prompt").text(dialog.prompt);
        json.key("flags").whole(dialog.flags).key("selection").text(dialog.selection);
        json.key("answer");
        if (dialog.answer) {
            json.text(*dialog.answer);
        } else {
            json.null();
        }
        json.end_object();
    }
    json.end_array();
}

}  // namespace

void AnswerWriter::write_record(JsonWriter& json, const Arguments& arguments) const {
    json.key("args").begin_array();
    for (const Variant& argument : arguments) {
        write_value(json, argument, objects_);
    }
    json.end_array();
    write_boxes(json, platform_.boxes.shown);
    write_events(json, platform_.events.raised, objects_);
    if (!platform_.sleeper.recorded.empty()) {
        json.key("sleeps").begin_array();
        for (const Long milliseconds : platform_.sleeper.recorded) {
            json.whole(milliseconds);
        }
        json.end_array();
    }
    write_dialogs(json, platform_.dialogs.shown);
}

std::string AnswerWriter::success(const std::string& id, const std::string& value,
                                  const Arguments& arguments) const {
    JsonWriter json;
    begin_answer(json, id);
    json.key("result").begin_object().key("value").raw(value);
    write_record(json, arguments);
    json.end_object().end_object();
    return json.take();
}

std::string AnswerWriter::failure(const std::string& id, const Failure& failure,
                                  const Arguments& arguments) const {
    JsonWriter json;
    begin_answer(json, id);
    json.key("error").begin_object().key("code").whole(failure.number());
    json.key("message").text(failure.description()).key("data").begin_object();
    write_record(json, arguments);
    json.end_object().end_object().end_object();
    return json.take();
}

std::string AnswerWriter::refusal(const std::string& id, const Refusal& refusal) {
    JsonWriter json;
    begin_answer(json, id);
    json.key("error").begin_object();
    json.key("code").whole(static_cast<int>(refusal.code()));
    json.key("message").text(from_utf8(refusal.what()));
    json.end_object().end_object();
    return json.take();
}

}  // namespace kvarta16::tool
