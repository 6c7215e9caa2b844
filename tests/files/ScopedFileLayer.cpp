// SPDX-License-Identifier: MIT
#include "files/ScopedFileLayer.h"

#include <atomic>

namespace yg::testing {

namespace {

std::atomic<files::FileLayer*> replacement = nullptr;

}  // namespace

// The linker calls the one for files::systemFileLayer(), which is the other one (--wrap).
files::FileLayer& wrapping() asm("__wrap__ZN2yg5files15systemFileLayerEv");
files::FileLayer& wrapped() asm("__real__ZN2yg5files15systemFileLayerEv");

files::FileLayer& wrapping() {
    files::FileLayer* const layer = replacement;
    return layer ? *layer : wrapped();
}

ScopedFileLayer::ScopedFileLayer() {
    replacement = &layer_;
}

ScopedFileLayer::~ScopedFileLayer() {
    replacement = nullptr;
}

}  // namespace yg::testing
