#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/page/page.h"

namespace velora::engine {

/// The pictures of a run, each once; elements in bytes name them by number.
class PictureNumbers {
public:
    using Picture = std::shared_ptr<const ImageData>;
    uint32_t of(const Picture& picture);
    [[nodiscard]] const Picture& at(uint32_t number) const { return pictures_.at(number); }

private:
    std::vector<Picture> pictures_{nullptr};
    std::unordered_map<const ImageData*, uint32_t> numbers_;
};

/// Appends the element with all that it has. A style is told by its address: the bytes are good as long as the sheet.
void put_element(std::string& bytes, const Element& element, PictureNumbers& pictures);
/// The element at the front of the bytes, which it takes off. @throws Fault when they end too early
Element take_element(std::string_view& bytes, const PictureNumbers& pictures);

}  // namespace velora::engine
