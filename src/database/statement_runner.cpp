#include <kvarta16/database/statement_runner.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16::database {

String run_statement(StringView ss, const std::shared_ptr<dao::Database>& dbsNorth,
                     Boolean NotSilent) {
    String result;
    try {
        if (dbsNorth == nullptr) {
            fail(error::object_not_set);
        }
        dbsNorth->Execute(ss);
    } catch (const Failure& failure) {
        result = failure.description();
        if (NotSilent) {
            guarded([&] { platform().message_boxes->MsgBox(result, msg_box::ok_only, ss); });
        }
    }
    return result;
}

}  // namespace kvarta16::database
