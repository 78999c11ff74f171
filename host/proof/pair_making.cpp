#include "host/proof/pair_making.h"

#include "host/text/utf8.h"

namespace korlit::host {

CutText cutTo(const std::string& kept, const std::string& text, const ValueKey& subject,
              const ChangeRule& rule) {
    if (kept == text) {
        return {.text = text, .rule = &changes::numberAsText, .words = ""};
    }
    const std::string_view whole = startOfText(text, kept.size());
    const bool isSplit = whole.size() < kept.size();
    return {.text = kept,
            .rule = isSplit ? &changes::characterCut : &rule,
            .words = nameOf(subject) + " is cut to " + std::to_string(kept.size()) + " bytes" +
                     (isSplit ? ", in the middle of a character: \"" : ": \"") +
                     std::string{whole} + '"'};
}

} // namespace korlit::host
