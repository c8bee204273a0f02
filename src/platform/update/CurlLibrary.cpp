#include "platform/update/CurlLibrary.h"

#include <dlfcn.h>

#include <optional>
#include <string>

#include "support/Log.h"

namespace platform::update {

namespace {

constexpr const char* libraryName = "libcurl.so.4";

template <typename Function>
bool resolve(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

std::optional<CurlLibrary> load() {
    // Never closed: transfers may run on their threads until the end.
    void* library = dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        quillbox::Log::error(std::string("#Error Updates can't be fetched: ") + dlerror());
        return std::nullopt;
    }
    CurlLibrary curl;
    const bool complete = resolve(library, "curl_global_init", curl.globalInit) &&
                          resolve(library, "curl_easy_init", curl.easyInit) &&
                          resolve(library, "curl_easy_setopt", curl.easySetopt) &&
                          resolve(library, "curl_easy_perform", curl.easyPerform) &&
                          resolve(library, "curl_easy_getinfo", curl.easyGetinfo) &&
                          resolve(library, "curl_easy_cleanup", curl.easyCleanup) &&
                          resolve(library, "curl_easy_strerror", curl.easyStrerror) &&
                          resolve(library, "curl_multi_init", curl.multiInit) &&
                          resolve(library, "curl_multi_add_handle", curl.multiAddHandle) &&
                          resolve(library, "curl_multi_perform", curl.multiPerform) &&
                          resolve(library, "curl_multi_info_read", curl.multiInfoRead) &&
                          resolve(library, "curl_multi_poll", curl.multiPoll) &&
                          resolve(library, "curl_multi_remove_handle", curl.multiRemoveHandle) &&
                          resolve(library, "curl_multi_wakeup", curl.multiWakeup) &&
                          resolve(library, "curl_multi_cleanup", curl.multiCleanup) &&
                          resolve(library, "curl_url", curl.url) &&
                          resolve(library, "curl_url_set", curl.urlSet) &&
                          resolve(library, "curl_url_get", curl.urlGet) &&
                          resolve(library, "curl_url_cleanup", curl.urlCleanup) &&
                          resolve(library, "curl_free", curl.free);
    if (!complete) {
        quillbox::Log::error(std::string("#Error Updates can't be fetched: ") + libraryName +
                             " lacks functions they need");
        return std::nullopt;
    }
    curl.globalInit(CURL_GLOBAL_DEFAULT);
    return curl;
}

}  // namespace

const CurlLibrary* CurlLibrary::get() {
    static const std::optional<CurlLibrary> library = load();
    return library ? &*library : nullptr;
}

}  // namespace platform::update
