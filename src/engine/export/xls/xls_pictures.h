#pragma once

#include <map>
#include <memory>
#include <vector>

#include "engine/export/xls/xls_records.h"
#include "engine/export/xls/xls_sheet.h"

namespace velora::engine {

/// The pictures of a workbook: the store that all sheets share, and the drawing of each sheet.
class XlsPictures {
public:
    explicit XlsPictures(const std::vector<XlsSheet>& sheets);

    /// The record of the shared store; nothing when no sheet has a picture.
    void write_store(XlsRecords& stream) const;
    /// The records of one sheet's drawing; nothing when it has no picture.
    [[nodiscard]] XlsRecords drawing(size_t sheet) const;

private:
    /// Numbers of shapes are given out in blocks of 1024, and each block belongs to one drawing.
    struct Drawing {
        uint32_t number = 0, first_block = 0, blocks = 0, shapes = 0;
    };
    [[nodiscard]] std::string shape(const XlsAnchoredPicture& picture, uint32_t id) const;

    const std::vector<XlsSheet>& sheets_;
    std::vector<Drawing> drawings_;  ///< one for each sheet, number 0 for a sheet without
    std::vector<std::shared_ptr<const ImageData>> store_;
    std::map<const ImageData*, uint32_t> positions_;  ///< from 1
    std::map<const ImageData*, uint32_t> uses_;
};

}  // namespace velora::engine
