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

void ExpectedValues::put(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
                         std::string words) {
    Expectation expectation{.to = std::move(to), .target = std::move(target)};
    if (source != nullptr) {
        expectation.from = source->key;
        expectation.source = source->value;
        taken.insert(source->key);
        if (!areSame(expectation.source, expectation.target)) {
            expectation.rule = &rule;
            expectation.words = !words.empty()
                                    ? std::move(words)
                                    : nameOf(source->key) + ' ' + wordsOf(source->value) +
                                          " becomes " + wordsOf(expectation.target);
        }
    }
    expected.values.push_back(std::move(expectation));
}

void ExpectedValues::remark(const ChangeRule& rule, std::string words) {
    expected.values.back().rule = &rule;
    expected.values.back().words = std::move(words);
}

void ExpectedValues::set(ValueKey to, Value target, const ChangeRule& rule) {
    std::string words = nameOf(to) + " is " + wordsOf(target);
    expected.values.push_back({.to = std::move(to),
                               .target = std::move(target),
                               .rule = &rule,
                               .words = std::move(words)});
}

void ExpectedValues::leave(const Entry& source, const ChangeRule& rule, std::string words) {
    taken.insert(source.key);
    expected.values.push_back(
        {.from = source.key, .source = source.value, .rule = &rule, .words = std::move(words)});
}

} // namespace korlit::host
