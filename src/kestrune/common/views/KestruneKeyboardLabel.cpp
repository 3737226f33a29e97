// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneKeyboardLabel.h"

#include "zlib/common/elements/ZElement.h"

namespace orvane
{

namespace
{

ZString chosenText(const ZObservedElement& choice)
{
    return choice ? *choice->GetDiscreteString(choice->GetDiscrete()) : ZString();
}

}  // namespace

KestruneKeyboardLabel::KestruneKeyboardLabel(const boost::shared_ptr<ZXMLElement>& xml,
                                             ZApplication* application)
    : ZStringView(xml, application)
    , mStartingNoteName(readElementName(*xml, "startingnote"))
    , mStartingNote(*this)
    , mScaleName(readElementName(*xml, "scale"))
    , mScale(*this)
{
}

bool KestruneKeyboardLabel::IsKindOf(std::string_view className) const
{
    return className == "KestruneKeyboardLabelClass" || ZStringView::IsKindOf(className);
}

const char* KestruneKeyboardLabel::GetClassName() const
{
    return "KestruneKeyboardLabelClass";
}

void KestruneKeyboardLabel::ElementChanged(std::uint64_t elementId)
{
    if (!mStartingNote.Is(elementId) && !mScale.Is(elementId))
        return ZStringView::ElementChanged(elementId);
    ZString text = chosenText(mStartingNote);
    text.Append(" ");
    text.Append(chosenText(mScale));
    text.Append(" ->");
    SetText(text);
}

void KestruneKeyboardLabel::DetachFromElements()
{
    ZStringView::DetachFromElements();
    mStartingNote.StopObserving();
    mScale.StopObserving();
}

void KestruneKeyboardLabel::OnDocumentChanged()
{
    ZStringView::OnDocumentChanged();
    mStartingNote.Observe(FindElement(mStartingNoteName));
    mScale.Observe(FindElement(mScaleName));
}

void KestruneKeyboardLabel::OnDocumentClosed()
{
    ZStringView::OnDocumentClosed();
    mStartingNote.Release();
    mScale.Release();
}

}  // namespace orvane
