#include "host/proof/verdict.h"

#include "host/proof/signal_gap.h"
#include "host/text/numbers.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace korlit::host {

namespace {

/// The entries of an output, found by their keys, and which of them nobody has asked for.
class Entries {
  public:
    explicit Entries(const std::vector<Entry>& allEntries)
        : entries{allEntries}, order(allEntries.size()), isAsked(allEntries.size()) {
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::ranges::sort(order, {}, [this](std::size_t i) -> const ValueKey& { return key(i); });
    }

    /// Nothing where there is no such entry.
    const Value& ask(const ValueKey& wanted) {
        static const Value nothing;
        const auto found = std::ranges::lower_bound(
            order, wanted, {}, [this](std::size_t i) -> const ValueKey& { return key(i); });
        if (found == order.end() || key(*found) != wanted) {
            return nothing;
        }
        isAsked[*found] = true;
        return entries[*found].value;
    }

    std::vector<Entry> unasked() const {
        std::vector<Entry> rest;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (!isAsked[i]) {
                rest.push_back(entries[i]);
            }
        }
        return rest;
    }

  private:
    const ValueKey& key(std::size_t index) const { return entries[index].key; }

    const std::vector<Entry>& entries;
    std::vector<std::size_t> order;
    std::vector<bool> isAsked;
};

std::string quantity(std::size_t count, const std::string& thing) {
    return groupedDigits(static_cast<std::int64_t>(count)) + ' ' + thing + (count == 1 ? "" : "s");
}

std::string wordsOf(const ValueKey& key) {
    return (key.peak > 0 ? "peak " + std::to_string(key.peak) : std::string{key.part}) + ": " +
           printable(std::string{key.name});
}

std::string wordsOf(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        return numberText(*number);
    }
    const auto* text = std::get_if<std::string>(&value);
    return text == nullptr ? "missing" : '"' + printable(*text) + '"';
}

Json jsonOf(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        return numberJson(*number);
    }
    const auto* text = std::get_if<std::string>(&value);
    return text == nullptr ? Json{} : Json(utf8Of(*text));
}

void addSide(Json& json, const char* name, const std::optional<ValueKey>& key, const char* content,
             const Value& value) {
    if (key) {
        json[name] = utf8Of(std::string{key->name});
        json[content] = jsonOf(value);
    }
}

Json jsonOf(const Expectation& expectation) {
    const ValueKey& key = expectation.to ? *expectation.to : *expectation.from;
    Json json{{"part", std::string{key.part}}};
    if (key.peak > 0) {
        json["peak"] = key.peak;
    }
    addSide(json, "from", expectation.from, "source", expectation.source);
    addSide(json, "to", expectation.to, "target", expectation.target);
    return json;
}

void addUnexpected(Verdict& verdict, const Expectation& expectation, const Value& found) {
    const bool isNothingExpected = std::holds_alternative<std::monostate>(expectation.target);
    Json json = jsonOf(expectation);
    json["found"] = jsonOf(found);
    verdict.addUnexpected(wordsOf(*expectation.to) + " is " + wordsOf(found) + ", expected " +
                              (isNothingExpected ? "nothing" : wordsOf(expectation.target)),
                          std::move(json));
}

void holdValues(Verdict& verdict, const Expectations& expectations, const Reading& output,
                const Tolerance& tolerance) {
    Entries entries{output.entries};
    std::set<ValueKey> told; // what several values go to is wrong once
    for (const Expectation& each : expectations.values) {
        const Value& found = each.to ? entries.ask(*each.to) : each.target;
        if (!areClose(found, each.target, tolerance)) {
            if (told.insert(*each.to).second) {
                addUnexpected(verdict, each, found);
            }
        } else if (!each.to || (each.rule != nullptr && !isNote(each))) {
            verdict.changes.push_back({.part = std::string{(each.to ? each.to : each.from)->part},
                                       .rule = each.rule,
                                       .expectation = &each});
        }
    }
    for (const Entry& entry : entries.unasked()) {
        addUnexpected(verdict, {.from = {}, .source = {}, .to = entry.key, .target = {}},
                      entry.value);
    }
}

void addSamples(Verdict& verdict, const SignalGap& gap) {
    verdict.addUnexpected("signal: samples that differ: " + std::to_string(gap.count) + " of " +
                              std::to_string(verdict.points) + ", the most sample " +
                              std::to_string(gap.furthest) + ", which is " + numberText(gap.found) +
                              ", expected " + numberText(gap.expected),
                          {{"part", parts::signal},
                           {"count", gap.count},
                           {"sample", gap.furthest},
                           {"target", numberJson(gap.expected)},
                           {"found", numberJson(gap.found)},
                           {"distance", numberJson(gap.distance)}});
}

