#pragma once

#include <curl/curl.h>

namespace platform::update {

// The network library's functions that transfers use. The library is
// loaded when the first transfer needs it rather than with the program:
// some thirty libraries of its own come with it, and loading them would
// lengthen every start by several milliseconds for a check that runs now
// and then.
struct CurlLibrary {
    decltype(&curl_global_init) globalInit = nullptr;
    decltype(&curl_easy_init) easyInit = nullptr;
    decltype(&curl_easy_setopt) easySetopt = nullptr;
    decltype(&curl_easy_perform) easyPerform = nullptr;
    decltype(&curl_easy_getinfo) easyGetinfo = nullptr;
    decltype(&curl_easy_cleanup) easyCleanup = nullptr;
    decltype(&curl_easy_strerror) easyStrerror = nullptr;
    decltype(&curl_multi_init) multiInit = nullptr;
    decltype(&curl_multi_add_handle) multiAddHandle = nullptr;
    decltype(&curl_multi_perform) multiPerform = nullptr;
    decltype(&curl_multi_info_read) multiInfoRead = nullptr;
    decltype(&curl_multi_poll) multiPoll = nullptr;
    decltype(&curl_multi_remove_handle) multiRemoveHandle = nullptr;
    decltype(&curl_multi_wakeup) multiWakeup = nullptr;
    decltype(&curl_multi_cleanup) multiCleanup = nullptr;
    decltype(&curl_url) url = nullptr;
    decltype(&curl_url_set) urlSet = nullptr;
    decltype(&curl_url_get) urlGet = nullptr;
    decltype(&curl_url_cleanup) urlCleanup = nullptr;
    decltype(&curl_free) free = nullptr;

    // The library, loaded and initialised on the first call; null when it
    // can't be loaded, which every later call answers too.
    static const CurlLibrary* get();
};

}  // namespace platform::update
