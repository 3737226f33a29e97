// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZObservedElement.h"
#include "zlib/common/views/ZStringView.h"

#include <string>

namespace orvane
{

/// A label for a keyboard with the current key and scale, such as "C Major ->". Both are discrete
/// elements, named by `<element startingnote=>` and `<element scale=>`; a missing one counts as an
/// empty text. [interface thread]
class KestruneKeyboardLabel : public ZStringView
{
public:
    KestruneKeyboardLabel(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    void ElementChanged(std::uint64_t elementId) override;
    void DetachFromElements() override;
    void OnDocumentChanged() override;
    void OnDocumentClosed() override;

private:
    std::string mStartingNoteName;
    ZObservedElement mStartingNote;
    std::string mScaleName;
    ZObservedElement mScale;
};

}  // namespace orvane
