// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZClipboard.h"

namespace orvane
{

/// A clipboard that holds what the test puts there, in the place of the display's.
struct TestClipboard : ZClipboard
{
    ~TestClipboard() override { ZClipboard::Set(mBefore); }

    bool Write(const std::string& text) override
    {
        content = text;
        return true;
    }
    std::optional<std::string> Read(const void* /*owner*/) override { return content; }

    std::optional<std::string> content;

private:
    ZClipboard* mBefore = ZClipboard::Set(this);
};

}  // namespace orvane
