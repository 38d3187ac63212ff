#include "engine/text/system_fonts.h"

#include <fontconfig/fontconfig.h>

#include "values/text.h"

namespace velora::engine {
namespace {

struct DropPattern {
    void operator()(FcPattern* pattern) const noexcept { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DropPattern>;

struct DropConfig {
    void operator()(FcConfig* config) const noexcept { FcConfigDestroy(config); }
};

void add_faces(FcPattern* pattern, bool bold, bool italic)
{
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcPatternAddBool(pattern, FC_COLOR, FcFalse);
}

bool has_family(FcPattern* pattern, const std::string& family)
{
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        if (same_name(reinterpret_cast<const char*>(name), family)) return true;
    }
    return false;
}

bool has_character(FcPattern* pattern, char32_t character)
{
    FcCharSet* set = nullptr;
    return FcPatternGetCharSet(pattern, FC_CHARSET, 0, &set) == FcResultMatch &&
           FcCharSetHasChar(set, static_cast<FcChar32>(character)) != FcFalse;
}

std::optional<SystemFonts::Found> found_in(FcPattern* pattern)
{
    FcChar8* file = nullptr;
    FcChar8* family = nullptr;
    int index = 0;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch) return std::nullopt;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
    FcPatternGetString(pattern, FC_FAMILY, 0, &family);
    // The upper half of the index names an instance of a variable font, which the shaper does not take.
    return SystemFonts::Found{reinterpret_cast<const char*>(file), static_cast<unsigned>(index & 0xffff),
                              family != nullptr ? reinterpret_cast<const char*>(family) : ""};
}

Pattern match(FcConfig* config, Pattern wanted)
{
    FcConfigSubstitute(config, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    return Pattern(FcFontMatch(config, wanted.get(), &result));
}

}  // namespace

struct SystemFonts::Config {
    std::unique_ptr<FcConfig, DropConfig> handle{FcInitLoadConfigAndFonts()};
};

SystemFonts::SystemFonts() : config_(std::make_unique<Config>()) {}
SystemFonts::~SystemFonts() = default;

std::optional<SystemFonts::Found> SystemFonts::find(const std::string& family, bool bold, bool italic) const
{
    Pattern wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    add_faces(wanted.get(), bold, italic);
    const Pattern best = match(config_->handle.get(), std::move(wanted));
    if (!best || !has_family(best.get(), family)) return std::nullopt;
    return found_in(best.get());
}

std::optional<SystemFonts::Found> SystemFonts::find_with(char32_t character, bool bold, bool italic) const
{
    Pattern wanted(FcPatternCreate());
    FcCharSet* set = FcCharSetCreate();
    FcCharSetAddChar(set, static_cast<FcChar32>(character));
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, set);
    FcCharSetDestroy(set);
    add_faces(wanted.get(), bold, italic);
    const Pattern best = match(config_->handle.get(), std::move(wanted));
    if (!best || !has_character(best.get(), character)) return std::nullopt;
    return found_in(best.get());
}

}  // namespace velora::engine
