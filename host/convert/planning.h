// Which files a batch converts, and to what.
#pragma once

#include "host/convert/candidates.h"
#include "host/convert/job.h"
#include "host/convert/work_options.h"
#include "host/files/side_files.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace korlit::host {

/// The jobs of a batch. Each is made when it is asked for: there may be very many.
class WorkList {
  public:
    WorkList(Listing candidatesToConvert, const WorkOptions& workOptions);

    std::size_t size() const { return candidates.files.size(); }
    Job job(std::size_t number) const;

    /// The folders in which jobs put their files.
    std::set<std::filesystem::path> targetFolders() const;

    /// Files and folders in folders that are not converted, with the reason.
    const std::vector<std::string>& ignored() const { return candidates.ignored; }
    /// How many files in folders are of the kind asked for already.
    std::size_t reachedCount() const { return candidates.passedCount; }

    void setProblem(std::size_t number, const std::string& words);
    /// What may use records of all the sources: whoever may use each of them.
    std::filesystem::perms recordPermissions() const { return permissions; }
    void noteSourcePermissions();
    /// Keeps one part of them, chosen by each path's own hash.
    void takeShard();

  private:
    std::filesystem::path targetFolderOf(const ListedFile& candidate) const;

    Listing candidates;
    const WorkOptions& options; ///< must outlive the list
    std::filesystem::perms permissions = std::filesystem::perms::all;
};

/// Lists the jobs, sorted within each folder. A part of the work is chosen by each path's own hash,
/// so that the parts stay the same whatever is written meanwhile.
///
/// No direction is guessed: what folders hold is converted one way only. Files that were named go
/// by their content. A target that is a source of the batch, by whatever name or link, is a problem
/// of both jobs, and one that another job makes too is a problem of the later.
///
/// None of the sources and targets of the whole work may be one of `sides`.
///
/// Throws WrongUse where that is so, where folders hold files for both directions and none was
/// asked for, where `output` doesn't fit what is to be converted, and where a list of files can't
/// be read.
WorkList listWork(const WorkOptions& options, const SideFiles& sides);

} // namespace korlit::host
