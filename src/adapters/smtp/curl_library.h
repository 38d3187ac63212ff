#pragma once

#include <curl/curl.h>

#include "values/loaded_library.h"

namespace velora::smtp {

/// The functions of libcurl, which is loaded with the first mail.
struct CurlLibrary {
    /// @throws Fault 429 on a machine without libcurl
    static const CurlLibrary& loaded();

    LoadedLibrary library{"libcurl.so.4", "E-mail cannot be sent, since libcurl cannot be loaded"};

    // clang-format off
    decltype(curl_global_init)*         global_init         = library.function<decltype(curl_global_init)>("curl_global_init");
    decltype(curl_easy_init)*           easy_init           = library.function<decltype(curl_easy_init)>("curl_easy_init");
    decltype(curl_easy_setopt)*         easy_setopt         = library.function<decltype(curl_easy_setopt)>("curl_easy_setopt");
    decltype(curl_easy_strerror)*       easy_strerror       = library.function<decltype(curl_easy_strerror)>("curl_easy_strerror");
    decltype(curl_easy_cleanup)*        easy_cleanup        = library.function<decltype(curl_easy_cleanup)>("curl_easy_cleanup");
    decltype(curl_multi_init)*          multi_init          = library.function<decltype(curl_multi_init)>("curl_multi_init");
    decltype(curl_multi_add_handle)*    multi_add_handle    = library.function<decltype(curl_multi_add_handle)>("curl_multi_add_handle");
    decltype(curl_multi_remove_handle)* multi_remove_handle = library.function<decltype(curl_multi_remove_handle)>("curl_multi_remove_handle");
    decltype(curl_multi_perform)*       multi_perform       = library.function<decltype(curl_multi_perform)>("curl_multi_perform");
    decltype(curl_multi_poll)*          multi_poll          = library.function<decltype(curl_multi_poll)>("curl_multi_poll");
    decltype(curl_multi_info_read)*     multi_info_read     = library.function<decltype(curl_multi_info_read)>("curl_multi_info_read");
    decltype(curl_multi_cleanup)*       multi_cleanup       = library.function<decltype(curl_multi_cleanup)>("curl_multi_cleanup");
    decltype(curl_slist_append)*        slist_append        = library.function<decltype(curl_slist_append)>("curl_slist_append");
    decltype(curl_slist_free_all)*      slist_free_all      = library.function<decltype(curl_slist_free_all)>("curl_slist_free_all");
    // clang-format on

private:
    CurlLibrary();
};

}  // namespace velora::smtp