void holdSignal(Verdict& verdict, const Expectations& expectations, const Reading& output,
                const Tolerance& tolerance) {
    const std::size_t wanted = expectations.signal.size();
    const std::size_t points = output.signal.size();
    verdict.points = std::min(wanted, points);
    if (wanted != points) {
        verdict.addUnexpected("signal: " + quantity(points, "sample") + ", expected " +
                                  quantity(wanted, "sample"),
                              {{"part", parts::signal}, {"target", wanted}, {"found", points}});
    }
    if (const SignalGap gap = gapOf(expectations, output.signal, tolerance); gap.count > 0) {
        addSamples(verdict, gap);
    } else if (expectations.signalChange.rule != nullptr) {
        verdict.changes.push_back({.part = parts::signal,
                                   .rule = expectations.signalChange.rule,
                                   .words = expectations.signalChange.words});
    }
}

/// Parts that no user names go with the texts.
bool isOther(const std::string& part) {
    return part != parts::signal && part != parts::peaks;
}

std::size_t peakCount(const Reading& reading) {
    std::size_t count = 0;
    for (const Entry& entry : reading.entries) {
        count = std::max(count, entry.key.peak);
    }
    return count;
}

} // namespace

std::string Change::text() const {
    return words.empty() && expectation != nullptr ? changeWords(*expectation) : words;
}

Json Change::json() const {
    Json json = expectation == nullptr ? details : jsonOf(*expectation);
    json["part"] = part;
    json["rule"] = rule == nullptr ? Json{} : Json(rule->id);
    json["expected"] = rule != nullptr;
    json["words"] = utf8Of(text());
    return json;
}

void Verdict::addUnexpected(std::string words, Json details) {
    std::string part = details["part"];
    changes.push_back(
        {.part = std::move(part), .words = std::move(words), .details = std::move(details)});
}

std::size_t Verdict::unexpectedCount() const {
    return static_cast<std::size_t>(std::ranges::count(changes, nullptr, &Change::rule));
}

void Verdict::keepOnly(const std::vector<std::string>& wanted) {
    const auto isWanted = [&](const std::string& part) {
        return std::ranges::find(wanted, part) != wanted.end();
    };
    std::erase_if(changes, [&](const Change& change) {
        return !isWanted(isOther(change.part) ? parts::texts : change.part);
    });
    lookedAt = wanted;
}

std::string Verdict::comparedWords() const {
    const auto isLookedAt = [this](const char* part) {
        return std::ranges::find(lookedAt, part) != lookedAt.end();
    };
    const std::string words = joined({isLookedAt(parts::signal) ? quantity(points, "sample") : "",
                                      isLookedAt(parts::peaks) ? quantity(peaks, "peak") : ""},
                                     " and ");
    return words.empty() ? "texts" : words;
}

std::string Verdict::words() const {
    const std::size_t unexpected = unexpectedCount();
    const std::string all = quantity(changes.size(), "difference");
    if (unexpected == 0) {
        return "same data: " + comparedWords() +
               (changes.empty() ? ", no difference"
                                : "; " + all + (changes.size() == 1 ? "" : ", all") +
                                      " expected of " + conversion);
    }
    if (unexpected == changes.size()) {
        return "other data: " + all + (conversion.empty() ? "" : ", unexpected");
    }
    return "other data: " + groupedDigits(static_cast<std::int64_t>(unexpected)) + " of " + all +
           (unexpected == 1 ? " is" : " are") + " unexpected";
}

std::vector<RuleCount> Verdict::countsByRule() const {
    std::vector<RuleCount> counts;
    for (const Change& change : changes) {
        if (change.rule == nullptr) {
            continue;
        }
        const auto known = std::ranges::find(counts, change.rule, &RuleCount::rule);
        if (known == counts.end()) {
            counts.push_back({.rule = change.rule, .count = 1});
        } else {
            ++known->count;
        }
    }
    return counts;
}

void addLayoutProblem(Verdict& verdict, const Reading& output) {
    if (!output.layoutProblem.empty()) {
        verdict.addUnexpected("layout: " + output.layoutProblem,
                              {{"part", parts::layout}, {"found", utf8Of(output.layoutProblem)}});
    }
}

Verdict verdictOf(const Expectations& expected, const Reading& output, const Tolerance& tolerance) {
    Verdict verdict;
    verdict.conversion = expected.kind == FileKind::Andi ? "an ANDI file" : "a pair";
    verdict.peaks = peakCount(output);
    holdSignal(verdict, expected, output, tolerance);
    holdValues(verdict, expected, output, tolerance);
    addLayoutProblem(verdict, output);
    return verdict;
}

} // namespace korlit::host
