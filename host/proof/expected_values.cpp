#include "host/proof/expected_values.h"

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
    return key.peak == 0 ? key.name : key.name + " of peak " + std::to_string(key.peak);
}

std::string changeWords(const Expectation& expectation) {
    if (!expectation.words.empty() || expectation.rule == nullptr) {
        return expectation.words;
    }
    return expectation.from ? nameOf(*expectation.from) + ' ' + wordsOf(expectation.source) +
                                  " becomes " + wordsOf(expectation.target)
                            : nameOf(*expectation.to) + " is " + wordsOf(expectation.target);
}

ExpectedValues::ExpectedValues(std::span<const Entry> sourceValues)
    : entries{sourceValues}, taken(sourceValues.size()) {
    expected.values.reserve(2 * entries.size());
}

Expectation& ExpectedValues::add(const Entry* source, const ChangeRule* rule, std::string words) {
    // In its place from the start: there are hundreds of a file.
    Expectation& expectation = expected.values.emplace_back();
    if (source != nullptr) {
        expectation.from = source->key;
        expectation.source = source->value;
        taken[indexOf(*source)] = true;
    }
    expectation.rule = rule;
    expectation.words = std::move(words);
    return expectation;
}

void ExpectedValues::put(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
                         std::string words) {
    const bool isChanged = source != nullptr && !areSame(source->value, target);
    Expectation& expectation =
        add(source, isChanged ? &rule : nullptr, isChanged ? std::move(words) : "");
    expectation.to = std::move(to);
    expectation.target = std::move(target);
}

void ExpectedValues::remark(const ChangeRule& rule, std::string words) {
    expected.values.back().rule = &rule;
    expected.values.back().words = std::move(words);
}

void ExpectedValues::set(ValueKey to, Value target, const ChangeRule& rule) {
    Expectation& expectation = add(nullptr, &rule, "");
    expectation.to = std::move(to);
    expectation.target = std::move(target);
}

void ExpectedValues::leave(const Entry& source, const ChangeRule& rule, std::string words) {
    add(&source, &rule, std::move(words));
}

} // namespace korlit::host
