#include "host/files/number_view.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace korlit::host {

namespace {

/// The elements may lie anywhere.
template <typename Element>
double elementAt(const void* elements, std::size_t index) {
    Element element{};
    std::memcpy(&element, static_cast<const char*>(elements) + index * sizeof element,
                sizeof element);
    return static_cast<double>(element);
}

template <typename Element>
void copyElements(const void* elements, std::size_t first, std::span<double> numbers) {
    for (double& number : numbers) {
        number = elementAt<Element>(elements, first++);
    }
}

void copyFromFile(const void* floatsInFile, std::size_t first, std::span<double> numbers) {
    const auto& [file, place] = *static_cast<const FloatsInFile*>(floatsInFile);
    std::array<float, 4096> room{};
    while (!numbers.empty()) {
        const auto part = std::span{room}.first(std::min(room.size(), numbers.size()));
        const auto bytes = std::as_writable_bytes(part);
        if (file->read(place + static_cast<std::int64_t>(first * sizeof(float)), bytes) !=
            std::ssize(bytes)) {
            throw std::runtime_error{"The file has become shorter while it was read"};
        }
        std::ranges::copy(part, numbers.begin());
        numbers = numbers.subspan(part.size());
        first += part.size();
    }
}

double numberInFile(const void* floatsInFile, std::size_t index) {
    double number = 0;
    copyFromFile(floatsInFile, index, std::span{&number, 1});
    return number;
}

struct Readers {
    double (*numberAt)(const void* elements, std::size_t index);
    void (*copyFrom)(const void* elements, std::size_t first, std::span<double> numbers);
};

template <typename Element>
constexpr Readers readersOf{.numberAt = elementAt<Element>, .copyFrom = copyElements<Element>};

/// Indexed by the type code; null for what is no number.
constexpr std::array<Readers, andiTypes.size()> readers{{
    {},
    readersOf<std::int8_t>,
    {},
    readersOf<std::int16_t>,
    readersOf<std::int32_t>,
    readersOf<float>,
    readersOf<double>,
}};

} // namespace

NumberView::NumberView(AndiType elementType, const void* elements, std::size_t elementCount)
    : type{elementType}, data{elements} {
    const Readers& ofType = readers.at(static_cast<std::size_t>(elementType));
    numberAt = ofType.numberAt;
    copyFrom = ofType.copyFrom;
    count = numberAt == nullptr || elements == nullptr ? 0 : elementCount;
}

NumberView::NumberView(const FloatsInFile& floats, std::size_t floatCount)
    : data{&floats}, count{floatCount}, numberAt{numberInFile}, copyFrom{copyFromFile} {}

std::span<const float> NumberView::floats() const {
    const bool isAligned = reinterpret_cast<std::uintptr_t>(data) % alignof(float) == 0;
    return type == AndiType::Float && isAligned
               ? std::span{static_cast<const float*>(data) + start, count}
               : std::span<const float>{};
}

NumberView NumberView::part(std::size_t first, std::size_t length) const {
    NumberView view{*this};
    view.start += first;
    view.count = length;
    return view;
}

} // namespace korlit::host
