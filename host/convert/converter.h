// What a worker does: one conversion after the other, each in its work folder and from there to its
// place.
#pragma once

#include "host/convert/job.h"
#include "host/convert/recording.h"
#include "host/system/work_folder.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace korlit::host {

struct ConverterOptions {
    Existing existing = Existing::Refuse;
    bool isCutAllowed = false; ///< converts runs that lack samples or channels
    bool isVerified = false;   ///< holds what was written against its source
    /// To which interval samples that aren't equidistant are brought; 0 for the usual one.
    std::optional<std::int16_t> resampleMs{};
    std::optional<LossText> losses = LossText::Words; ///< none for nobody
    bool isSynced = false;                            ///< has the disk hold what was written
    bool isRecorded = false;                          ///< makes the lines of a manifest
    std::string batch{}; ///< tells this batch's deliveries from any other's
};

class Converter {
  public:
    explicit Converter(ConverterOptions converterOptions) : options{std::move(converterOptions)} {}

    /// Does a job. Its targets come to their place all or none. `number` is that of the job.
    Outcome perform(const Job& job, std::size_t number);

    /// Removes the work folder.
    void end() { work.reset(); }

  private:
    void decideAndConvert(const Job& job, std::size_t number, Outcome& outcome, Witness& witness);
    void convert(const Job& job, std::size_t number, const Decision& decision, Outcome& outcome,
                 Witness& witness);
    void put(const Decision& decision, const Plan& plan, const std::string& record);
    void prepareWorkFolderIn(const std::filesystem::path& folder);

    ConverterOptions options;
    std::filesystem::path workParent;
    std::optional<WorkFolder> work; ///< kept for as long as jobs go to the same folder
    bool isWorkEmpty = false;
};

/// What is known of jobs whose processes were killed, by their numbers.
using SettledOutcomes = std::map<std::size_t, Outcome>;

/// Ends what killed processes have begun in a folder, and removes what they left. Adds the outcomes
/// of this batch's jobs of which all files are in their place now.
void settleFolder(const std::filesystem::path& folder, const std::string& batch,
                  SettledOutcomes& settled);

} // namespace korlit::host
