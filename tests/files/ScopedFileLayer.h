// SPDX-License-Identifier: MIT
//
// A scripted file layer in place of the system's for everything that the process writes. Only in
// programs that link yg_scoped_file_layer.
#pragma once

#include "files/ScriptedFileLayer.h"

namespace yg::testing {

/// In place until the end of the scope.
class ScopedFileLayer {
public:
    ScopedFileLayer();
    ScopedFileLayer(const ScopedFileLayer&) = delete;
    ScopedFileLayer& operator=(const ScopedFileLayer&) = delete;
    ~ScopedFileLayer();
    files::ScriptedFileLayer* operator->() { return &layer_; }

private:
    files::ScriptedFileLayer layer_;
};

}  // namespace yg::testing
