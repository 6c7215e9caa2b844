// SPDX-License-Identifier: MIT
//
// An application that uses fontconfig itself. The words that it is started with are its steps:
//
//   add FILE    adds a font to the process's configuration, which it loads if there is none
//   share       has the library use that configuration too, and prints whether it does
//   threads     the same on several threads that look for a font at once; prints how many agree
//   find FACE   prints whether the library knows the face
//   ask FACE    prints whether the process's configuration has the face as one of the application
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include <fontconfig/fontconfig.h>

#include "YGConfigManager/graphics/Font.h"

namespace {

const FcChar8* bytesOf(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

/// How many of eight threads share, and find the face of the application afterwards.
int countThreads() {
    std::array<int, 8> agrees{};
    std::array<std::thread, agrees.size()> threads;
    for (std::size_t i = 0; i < agrees.size(); ++i) {
        threads[i] = std::thread([&one = agrees[i]] {
            one = yg::Font::shareFontconfig() && yg::Font::named("YG Test Square", 12) ? 1 : 0;
        });
    }
    int count = 0;
    for (std::size_t i = 0; i < agrees.size(); ++i) {
        threads[i].join();
        count += agrees[i];
    }
    return count;
}

bool isOfTheApplication(const std::string& face) {
    const FcFontSet* const fonts = FcConfigGetFonts(FcConfigGetCurrent(), FcSetApplication);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        FcChar8* family = nullptr;
        if (FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) == FcResultMatch &&
            face == reinterpret_cast<const char*>(family))
            return true;
    }
    return false;
}

}  // namespace

int main(int count, char** words) {
    for (int i = 1; i < count; ++i) {
        const std::string_view step = words[i];
        if (step == "share") {
            std::puts(yg::Font::shareFontconfig() ? "shares" : "does not share");
            continue;
        }
        if (step == "threads") {
            std::printf("%d threads\n", countThreads());
            continue;
        }
        if (++i == count)
            return EXIT_FAILURE;
        const std::string operand = words[i];
        if (step == "add")
            std::puts(FcConfigAppFontAddFile(FcConfigGetCurrent(), bytesOf(operand)) == FcTrue
                          ? "added"
                          : "not added");
        else if (step == "find")
            std::puts(yg::Font::named(operand, 12) ? "known" : "unknown");
        else if (step == "ask")
            std::puts(isOfTheApplication(operand) ? "there" : "not there");
        else
            return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
