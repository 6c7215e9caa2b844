// SPDX-License-Identifier: MIT
//
// A scripted file layer in place of the system's for everything that the process writes.
#pragma once

#include "files/ScriptedFileLayer.h"

namespace yg::testing {

/// In place until the end of the scope.
class ScopedFileLayer {
public:
    ScopedFileLayer() { files::setFileLayer(&layer_); }
    ScopedFileLayer(const ScopedFileLayer&) = delete;
    ScopedFileLayer& operator=(const ScopedFileLayer&) = delete;
    ~ScopedFileLayer() { files::setFileLayer(nullptr); }
    files::ScriptedFileLayer* operator->() { return &layer_; }

private:
    files::ScriptedFileLayer layer_;
};

}  // namespace yg::testing
