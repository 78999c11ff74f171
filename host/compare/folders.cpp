#include "host/compare/folders.h"

#include "host/compare/judgement_text.h"
#include "host/compare/pairing.h"
#include "host/system/interrupts.h"
#include "host/system/processes.h"
#include "host/system/workers.h"
#include "host/text/numbers.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iostream>
#include <limits>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr int allSame = 0;
constexpr int notAllSame = 1;
constexpr int nothingToCompare = 2;

enum class Outcome : std::uint8_t { Same, Other, OnlyInA, OnlyInB, NotCompared };
constexpr std::array outcomeWords{"the same", "other", "only in A", "only in B", "not compared"};

const char* wordsOf(Outcome outcome) {
    return outcomeWords[static_cast<std::size_t>(outcome)];
}

struct Answer {
    Outcome outcome = Outcome::NotCompared;
    std::string text; ///< lines
};

std::string nameOf(const FilePair& pair) {
    const std::string a = pair.a == nullptr ? "" : printable(pair.a->place.string());
    const std::string b = pair.b == nullptr ? "" : printable(pair.b->place.string());
    const std::string name = a == b ? a : joined({a, b}, ", ");
    const bool isLone = a.empty() || b.empty();
    return isLone && pair.channel > 0 ? name + ": channel " + std::to_string(pair.channel) : name;
}

/// A pair of which there is no more to say than that.
Answer answerWithout(const FilePair& pair, Outcome outcome, const std::string& reason,
                     const CompareOptions& options) {
    if (!options.json) {
        return {.outcome = outcome,
                .text = nameOf(pair) + ": " + joined({wordsOf(outcome), printable(reason)}, ": ") +
                        '\n'};
    }
    const auto path = [](const PlacedFile* file) {
        return file == nullptr ? Json{} : Json(utf8Of(file->path));
    };
    return {.outcome = outcome,
            .text = jsonLine({{"a", path(pair.a)},
                              {"b", path(pair.b)},
                              {"verdict", wordsOf(outcome)},
                              {"words", utf8Of(reason.empty() ? wordsOf(outcome) : reason)},
                              {"channel", pair.channel > 0 ? Json(pair.channel) : Json{}}})};
}

std::string linesOf(const FilePair& pair, const Judgement& judgement, bool isVerbose) {
    constexpr std::size_t shortList = 10;
    const std::string indent = "  ";
    return nameOf(pair) + ": " + headlineOf(judgement) + '\n' +
           unexpectedLines(judgement.verdict, indent,
                           isVerbose ? std::numeric_limits<std::size_t>::max() : shortList) +
           (isVerbose ? expectedLines(judgement.verdict, indent, true) : "");
}

Side sideOf(const PlacedFile& file, int channel) {
    if (!file.problem.empty()) {
        throw std::runtime_error{file.problem};
    }
    return {.file = file.path,
            .kind = file.kind,
            .channel = channel,
            .readings = readingsOf(file.path, file.kind)};
}

Answer answerOf(const FilePair& pair, const CompareOptions& options) {
    if (pair.a == nullptr || pair.b == nullptr) {
        return answerWithout(pair, pair.a == nullptr ? Outcome::OnlyInB : Outcome::OnlyInA, "",
                             options);
    }
    try {
        const int channel = pair.channel > 0 ? pair.channel : options.channel;
        const Judgement judgement =
            judge(sideOf(*pair.a, channel), sideOf(*pair.b, channel), options.comparison);
        return {.outcome = isWell(judgement, options) ? Outcome::Same : Outcome::Other,
                .text = options.json ? jsonLine(jsonOf(pair.a->path, pair.b->path, judgement))
                                     : linesOf(pair, judgement, options.isVerbose)};
    } catch (const std::exception& error) {
        return answerWithout(pair, Outcome::NotCompared, error.what(), options);
    }
}

std::string packed(const Answer& answer) {
    return static_cast<char>('0' + static_cast<int>(answer.outcome)) + answer.text;
}

