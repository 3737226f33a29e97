// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/controls/ZContextMenu.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string_view>

namespace orvane
{

class KestruneDocument;

/// The context menu of the product's window. Over PITCH and SIZE it tells the shift in cents where
/// that is not what the choice stands for, and takes a shift that is typed; over the keyboard and
/// the row of boxes it resets the notes. [interface thread]
class KestruneWindowMenu : public ZContextMenu
{
public:
    using ZContextMenu::ZContextMenu;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

protected:
    void AddViewItems(Builder& builder, ZView& view) override;

private:
    static void AddShift(Builder& builder, KestruneDocument& document,
                         const boost::shared_ptr<ZElement>& choice);
    static void AddReset(Builder& builder, const char* command);
    static void AddIgnoredReset(Builder& builder, const KestruneDocument& document);
};

}  // namespace orvane
