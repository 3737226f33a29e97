// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/controls/ZValueDialog.h"

#include "zlib/common/controls/ZLabelButton.h"
#include "zlib/common/controls/ZTextEdit.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/elements/ZValueInput.h"
#include "zlib/common/elements/ZValueText.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/views/ZDialog.h"
#include "zlib/common/views/ZStringView.h"

#include <cassert>
#include <string>

namespace orvane
{

namespace
{

template <typename View>
boost::shared_ptr<View> require(const ZDialog& dialog, const char* name)
{
    auto view = dialog.Find<View>(name);
    if (!view)
        throw ZException(std::string("The dialog for values has no view ") + name);
    return view;
}

ZString rangeText(const char* before, const ZValueDialog::Request& request)
{
    ZString text(before);
    text.Append(valueText(request.min, ZElement::kGeneric));
    text.Append(" to ");
    text.Append(valueText(request.max, request.units));
    return text;
}

}  // namespace

std::optional<float> ZValueDialog::Ask(ZApp& app, ZWindow* parent, const Request& request)
{
    assert(request.min <= request.max);
    ZDialog dialog(app, "EnterValue");
    const auto edit = require<ZTextEdit>(dialog, "Value");
    const auto note = require<ZStringView>(dialog, "Note");
    std::optional<float> entered;
    const auto accept = [&] {
        const auto number = readValue(edit->GetText(), request.units);
        if (!number || !(*number >= request.min && *number <= request.max)) {
            note->SetText(rangeText("Please enter a number from ", request));
            edit->SetText(edit->GetText());
            return dialog.SetKeyView(*edit);
        }
        entered = number;
        dialog.End(true);
    };
    require<ZStringView>(dialog, "Prompt")->SetText(request.name);
    note->SetText(rangeText("From ", request));
    edit->SetText(valueText(request.value, request.units));
    edit->SetReturnAction(accept);
    require<ZLabelButton>(dialog, "OK")->SetAction(accept);
    require<ZLabelButton>(dialog, "Cancel")->SetAction([&dialog] { dialog.End(false); });
    dialog.SetKeyView(*edit);
    return dialog.Run(parent) ? entered : std::nullopt;
}

}  // namespace orvane
