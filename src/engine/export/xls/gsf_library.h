#pragma once

#include <gsf/gsf-doc-meta-data.h>
#include <gsf/gsf-msole-utils.h>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-memory.h>
#include <gsf/gsf-utils.h>

#include "values/loaded_library.h"

namespace velora::engine {

/// The functions of libgsf, and of the object system under it, which are loaded with the first workbook.
struct GsfLibrary {
    /// @throws Fault 429 on a machine without libgsf
    static const GsfLibrary& loaded();

    LoadedLibrary library{"libgsf-1.so.114", "Workbooks cannot be written, since libgsf cannot be loaded"};

    // clang-format off
    decltype(gsf_init)*                         init                     = library.function<decltype(gsf_init)>("gsf_init");
    decltype(gsf_output_memory_new)*            output_memory_new        = library.function<decltype(gsf_output_memory_new)>("gsf_output_memory_new");
    decltype(gsf_output_memory_get_bytes)*      output_memory_get_bytes  = library.function<decltype(gsf_output_memory_get_bytes)>("gsf_output_memory_get_bytes");
    decltype(gsf_outfile_msole_new)*            outfile_msole_new        = library.function<decltype(gsf_outfile_msole_new)>("gsf_outfile_msole_new");
    decltype(gsf_outfile_new_child)*            outfile_new_child        = library.function<decltype(gsf_outfile_new_child)>("gsf_outfile_new_child");
    decltype(gsf_output_write)*                 output_write             = library.function<decltype(gsf_output_write)>("gsf_output_write");
    decltype(gsf_output_close)*                 output_close             = library.function<decltype(gsf_output_close)>("gsf_output_close");
    decltype(gsf_output_size)*                  output_size              = library.function<decltype(gsf_output_size)>("gsf_output_size");
    decltype(gsf_doc_meta_data_new)*            meta_data_new            = library.function<decltype(gsf_doc_meta_data_new)>("gsf_doc_meta_data_new");
    decltype(gsf_doc_meta_data_insert)*         meta_data_insert         = library.function<decltype(gsf_doc_meta_data_insert)>("gsf_doc_meta_data_insert");
    decltype(gsf_doc_meta_data_write_to_msole)* meta_data_write_to_msole = library.function<decltype(gsf_doc_meta_data_write_to_msole)>("gsf_doc_meta_data_write_to_msole");
    decltype(g_object_unref)*                   object_unref             = library.function<decltype(g_object_unref)>("g_object_unref");
    decltype(g_value_init)*                     value_init               = library.function<decltype(g_value_init)>("g_value_init");
    decltype(g_value_take_string)*              value_take_string        = library.function<decltype(g_value_take_string)>("g_value_take_string");
    // clang-format on

private:
    GsfLibrary() { init(); }
};

}  // namespace velora::engine
