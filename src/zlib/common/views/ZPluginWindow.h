// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/views/ZWindow.h"

namespace orvane
{

/// A window that a host opens and closes: its views are detached in between, and it takes all keys
/// while it has the keyboard. [interface thread]
class ZPluginWindow : public ZWindow
{
public:
    using ZWindow::ZWindow;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void Detach() override;
    bool NativeKey(const ZNativeKeyEvent& event) override;
};

}  // namespace orvane
