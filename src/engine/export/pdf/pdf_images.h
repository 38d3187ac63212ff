#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/export/pdf/pdf_file.h"
#include "engine/page/page.h"

namespace velora::engine {

/// The pictures of one file; each is written once, when it is first shown.
class PdfImages {
public:
    using Warn = std::function<void(const std::string&)>;

    /// @param warn  told once of each picture that cannot be read; may be empty
    PdfImages(PdfFile& file, Warn warn) : file_(file), warn_(std::move(warn)) {}

    struct Placed {
        std::string name;  ///< in the resources
        PdfId id;
        int width, height;
    };
    /// Null for a picture that cannot be read.
    const Placed* image(const std::shared_ptr<const ImageData>& data);
    /// Whether a picture has the colours of printing inks.
    [[nodiscard]] bool any_of_inks() const { return any_of_inks_; }
    /// The entries for the resources.
    [[nodiscard]] std::string entries() const;

private:
    std::optional<Placed> write(const std::string& bytes);

    PdfFile& file_;
    Warn warn_;
    std::map<std::shared_ptr<const ImageData>, std::optional<Placed>> images_;  // keeps them, so none is taken twice
    int written_ = 0;
    bool any_of_inks_ = false;
};

}  // namespace velora::engine
