#include <kvarta16/frame/amain.h>
#include <kvarta16/frame/amian.h>

namespace kvarta16 {

String amain::VersjaLib() const {
    const ApplicationInfo& application = amian::application_info();
    return ToText(application.major_number) + u"." + ToText(application.minor_number) + u"." +
           ToText(application.revision_number) + u"." + application.component_name;
}

}  // namespace kvarta16
