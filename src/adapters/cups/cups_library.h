#pragma once

#include <cups/cups.h>

#include "values/loaded_library.h"

namespace velora::cups {

/// The functions of libcups, which is loaded when printers are first asked for.
struct CupsLibrary {
    /// @throws Fault 429 on a machine without libcups
    static const CupsLibrary& loaded();

    LoadedLibrary library{"libcups.so.2", "Nothing can be printed, since libcups cannot be loaded"};

    // clang-format off
    decltype(cupsEnumDests)*         enum_dests          = library.function<decltype(cupsEnumDests)>("cupsEnumDests");
    decltype(cupsCopyDest)*          copy_dest           = library.function<decltype(cupsCopyDest)>("cupsCopyDest");
    decltype(cupsRemoveDest)*        remove_dest         = library.function<decltype(cupsRemoveDest)>("cupsRemoveDest");
    decltype(cupsFreeDests)*         free_dests          = library.function<decltype(cupsFreeDests)>("cupsFreeDests");
    decltype(cupsGetOption)*         get_option          = library.function<decltype(cupsGetOption)>("cupsGetOption");
    decltype(cupsAddOption)*         add_option          = library.function<decltype(cupsAddOption)>("cupsAddOption");
    decltype(cupsFreeOptions)*       free_options        = library.function<decltype(cupsFreeOptions)>("cupsFreeOptions");
    decltype(cupsConnectDest)*       connect_dest        = library.function<decltype(cupsConnectDest)>("cupsConnectDest");
    decltype(cupsCopyDestInfo)*      copy_dest_info      = library.function<decltype(cupsCopyDestInfo)>("cupsCopyDestInfo");
    decltype(cupsFreeDestInfo)*      free_dest_info      = library.function<decltype(cupsFreeDestInfo)>("cupsFreeDestInfo");
    decltype(cupsCreateDestJob)*     create_dest_job     = library.function<decltype(cupsCreateDestJob)>("cupsCreateDestJob");
    decltype(cupsCancelDestJob)*     cancel_dest_job     = library.function<decltype(cupsCancelDestJob)>("cupsCancelDestJob");
    decltype(cupsStartDestDocument)* start_dest_document = library.function<decltype(cupsStartDestDocument)>("cupsStartDestDocument");
    decltype(cupsWriteRequestData)*  write_request_data  = library.function<decltype(cupsWriteRequestData)>("cupsWriteRequestData");
    decltype(cupsFinishDestDocument)* finish_dest_document = library.function<decltype(cupsFinishDestDocument)>("cupsFinishDestDocument");
    decltype(cupsLastError)*         last_error          = library.function<decltype(cupsLastError)>("cupsLastError");
    decltype(cupsLastErrorString)*   last_error_string   = library.function<decltype(cupsLastErrorString)>("cupsLastErrorString");
    decltype(cupsSetPasswordCB2)*    set_password_cb2    = library.function<decltype(cupsSetPasswordCB2)>("cupsSetPasswordCB2");
    decltype(cupsDoRequest)*         do_request          = library.function<decltype(cupsDoRequest)>("cupsDoRequest");
    decltype(pwgMediaForSize)*       media_for_size      = library.function<decltype(pwgMediaForSize)>("pwgMediaForSize");
    decltype(httpClose)*             http_close          = library.function<decltype(httpClose)>("httpClose");
    decltype(ippNewRequest)*         ipp_new_request     = library.function<decltype(ippNewRequest)>("ippNewRequest");
    decltype(ippAddString)*          ipp_add_string      = library.function<decltype(ippAddString)>("ippAddString");
    decltype(ippAddInteger)*         ipp_add_integer     = library.function<decltype(ippAddInteger)>("ippAddInteger");
    decltype(ippFindAttribute)*      ipp_find_attribute  = library.function<decltype(ippFindAttribute)>("ippFindAttribute");
    decltype(ippGetInteger)*         ipp_get_integer     = library.function<decltype(ippGetInteger)>("ippGetInteger");
    decltype(ippGetBoolean)*         ipp_get_boolean     = library.function<decltype(ippGetBoolean)>("ippGetBoolean");
    decltype(ippGetString)*          ipp_get_string      = library.function<decltype(ippGetString)>("ippGetString");
    decltype(ippDelete)*             ipp_delete          = library.function<decltype(ippDelete)>("ippDelete");
    // clang-format on

private:
    CupsLibrary();
};

}  // namespace velora::cups
