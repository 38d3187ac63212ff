#include "engine/export/pdf/pdf_images.h"

#include "engine/export/paint/bitmap.h"
#include "engine/page/picture_head.h"

namespace velora::engine {
namespace {

std::string picture_entries(int width, int height, const std::string& space)
{
    return "/Type/XObject/Subtype/Image/Width " + std::to_string(width) + "/Height " + std::to_string(height) +
           "/ColorSpace/" + space + "/BitsPerComponent 8";
}

std::string_view view(const std::vector<uint8_t>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

std::optional<PdfImages::Placed> PdfImages::write(const std::string& bytes)
{
    const std::string name = "I" + std::to_string(written_ + 1);
    if (const auto head = picture_head(bytes); head && head->kind == PictureKind::Jpeg) {
        const PdfId id = file_.reserve();
        const char* space = head->components == 1 ? "DeviceGray" : head->components == 4 ? "DeviceCMYK" : "DeviceRGB";
        std::string entries = picture_entries(head->width, head->height, space) + "/Filter/DCTDecode";
        any_of_inks_ |= head->components == 4;
        if (head->components == 4) entries += "/Decode[1 0 1 0 1 0 1 0]";
        file_.raw_stream(id, entries, bytes);
        ++written_;
        return Placed{name, id, head->width, head->height};
    }
    const auto bitmap = read_bitmap(bytes);
    if (!bitmap) return std::nullopt;
    std::string entries = picture_entries(bitmap->width, bitmap->height, "DeviceRGB");
    if (!bitmap->alphas.empty()) {
        const PdfId mask = file_.reserve();
        file_.stream(mask, picture_entries(bitmap->width, bitmap->height, "DeviceGray"), view(bitmap->alphas));
        entries += "/SMask " + pdf_reference(mask);
    }
    const PdfId id = file_.reserve();
    file_.stream(id, entries, view(bitmap->colors));
    ++written_;
    return Placed{name, id, bitmap->width, bitmap->height};
}

const PdfImages::Placed* PdfImages::image(const std::shared_ptr<const ImageData>& data)
{
    auto known = images_.find(data);
    if (known == images_.end()) {
        known = images_.emplace(data, write(data->bytes)).first;
        const bool is_told = image_media_type(data->bytes).empty();  // when the page was filled
        if (!known->second && !is_told && warn_)
            warn_("The picture '" + data->source + "' cannot be read; it is left out.");
    }
    return known->second ? &*known->second : nullptr;
}

std::string PdfImages::entries() const
{
    std::map<PdfId, std::string> in_order;  // not by address, which differs from run to run
    for (const auto& [data, placed] : images_) {
        if (placed) in_order.emplace(placed->id, "/" + placed->name + " " + pdf_reference(placed->id));
    }
    std::string text;
    for (const auto& [id, entry] : in_order) text += entry;
    return text;
}

}  // namespace velora::engine
