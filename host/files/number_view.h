// Numbers of any type, where they lie.
#pragma once

#include "andi/andi_file.h"
#include "host/system/open_file.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace korlit::host {

/// Floats that stay in their file.
struct FloatsInFile {
    const OpenFile* file = nullptr;
    std::int64_t place = 0; ///< of the first
};

/// A view of the elements of a variable, each as a double. The signal of a long run is most of the
/// memory that a command takes: nobody makes doubles of it as a whole.
class NumberView {
  public:
    NumberView() = default;
    /// The elements of a type; text is no numbers.
    NumberView(AndiType elementType, const void* elements, std::size_t elementCount);
    /// Reads them whenever they are looked at. Throws a runtime_error then where that can't be.
    NumberView(const FloatsInFile& floats, std::size_t floatCount);

    std::size_t size() const { return count; }
    bool empty() const { return count == 0; }
    double operator[](std::size_t index) const { return numberAt(data, start + index); }
    double front() const { return (*this)[0]; }

    /// The elements themselves where they are floats at their natural place; none of any others.
    std::span<const float> floats() const;
    /// Copies as many as there is room for, from `first` on; there must be so many.
    void copy(std::size_t first, std::span<double> numbers) const {
        copyFrom(data, start + first, numbers);
    }

    /// `length` of them from `first` on.
    NumberView part(std::size_t first, std::size_t length) const;

  private:
    AndiType type = AndiType::None;
    const void* data = nullptr;
    std::size_t start = 0;
    std::size_t count = 0;
    double (*numberAt)(const void* elements, std::size_t index) = nullptr;
    void (*copyFrom)(const void* elements, std::size_t first, std::span<double> numbers) = nullptr;
};

} // namespace korlit::host
