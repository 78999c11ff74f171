#include "host/compare/judgement_text.h"

#include "host/text/utf8.h"

namespace korlit::host {

namespace {

Json conversionJson(Way way) {
    return way == Way::None ? Json{}
                            : Json{{"from", way == Way::FromAToB ? "a" : "b"},
                                   {"to", way == Way::FromAToB ? "b" : "a"}};
}

} // namespace

std::string headlineOf(const Judgement& judgement) {
    return judgement.verdict.words() +
           (judgement.channel > 0 ? " (channel " + std::to_string(judgement.channel) + ")" : "");
}

std::string unexpectedLines(const Verdict& verdict, const std::string& indent, std::size_t most) {
    std::string lines;
    std::size_t count = 0;
    for (const Change& change : verdict.changes) {
        if (change.rule == nullptr && ++count <= most) {
            lines += indent + "unexpected: " + change.text() + '\n';
        }
    }
    return lines + (count > most ? indent + "unexpected: and " + std::to_string(count - most) +
                                       " more, which -v has\n"
                                 : "");
}

std::string expectedLines(const Verdict& verdict, const std::string& indent, bool isVerbose) {
    std::string lines;
    for (const auto& [rule, count] : verdict.countsByRule()) {
        const std::string start = indent + "expected: " + rule->id + ": ";
        if (!isVerbose) {
            lines += start + std::to_string(count) + ": " + rule->words + '\n';
            continue;
        }
        for (const Change& change : verdict.changes) {
            if (change.rule == rule) {
                lines += start + change.text() + '\n';
            }
        }
    }
    return lines;
}

Json jsonOf(const std::string& a, const std::string& b, const Judgement& judgement) {
    const Verdict& verdict = judgement.verdict;
    const std::size_t unexpected = verdict.unexpectedCount();
    Json json{{"a", utf8Of(a)},
              {"b", utf8Of(b)},
              {"verdict", verdict.isSame() ? "same data" : "other data"},
              {"words", verdict.words()},
              {"conversion", conversionJson(judgement.way)},
              {"channel", judgement.channel > 0 ? Json(judgement.channel) : Json{}},
              {"points", verdict.points},
              {"peaks", verdict.peaks},
              {"expected", verdict.changes.size() - unexpected},
              {"unexpected", unexpected},
              {"equal", verdict.changes.empty()},
              {"differences", Json::array()}};
    for (const Change& change : verdict.changes) {
        json["differences"].push_back(change.json());
    }
    return json;
}

} // namespace korlit::host
