#include "engine/text/font_store.h"

#include <array>
#include <cstdio>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/text/face.h"
#include "engine/text/system_fonts.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

struct ShippedFamily {
    const char* name;
    std::array<const char*, 4> files;  // regular, bold, italic, bold italic
};

// clang-format off
constexpr std::array kShipped = {
    ShippedFamily{"DejaVu Sans",      {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf", "DejaVuSans-Oblique.ttf", "DejaVuSans-BoldOblique.ttf"}},
    ShippedFamily{"DejaVu Serif",     {"DejaVuSerif.ttf", "DejaVuSerif-Bold.ttf", "DejaVuSerif-Italic.ttf", "DejaVuSerif-BoldItalic.ttf"}},
    ShippedFamily{"DejaVu Sans Mono", {"DejaVuSansMono.ttf", "DejaVuSansMono-Bold.ttf", "DejaVuSansMono-Oblique.ttf", "DejaVuSansMono-BoldOblique.ttf"}},
};
constexpr size_t kSans = 0, kSerif = 1, kMono = 2;

struct FamilyName { std::string_view name; size_t shipped; };

// Names that every definition may use whatever the machine has.
constexpr std::array kGeneric = {
    FamilyName{"DejaVu Sans", kSans},      FamilyName{"SansSerif", kSans},     FamilyName{"Sans Serif", kSans},
    FamilyName{"Sans-Serif", kSans},       FamilyName{"Dialog", kSans},        FamilyName{"Default", kSans},
    FamilyName{"DejaVu Serif", kSerif},    FamilyName{"Serif", kSerif},
    FamilyName{"DejaVu Sans Mono", kMono}, FamilyName{"Monospaced", kMono},    FamilyName{"Monospace", kMono},
    FamilyName{"DialogInput", kMono},
};

struct Relative { std::string_view name; const char* stand_in; size_t shipped; };

// Well-known families, the free ones with the same advances, and the shipped ones that come nearest.
constexpr std::array kRelatives = {
    Relative{"Arial", "Liberation Sans", kSans},           Relative{"Helvetica", "Liberation Sans", kSans},
    Relative{"Times New Roman", "Liberation Serif", kSerif}, Relative{"Times", "Liberation Serif", kSerif},
    Relative{"Times Roman", "Liberation Serif", kSerif},   Relative{"Georgia", "Gelasio", kSerif},
    Relative{"Cambria", "Caladea", kSerif},                Relative{"Calibri", "Carlito", kSans},
    Relative{"Courier New", "Liberation Mono", kMono},     Relative{"Courier", "Liberation Mono", kMono},
    Relative{"Consolas", "Liberation Mono", kMono},
};
// clang-format on

template <class Table>
auto* entry_of(const Table& table, std::string_view family)
{
    for (const auto& entry : table) {
        if (same_name(entry.name, family)) return &entry;
    }
    return static_cast<decltype(&table.front())>(nullptr);
}

size_t variant_of(const Font& font)
{
    return (font.bold ? 1U : 0U) + (font.italic ? 2U : 0U);
}

}  // namespace

struct FontStore::State {
    std::filesystem::path folder;
    Warn warn;
    std::map<std::pair<std::string, unsigned>, std::unique_ptr<Face>> files;
    std::array<std::array<const Face*, 4>, kShipped.size()> shipped{};
    std::unordered_map<std::string, std::array<const Face*, 4>> families;
    std::map<std::pair<char32_t, size_t>, const Face*> fallbacks;
    std::unique_ptr<SystemFonts> system;
    std::set<std::string> told;
    size_t missing_characters = 0;

    const Face* open(const std::filesystem::path& path, unsigned index, bool plain_latin)
    {
        auto& face = files[{path.string(), index}];
        if (!face) face = std::make_unique<Face>(path, index, plain_latin);
        return face.get();
    }
    const Face* shipped_face(size_t family, size_t variant)
    {
        const Face*& face = shipped.at(family).at(variant);
        if (face == nullptr) face = open(folder / kShipped.at(family).files.at(variant), 0, true);
        return face;
    }
    SystemFonts& system_fonts()
    {
        if (!system) system = std::make_unique<SystemFonts>();
        return *system;
    }
    const Face* system_face(const std::string& family, const Font& font)
    {
        const auto found = system_fonts().find(family, font.bold, font.italic);
        return found ? open(found->path, found->index, false) : nullptr;
    }
    void warn_once(const std::string& message)
    {
        if (told.insert(message).second && warn) warn(message);
    }
    void warn_of_missing(char32_t character)
    {
        constexpr size_t kMostTold = 3;  // a text in a script without a font would name every letter
        if (missing_characters > kMostTold) return;
        if (++missing_characters > kMostTold)
            return warn_once("No font has some further characters; boxes stand for them.");
        std::string letter;
        append_utf8(letter, character);
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "U+%04X", static_cast<unsigned>(character));
        warn_once("No font has the character '" + letter + "' (" + number.data() + "); a box stands for it.");
    }
    const Face* resolve(const Font& font)
    {
        if (const auto* generic = entry_of(kGeneric, font.family)) {
            return shipped_face(generic->shipped, variant_of(font));
        }
        if (const Face* own = system_face(font.family, font)) return own;
        const auto* relative = entry_of(kRelatives, font.family);
        if (relative != nullptr) {
            if (const Face* near = system_face(relative->stand_in, font)) {
                warn_once("The font '" + font.family + "' is missing; '" + relative->stand_in + "' stands in for it.");
                return near;
            }
        }
        const size_t family = relative != nullptr ? relative->shipped : kSans;
        warn_once("The font '" + font.family + "' is missing; '" + kShipped.at(family).name + "' stands in for it.");
        return shipped_face(family, variant_of(font));
    }
    const Face* find_fallback(char32_t character, const Font& font)
    {
        for (const size_t family : {kSans, kMono, kSerif}) {
            const Face* face = shipped_face(family, variant_of(font));
            if (face->has(character)) return face;
        }
        if (shipped_face(kSans, 0)->has(character)) return shipped_face(kSans, 0);
        const auto found = system_fonts().find_with(character, font.bold, font.italic);
        return found ? open(found->path, found->index, false) : nullptr;
    }
};

FontStore::FontStore(std::filesystem::path folder, Warn warn) : state_(std::make_unique<State>())
{
    state_->folder = std::move(folder);
    tell(std::move(warn));
}

FontStore::~FontStore() = default;

void FontStore::tell(Warn warn)
{
    // What was looked up is forgotten, so that it is told again; opened files are kept.
    state_->families.clear();
    state_->fallbacks.clear();
    state_->told.clear();
    state_->missing_characters = 0;
    state_->warn = std::move(warn);
}

const Face& FontStore::face(const Font& font)
{
    const Face*& face = state_->families[font.family].at(variant_of(font));
    if (face == nullptr) face = state_->resolve(font);
    return *face;
}

const Face* FontStore::fallback(char32_t character, const Font& font)
{
    const auto key = std::pair{character, variant_of(font)};
    const auto known = state_->fallbacks.find(key);
    if (known != state_->fallbacks.end()) return known->second;
    const Face* found = state_->find_fallback(character, font);
    state_->fallbacks.emplace(key, found);
    if (found == nullptr) state_->warn_of_missing(character);
    return found;
}

}  // namespace velora::engine
