#pragma once
// The texts of a record, one behind the other in one allocation: a long list of records is walked
// from one end to the other, and what it costs then is the memory that goes by.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kalvrooms {

template <std::size_t Count>
class FieldTexts {
  public:
    // Number of a text from 0 to Count - 1. The view holds until the next change.
    std::wstring_view Get(std::size_t number) const {
        const std::size_t start = startOf(number);
        return {texts_.data() + start, ends_[number] - start};
    }
    void Set(std::size_t number, std::wstring_view text) {
        const std::size_t start = startOf(number);
        const std::size_t length = ends_[number] - start;
        texts_.replace(start, length, text);
        for (std::size_t i = number; i < Count; ++i) {
            ends_[i] += text.size() - length;
        }
    }

  private:
    std::size_t startOf(std::size_t number) const { return number == 0 ? 0 : ends_[number - 1]; }

    std::wstring texts_;
    std::array<std::size_t, Count> ends_{};
};

} // namespace kalvrooms
