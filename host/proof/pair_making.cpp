#include "host/proof/pair_making.h"

#include "host/text/utf8.h"

namespace korlit::host {

CutText cutTo(std::size_t room, const std::string& text, const ValueKey& subject,
              const ChangeRule& rule) {
    if (text.size() <= room) {
        return {.text = text, .rule = &changes::numberAsText, .words = ""};
    }
    const std::string_view whole = startOfText(text, room);
    const bool isSplit = whole.size() < room;
    return {.text = text.substr(0, room),
            .rule = isSplit ? &changes::characterCut : &rule,
            .words = nameOf(subject) + " is cut to " + std::to_string(room) + " bytes" +
                     (isSplit ? ", in the middle of a character: \"" : ": \"") +
                     std::string{whole} + '"'};
}

} // namespace korlit::host
