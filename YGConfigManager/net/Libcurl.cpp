// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/Libcurl.h"

#include <array>
#include <cstdint>
#include <dlfcn.h>

namespace yg::net {

namespace {

// What packaging tools read of it: https://systemd.io/ELF_DLOPEN_METADATA. The name of the file is
// that of libcurlFile.
#define YG_DLOPEN_NOTE                                          \
    R"([{"soname":["libcurl.so.4"],"feature":"http",)"          \
    R"("description":"HTTP requests and downloads of request )" \
    R"(URLs","priority":"required"}])"

struct DlopenNote {
    std::uint32_t ownerSize;
    std::uint32_t textSize;
    std::uint32_t type;
    std::array<char, 4> owner;
    alignas(std::uint32_t) std::array<char, sizeof YG_DLOPEN_NOTE> text;
};

// Without its own word on it a compiler aligns larger objects to more than notes may be.
[[gnu::section(".note.dlopen"), gnu::used]] alignas(std::uint32_t) constexpr DlopenNote note = {
    sizeof note.owner, sizeof note.text, 0x407c0c0a, {"FDO"}, {YG_DLOPEN_NOTE}};

constinit Libcurl functions{};

template <class Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

bool findAll(void* library, Libcurl& all) {
    return find(library, "curl_easy_cleanup", all.easyCleanup) &&
           find(library, "curl_easy_getinfo", all.easyGetInfo) &&
           find(library, "curl_easy_init", all.easyInit) &&
           find(library, "curl_easy_setopt", all.easySetOption) &&
           find(library, "curl_easy_strerror", all.easyError) &&
           find(library, "curl_global_init", all.globalInit) &&
           find(library, "curl_multi_add_handle", all.multiAdd) &&
           find(library, "curl_multi_cleanup", all.multiCleanup) &&
           find(library, "curl_multi_info_read", all.multiReadInfo) &&
           find(library, "curl_multi_init", all.multiInit) &&
           find(library, "curl_multi_poll", all.multiPoll) &&
           find(library, "curl_multi_remove_handle", all.multiRemove) &&
           find(library, "curl_multi_setopt", all.multiSetOption) &&
           find(library, "curl_multi_socket_action", all.multiAct) &&
           find(library, "curl_multi_wakeup", all.multiWakeUp) &&
           find(library, "curl_slist_append", all.listAppend) &&
           find(library, "curl_slist_free_all", all.listFree) &&
           // A library's own dependencies are searched too.
           find(library, "SSL_CTX_get_ex_data", all.contextData) &&
           find(library, "SSL_CTX_set_ex_data", all.setContextData) &&
           find(library, "SSL_CTX_set_info_callback", all.setContextCallback) &&
           find(library, "SSL_get_SSL_CTX", all.contextOf);
}

}  // namespace

std::optional<std::string> openLibcurl() {
    static bool isOpen = false;
    if (isOpen)
        return std::nullopt;
    void* const library = dlopen(libcurlFile, RTLD_NOW | RTLD_LOCAL);
    if (!library || !findAll(library, functions)) {
        const char* const reason = dlerror();
        return reason ? reason : libcurlFile;
    }
    // Never undone: the application may use the same library.
    if (const CURLcode result = functions.globalInit(CURL_GLOBAL_DEFAULT); result != CURLE_OK)
        return functions.easyError(result);
    isOpen = true;
    return std::nullopt;
}

const Libcurl& libcurl() noexcept {
    return functions;
}

}  // namespace yg::net
