#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velora::engine {

/// What a test wants to know of a workbook, read back record by record by the rules of the format.
struct ReadWorkbook {
    struct Cell {
        std::optional<double> number;
        std::u16string text;
        uint16_t format = 0;  ///< number of the cell format
    };
    struct Merge {
        int top, bottom, left, right;
    };
    struct Sheet {
        std::map<std::pair<int, int>, Cell> cells;  ///< by row and column
        std::vector<Merge> merges;
        std::vector<int> breaks;
        int columns = 0;
        int pictures = 0;
    };
    std::vector<Sheet> sheets;
    std::map<uint16_t, std::string> codes;  ///< format codes by number
    std::vector<uint16_t> cell_formats;     ///< format numbers of the XF records

    [[nodiscard]] std::string code_of(const Cell& cell) const;
    /// The first cell with the text.
    [[nodiscard]] const Cell* find(const std::u16string& text) const;
};

/// @throws std::runtime_error where the structure is broken
ReadWorkbook read_workbook(const std::filesystem::path& path);

}  // namespace velora::engine
