#include <array>
#include <string_view>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/cups/cups_connection.h>
#include <kvarta16/platform/cups/cups_printers.h>

namespace kvarta16::cups {
namespace {

struct DeleteMessage {
    void operator()(ipp_t* message) const { ::ippDelete(message); }
};
using Message = std::unique_ptr<ipp_t, DeleteMessage>;

Message asked(http_t* connection, ipp_op_t operation) {
    static constexpr std::array<const char*, 3> wanted{"printer-name", "printer-info",
                                                       "printer-is-accepting-jobs"};
    ipp_t* const request = ::ippNewRequest(operation);
    ::ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr,
                   ::cupsUser());
    ::ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                    static_cast<int>(wanted.size()), nullptr, wanted.data());
    return Message(::cupsDoRequest(connection, request, "/"));  // which takes the request over
}

String text_of(ipp_attribute_t* attribute) {
    const char* const text = ::ippGetString(attribute, 0, nullptr);
    return text == nullptr ? String() : from_utf8(text);
}

String default_name(http_t* connection) {
    const Message answer = asked(connection, IPP_OP_CUPS_GET_DEFAULT);
    return text_of(::ippFindAttribute(answer.get(), "printer-name", IPP_TAG_NAME));
}

}  // namespace

// The answer is one flat list of attributes: those of a printer stand together, and an attribute
// without a name parts one printer from the next.
std::vector<Printer> printers() {
    std::vector<Printer> found;
    const Connection connection = connect();
    if (connection == nullptr) {
        return found;
    }
    const String preferred = default_name(connection.get());
    const Message answer = asked(connection.get(), IPP_OP_CUPS_GET_PRINTERS);
    bool is_inside = false;
    for (ipp_attribute_t* attribute = ::ippFirstAttribute(answer.get()); attribute != nullptr;
         attribute = ::ippNextAttribute(answer.get())) {
        const char* const name = ::ippGetName(attribute);
        if (name == nullptr || ::ippGetGroupTag(attribute) != IPP_TAG_PRINTER) {
            is_inside = false;
            continue;
        }
        if (!is_inside) {
            found.emplace_back();
            is_inside = true;
        }
        const std::string_view key = name;
        Printer& printer = found.back();
        if (key == "printer-name") {
            printer.name = text_of(attribute);
            printer.is_default = printer.name == preferred;
        } else if (key == "printer-info") {
            printer.description = text_of(attribute);
        } else if (key == "printer-is-accepting-jobs") {
            printer.accepts_jobs = ::ippGetBoolean(attribute, 0) != 0;
        }
    }
    return found;
}

std::string server_name() {
    return ::cupsServer();
}

}  // namespace kvarta16::cups
