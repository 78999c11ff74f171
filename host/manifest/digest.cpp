#include "host/manifest/digest.h"

#include "platform/descriptors.h"

#include <gcrypt.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <span>
#include <vector>

namespace korlit::host {

namespace {

using Bytes = std::array<std::uint8_t, 32>;

/// The library wants to be told once that nothing secret is hashed.
void prepareLibrary() {
    [[maybe_unused]] static const bool isPrepared = [] {
        gcry_check_version(nullptr);
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
}

class Hash {
  public:
    Hash() {
        prepareLibrary();
        if (gcry_md_open(&handle, GCRY_MD_SHA256, 0) != 0) {
            throw std::bad_alloc{};
        }
    }
    Hash(const Hash&) = delete;
    Hash& operator=(const Hash&) = delete;
    ~Hash() { gcry_md_close(handle); }

    void add(const void* bytes, std::size_t size) { gcry_md_write(handle, bytes, size); }
    Bytes end() {
        Bytes digest{};
        const std::uint8_t* read = gcry_md_read(handle, GCRY_MD_SHA256);
        std::copy_n(read, digest.size(), digest.begin());
        return digest;
    }

  private:
    gcry_md_hd_t handle = nullptr;
};

class RegularFile {
  public:
    explicit RegularFile(const char* path) : descriptor{openRegularFile(path)} {}
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile() {
        if (isOpen()) {
            closeDescriptor(descriptor);
        }
    }

    bool isOpen() const { return descriptor != noDescriptor; }
    Transfer read(std::span<std::byte> part, std::int64_t place) const {
        return readAt(descriptor, part, std::ssize(part), place);
    }

  private:
    int descriptor;
};

std::string hexadecimal(const Bytes& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += {digits[byte / digits.size()], digits[byte % digits.size()]};
    }
    return text;
}

} // namespace

std::optional<FileDigest> digestOf(const std::filesystem::path& file) {
    constexpr std::size_t partSize = 256UL * 1024;
    const RegularFile source{file.c_str()};
    if (!source.isOpen()) {
        return std::nullopt;
    }
    Hash hash;
    FileDigest digest;
    std::vector<std::byte> part(partSize);
    while (true) {
        const auto [length, hasFailed] = source.read(part, digest.size);
        if (hasFailed) {
            return std::nullopt;
        }
        hash.add(part.data(), static_cast<std::size_t>(length));
        digest.size += length;
        if (length < std::ssize(part)) {
            break;
        }
    }
    digest.sha256 = hexadecimal(hash.end());
    return digest;
}

Bytes sha256Of(std::string_view text) {
    Hash hash;
    hash.add(text.data(), text.size());
    return hash.end();
}

} // namespace korlit::host
