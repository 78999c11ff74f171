#include "host/system/whole_file.h"

#include "host/system/temporary_folder.h"
#include "platform/descriptors.h"
#include "platform/file_size_signal.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <span>
#include <streambuf>
#include <system_error>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// A new file, which keeps the system's reason for the first failure: streams lose it.
class NewFile : public std::streambuf {
  public:
    explicit NewFile(const fs::path& file)
        : descriptor{openUninterrupted(file.c_str(), O_WRONLY | O_CREAT | O_EXCL)} {
        keepReason(descriptor >= 0);
        setp(buffer.data(), buffer.data() + buffer.size());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() override { close(); }

    /// Answers what went wrong from first to last.
    std::error_code close() {
        if (descriptor >= 0) {
            flush();
            keepReason(closeDescriptor(descriptor));
            descriptor = noDescriptor;
        }
        return reason;
    }

  protected:
    int_type overflow(int_type character) override {
        if (!flush()) {
            return traits_type::eof();
        }
        return traits_type::eq_int_type(character, traits_type::eof())
                   ? traits_type::not_eof(character)
                   : sputc(traits_type::to_char_type(character));
    }

    int sync() override { return flush() ? 0 : -1; }

  private:
    void keepReason(bool isDone) {
        if (!isDone && !reason) {
            reason = {errno, std::generic_category()};
        }
    }

    bool flush() {
        const std::span<const char> bytes{pbase(), pptr()};
        if (!reason) {
            errno = ENOSPC;
            const std::int64_t written = writeAt(descriptor, std::as_bytes(bytes), place);
            keepReason(written == std::ssize(bytes));
            place += written;
        }
        setp(buffer.data(), buffer.data() + buffer.size());
        return !reason;
    }

    std::array<char, 64L * 1024> buffer{};
    int descriptor;
    std::int64_t place = 0;
    std::error_code reason;
};

} // namespace

void writeWhole(const fs::path& file, fs::perms most,
                const std::function<void(std::ostream&)>& write) {
    const FileSizeSignalHeld held;
    const TemporaryFolder stage{file.has_parent_path() ? file.parent_path() : "."};
    const fs::path written = stage.path() / "whole";
    NewFile buffer{written};
    std::ostream out{&buffer};
    write(out);
    if (const std::error_code error = buffer.close()) {
        throw fs::filesystem_error{"Can't write", file, error};
    }
    fs::permissions(written, narrowedTo(file, most) & fs::status(written).permissions());
    fs::rename(written, file);
}

fs::perms narrowedTo(const fs::path& file, fs::perms permissions) {
    std::error_code ignored;
    const fs::file_status status = fs::status(file, ignored);
    return fs::exists(status) ? permissions & (status.permissions() | fs::perms::owner_read |
                                               fs::perms::owner_write)
                              : permissions;
}

} // namespace korlit::host
