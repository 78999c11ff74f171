// The source of a conversion, with its samples brought to equal distances where that was asked for.
#pragma once

#include "host/data/resampled_file.h"
#include "host/files/plan.h"
#include "host/proof/prospect.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace korlit::host {

/// A resampled file lies in the stage for as long as this lives.
class ResampledSource {
  public:
    /// `intervalMs` is 0 for the usual interval, and nothing where no resampling was asked for.
    /// Throws a runtime_error with words for the user where that can't be done.
    ResampledSource(const Plan& sourcePlan, const std::optional<std::int16_t>& intervalMs,
                    const std::filesystem::path& stage);
    ResampledSource(const ResampledSource&) = delete;
    ResampledSource& operator=(const ResampledSource&) = delete;
    ~ResampledSource();

    /// By which the library converts.
    const Plan& plan() const { return taken; }
    /// What was done, if anything was.
    const std::optional<ResampledFile>& resampling() const { return resampled; }
    /// The library's words with the path of the source.
    std::string withTruePath(std::string words) const;
    Prospect prospect(Wanted wanted) const;

  private:
    std::string source;
    Plan taken;
    std::optional<ResampledFile> resampled;
};

} // namespace korlit::host