Answer unpacked(const std::string& text) {
    return {.outcome = static_cast<Outcome>(text.front() - '0'), .text = text.substr(1)};
}

/// Prints the answers in the order of their pairs, whenever they come, and counts them.
class Answers {
  public:
    explicit Answers(bool isQuietMeant) : isQuiet{isQuietMeant} {}

    void add(std::size_t number, Answer answer) {
        ++counts[static_cast<std::size_t>(answer.outcome)];
        waiting.emplace(number, std::move(answer.text));
        for (; !waiting.empty() && waiting.begin()->first == next; ++next) {
            std::cout << (isQuiet ? "" : waiting.begin()->second);
            waiting.erase(waiting.begin());
        }
        finishOutput();
    }

    void tellCounts() const {
        std::vector<std::string> parts;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            if (counts[i] > 0) {
                parts.push_back(groupedDigits(counts[i]) + ' ' + outcomeWords[i]);
            }
        }
        std::cerr << joined(parts, ", ") << '\n';
    }

    bool areAllSame() const {
        return static_cast<std::size_t>(counts.front()) == next && waiting.empty();
    }

  private:
    std::array<std::int64_t, outcomeWords.size()> counts{};
    std::map<std::size_t, std::string> waiting;
    std::size_t next = 0;
    bool isQuiet;
};

std::vector<PlacedFile> filesOf(const std::string& root, bool isRecursive) {
    if (std::error_code ignored; !fs::exists(root, ignored)) {
        throw std::runtime_error{"There is no such file or folder"};
    }
    Inputs inputs;
    inputs.paths = {root};
    inputs.isRecursive = isRecursive;
    return placedFiles(root, listFiles(inputs, {}));
}

/// What a file has beside it in its folder is no matter when the file alone is compared.
void keepWhatIsAskedFor(std::vector<FilePair>& pairs, const CompareOptions& options) {
    std::error_code ignored;
    const bool isAFile = !fs::is_directory(options.a, ignored);
    const bool isBFile = !fs::is_directory(options.b, ignored);
    std::erase_if(pairs, [&](const FilePair& pair) {
        return (pair.a == nullptr && isAFile) || (pair.b == nullptr && isBFile) ||
               (options.channel > 0 && pair.channel > 0 && pair.channel != options.channel);
    });
}

void compareInWorkers(const std::vector<FilePair>& pairs, const CompareOptions& options,
                      Answers& answers) {
    runInWorkers(processorCount(), pairs.size(),
                 {.run = [&](std::size_t task) { return packed(answerOf(pairs[task], options)); },
                  .end = [] {},
                  .finished =
                      [&](const TaskResult& result) {
                          answers.add(result.task,
                                      result.isAnswered
                                          ? unpacked(result.text)
                                          : answerWithout(pairs[result.task], Outcome::NotCompared,
                                                          "its process " + result.text, options));
                      },
                  .tick = [] {},
                  .mayGoOn = [] { return !isInterrupted(); }});
}

} // namespace

int compareFolders(const CompareOptions& options) {
    std::array<std::vector<PlacedFile>, 2> sides;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        const std::string& root = i == 0 ? options.a : options.b;
        try {
            sides[i] = filesOf(root, options.isRecursive);
        } catch (const std::runtime_error& error) {
            printFailure(root, error.what());
            return nothingToCompare;
        }
    }
    std::vector<FilePair> pairs = pairsOf(sides.front(), sides.back());
    keepWhatIsAskedFor(pairs, options);
    if (pairs.empty()) {
        std::cerr << "korlit: nothing to compare\n";
        return nothingToCompare;
    }
    Answers answers{options.quiet};
    watchInterrupts();
    compareInWorkers(pairs, options, answers);
    if (isInterrupted()) {
        return interruptedStatus;
    }
    if (!options.quiet) {
        answers.tellCounts();
    }
    return answers.areAllSame() ? allSame : notAllSame;
}

} // namespace korlit::host
