#pragma once

#include <string>
#include <vector>

#include "engine/export/pdf/pdf_file.h"
#include "engine/page/page.h"

namespace velora::engine {

/// What the attachments add to the catalog.
struct AttachmentEntries {
    std::string names;    ///< for the dictionary of names
    std::string catalog;  ///< that they belong to the document (ISO 19005-3)
};

/// Writes files that go along inside the PDF, to be taken out in a reader's list of attachments.
AttachmentEntries write_attachments(PdfFile& file, const std::vector<Attachment>& attachments);

}  // namespace velora::engine
