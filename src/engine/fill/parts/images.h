#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "engine/page/page.h"

namespace velora::engine {

/// The pictures of a run, each read once. A relative path is looked up in the definition's folder and cannot leave
/// it; only an absolute path reads elsewhere.
class Images {
public:
    explicit Images(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// The picture of a file name, a file: address or a data: address.
    /// @param reason  why there is none, or why it will not be shown; told once for each name
    std::shared_ptr<const ImageData> find(const std::string& name, std::string& reason);

private:
    [[nodiscard]] std::shared_ptr<const ImageData> read(const std::string& name, std::string& reason) const;

    std::filesystem::path folder_;
    std::map<std::string, std::shared_ptr<const ImageData>> known_;
};

}  // namespace velora::engine
