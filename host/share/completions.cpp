#include "host/share/completions.h"

namespace korlit::host {

ValueKind valueKindOf(const OptionInfo& option) {
    if (!option.choices.empty()) {
        return ValueKind::Choice;
    }
    if (option.names.empty() || option.value == "FILE" || option.value == "LIST") {
        return ValueKind::File;
    }
    return option.value.empty()    ? ValueKind::None
           : option.value == "DIR" ? ValueKind::Folder
                                   : ValueKind::Other;
}

} // namespace korlit::host
