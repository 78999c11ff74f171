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

/// Indexed by the type code; null for what is no number.
constexpr std::array<double (*)(const void*, std::size_t), andiTypes.size()> readers{
    nullptr,
    elementAt<std::int8_t>,
    nullptr,
    elementAt<std::int16_t>,
    elementAt<std::int32_t>,
    elementAt<float>,
    elementAt<double>,
};

} // namespace

NumberView::NumberView(AndiType elementType, const void* elements, std::size_t elementCount)
    : type{elementType}, data{elements}, numberAt{
                                             readers.at(static_cast<std::size_t>(elementType))} {
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
