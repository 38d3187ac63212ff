#pragma once

#include <map>
#include <memory>
#include <unordered_map>

#include "engine/export/paint/canvas.h"

struct _cairo;

namespace velora::engine {

/// What cairo canvases share and keep from page to page: faces and pictures in cairo's form.
class CairoCache {
public:
    CairoCache();
    ~CairoCache();
    CairoCache(const CairoCache&) = delete;
    CairoCache& operator=(const CairoCache&) = delete;

private:
    friend class CairoCanvas;
    struct State;
    std::unique_ptr<State> state_;
};

/// Paints on a cairo context: a picture, a window, a printer's surface. One unit of the context is a point.
class CairoCanvas : public Canvas {
public:
    CairoCanvas(_cairo* context, CairoCache& cache) : context_(context), cache_(cache) {}

    void save() override;
    void restore() override;
    void transform(const Matrix& matrix) override;
    void clip(const Area& area) override;
    void fill(const Path& path, Color color) override;
    void fill(const Area& area, Color color) override;
    void stroke(const Path& path, const Stroke& stroke) override;
    void glyphs(const GlyphRun& run) override;
    std::optional<std::pair<int, int>> image_size(const std::shared_ptr<const ImageData>& image) override;
    void image(const std::shared_ptr<const ImageData>& image, const Area& area) override;

private:
    void set_color(Color color);
    void trace(const Path& path);

    _cairo* context_;
    CairoCache& cache_;
};

}  // namespace velora::engine
