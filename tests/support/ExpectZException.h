// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Test.h"
#include "zlib/common/objects/ZException.h"

namespace orvane
{

/// Expects that call() throws a ZException with that code and text.
template <typename Call>
void expectZException(std::int32_t code, const std::string& text, Call call)
{
    try {
        call();
        ADD_FAILURE() << "nothing thrown, expected: " << text;
    } catch (const ZException& exception) {
        EXPECT_EQ(exception.GetCode(), code) << text;
        EXPECT_EQ(exception.GetMessage().ToNarrow(), text);
    }
}

/// Expects that call() throws a ZException with the code kGeneral and that text.
template <typename Call>
void expectZException(const std::string& text, Call call)
{
    expectZException(ZException::kGeneral, text, std::move(call));
}

}  // namespace orvane
