// What a batch leaves for later: the lines of a manifest, and a page.
#pragma once

#include "host/convert/job.h"
#include "host/files/side_files.h"
#include "host/manifest/manifest.h"
#include "host/system/line_log.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

struct RecordingOptions {
    std::filesystem::path manifest; ///< empty for none
    std::filesystem::path page;     ///< empty for none
    std::string version;
    std::vector<std::string> arguments;
    std::filesystem::perms permissions = std::filesystem::perms::all; ///< of new files at most

    bool isAsked() const { return !manifest.empty() || !page.empty(); }
};

/// The manifest and the page. Throws WrongUse for one that may not be written.
SideFiles sideFilesOf(const RecordingOptions& options);

/// Looks at a conversion from its start to its end, in the worker.
class Witness {
  public:
    /// Takes the digests of the sources, before anything is made of them.
    void begin(const Plan& plan);

    /// Takes the digests of what is staged for the targets, and what the data are. Throws a
    /// runtime_error where a source isn't any more what it was when this began.
    void end(const Plan& plan, const std::vector<StagedFile>& targets,
             const std::filesystem::path& stage);

    /// The line of the manifest.
    std::string line(const Job& job, const Outcome& outcome, const std::string& batch) const;

  private:
    FileRecord record;
};

/// Takes the records, in the process that began the batch.
class Recording {
  public:
    /// Opens the manifest and writes a page without files, so that what can't be written is known
    /// before anything is converted. Throws WrongUse then.
    Recording(RecordingOptions recordingOptions, std::string batchName, std::size_t fileCount);

    void add(const Job& job, const Outcome& outcome);

    /// Writes the page.
    void end();

    /// Why something couldn't be recorded, from when on nothing more is; empty where all was.
    const std::string& problem() const { return problemText; }
    const std::string& batchName() const { return batch; }
    bool isAsked() const { return options.isAsked(); }

  private:
    void write(const std::function<void()>& call);

    RecordingOptions options;
    std::string batch;
    std::string problemText;
    std::optional<LineLog> log;
    Manifest recorded; ///< for the page
};

} // namespace korlit::host
