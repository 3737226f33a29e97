// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneWindowMenu.h"

#include "kestrune/common/pitch/KestruneDocument.h"
#include "kestrune/common/views/KestruneCorrectionMeter.h"
#include "kestrune/common/views/KestruneIgnoreKeysView.h"
#include "kestrune/common/views/KestruneKeyboardView.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/controls/ZValueDialog.h"
#include "zlib/common/documents/ZApp.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/elements/ZValueText.h"
#include "zlib/common/views/ZEditGesture.h"
#include "zlib/common/views/ZWindow.h"

namespace orvane
{

namespace
{

boost::shared_ptr<KestruneDocument> documentOf(const ZApp& app)
{
    return boost::dynamic_pointer_cast<KestruneDocument>(app.GetCurrentDocument());
}

/// Asks for a shift and sets it: by the choice that stands for it, if there is one, since the host
/// knows that; else the shift alone, which the choice goes on to stand beside.
void enterShift(ZApp& app, ZWindow& window, const boost::shared_ptr<ZElement>& choice)
{
    const auto shift = documentOf(app)->GetShift(*choice);
    const auto cents = ZValueDialog::Ask(app, &window,
                                         {.name = choice->GetLabel(ZElement::kFullLabel),
                                          .units = ZElement::kCents,
                                          .min = shift->Min(),
                                          .max = shift->Max(),
                                          .value = shift->GetZFloat()});
    const auto document = documentOf(app);
    if (!cents || !document)
        return;
    if (const auto index = document->FindChoice(*choice, *cents))
        editDiscrete(choice, *index);
    else
        document->EnterShift(*choice, *cents);
}

}  // namespace

bool KestruneWindowMenu::IsKindOf(std::string_view className) const
{
    return className == "KestruneWindowMenuClass" || ZContextMenu::IsKindOf(className);
}

const char* KestruneWindowMenu::GetClassName() const
{
    return "KestruneWindowMenuClass";
}

void KestruneWindowMenu::AddViewItems(Builder& builder, ZView& view)
{
    const auto document = documentOf(builder.GetApp());
    if (!document)
        return ZContextMenu::AddViewItems(builder, view);
    if (dynamic_cast<const KestruneCorrectionMeter*>(&view))
        return;  // a display
    if (dynamic_cast<const KestruneIgnoreKeysView*>(&view))
        return AddIgnoredReset(builder, *document);
    if (dynamic_cast<const KestruneKeyboardView*>(&view))
        return AddReset(builder, "cmdCustomScaleCancel");
    const auto element = view.GetElement();
    if (element && document->GetShift(*element))
        return AddShift(builder, *document, element);
    ZContextMenu::AddViewItems(builder, view);
}

void KestruneWindowMenu::AddShift(Builder& builder, KestruneDocument& document,
                                  const boost::shared_ptr<ZElement>& choice)
{
    const float cents = document.GetShift(*choice)->GetZFloat();
    const bool isOfChoice = document.FindChoice(*choice, cents) == choice->GetDiscrete();
    if (!isOfChoice) {
        ZString text = signedValueText(cents, ZElement::kCents);
        text.Append(", not what the choice says");
        builder.AddInformation(text);
    }
    builder.Add(kResetLabel, [choice] { editDiscrete(choice, choice->GetDiscreteDefault()); })
        .enabled = !isOfChoice || choice->GetDiscrete() != choice->GetDiscreteDefault();
    builder.Add(kEnterLabel, [&app = builder.GetApp(), &window = builder.GetWindow(), choice] {
        enterShift(app, window, choice);
    });
}

void KestruneWindowMenu::AddReset(Builder& builder, const char* command)
{
    boost::shared_ptr<ZCommand> reset;
    if (builder.GetApp().HasCommandList() &&
        builder.GetApp().GetCommandList()->GetCommand(command, reset))
        builder.Add(kResetLabel, [reset] { reset->Dispatch(); });
}

void KestruneWindowMenu::AddIgnoredReset(Builder& builder, const KestruneDocument& document)
{
    const auto notes = document.FindElement("ignoredNotes");
    if (!notes)
        return;
    builder.Add(kResetLabel, [notes] {
        notes->SetZBuffer(ZBuffer(notes->GetZBuffer()->Length(), "ZBuffer"), false);
    });
}

}  // namespace orvane
