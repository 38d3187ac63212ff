#pragma once

#include <memory>
#include <string>

#include "engine/export/canvas.h"

namespace velora {

/// Paints a page as a picture.
class PictureCanvas : public engine::Canvas {
public:
    /// @param width, height  of the page in points
    PictureCanvas(double width, double height, double pixels_per_inch);
    ~PictureCanvas() override;
    PictureCanvas(const PictureCanvas&) = delete;
    PictureCanvas& operator=(const PictureCanvas&) = delete;

    void save() override;
    void restore() override;
    void transform(const engine::Matrix& matrix) override;
    void clip(const engine::Area& area) override;
    void fill(const engine::Path& path, engine::Color color) override;
    void fill(const engine::Area& area, engine::Color color) override;
    void stroke(const engine::Path& path, const engine::Stroke& stroke) override;
    void glyphs(const engine::GlyphRun& run) override;
    std::optional<std::pair<int, int>> image_size(const std::shared_ptr<const engine::ImageData>& image) override;
    void image(const std::shared_ptr<const engine::ImageData>& image, const engine::Area& area) override;

    [[nodiscard]] std::string png() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velora
