#include "host/files/number_view.h"

#include <array>
#include <cstdint>
#include <cstring>

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

std::span<const float> NumberView::floats() const {
    const bool isAligned = reinterpret_cast<std::uintptr_t>(data) % alignof(float) == 0;
    return type == AndiType::Float && isAligned ? std::span{static_cast<const float*>(data), count}
                                                : std::span<const float>{};
}

NumberView NumberView::part(std::size_t first, std::size_t length) const {
    const auto size = static_cast<std::size_t>(elementSize(type));
    return {type, static_cast<const char*>(data) + first * size, length};
}

} // namespace korlit::host
