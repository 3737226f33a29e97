// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZClipboard.h"

#include <optional>
#include <string>

namespace orvane
{

/// A clipboard that holds what the test puts there, in the place of the display's.
class TestClipboard : public ZClipboard
{
public:
    TestClipboard()
        : mBefore(ZClipboard::Set(this))
    {
    }
    ~TestClipboard() override { ZClipboard::Set(mBefore); }

    bool Write(const std::string& text) override
    {
        content = text;
        return true;
    }
    std::optional<std::string> Read(const void* /*owner*/) override { return content; }

    std::optional<std::string> content;

private:
    ZClipboard* mBefore;
};

}  // namespace orvane
