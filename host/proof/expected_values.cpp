#include "host/proof/expected_values.h"

#include "host/proof/change_rules.h"
#include "host/text/numbers.h"
#include "host/text/utf8.h"

namespace korlit::host {

std::string wordsOf(const Value& value) {
    constexpr std::size_t longest = 60;
    if (const auto* number = std::get_if<double>(&value)) {
        return numberText(*number);
    }
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) {
        return "nothing";
    }
    return text->size() <= longest ? '"' + *text + '"'
                                   : '"' + std::string{startOfText(*text, longest)} + "\"...";
}

std::string nameOf(const ValueKey& key) {
    std::string name{key.name};
    return key.peak == 0 ? name : name + " of peak " + std::to_string(key.peak);
}

namespace {

/// Of a value that goes nowhere.
std::string leftOutWords(const Expectation& expectation) {
    const std::string name = nameOf(*expectation.from);
    return expectation.rule == &changes::noPlaceInAndi
               ? "an ANDI file has no place for " + name + ", which is " +
                     wordsOf(expectation.source)
               : name + " needs no place";
}

} // namespace

std::string changeWords(const Expectation& expectation) {
    if (!expectation.words.empty() || expectation.rule == nullptr) {
        return expectation.words;
    }
    if (!expectation.to) {
        return leftOutWords(expectation);
    }
    return expectation.from ? nameOf(*expectation.from) + ' ' + wordsOf(expectation.source) +
                                  " becomes " + wordsOf(expectation.target)
                            : nameOf(*expectation.to) + " is " + wordsOf(expectation.target);
}

ExpectedValues::ExpectedValues(std::span<const Entry> sourceValues, Wanted wantedValues)
    : entries{sourceValues}, wanted{wantedValues}, taken(sourceValues.size()) {
    expected.values.reserve(wanted == Wanted::All ? 2 * entries.size() : 0);
}

void ExpectedValues::add(const Entry* source, std::optional<ValueKey> to, Value target,
                         const ChangeRule* rule, std::string words) {
    if (source != nullptr) {
        taken[indexOf(*source)] = true;
    }
    if (!isWanted(rule)) {
        return;
    }
    // In its place from the start: there are hundreds of a file.
    Expectation& expectation = expected.values.emplace_back();
    if (source != nullptr) {
        expectation.from = source->key;
        expectation.source = source->value;
    }
    expectation.to = std::move(to);
    expectation.target = std::move(target);
    expectation.rule = rule;
    expectation.words = std::move(words);
}

void ExpectedValues::put(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
                         std::string words) {
    const bool isChanged = source != nullptr && !areSame(source->value, target);
    add(source, std::move(to), std::move(target), isChanged ? &rule : nullptr,
        isChanged ? std::move(words) : "");
}

void ExpectedValues::note(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
                          std::string words) {
    add(source, std::move(to), std::move(target), &rule, std::move(words));
}

void ExpectedValues::set(ValueKey to, Value target, const ChangeRule& rule) {
    add(nullptr, std::move(to), std::move(target), &rule, "");
}

void ExpectedValues::leave(const Entry& source, const ChangeRule& rule, std::string words) {
    add(&source, std::nullopt, {}, &rule, std::move(words));
}

} // namespace korlit::host
