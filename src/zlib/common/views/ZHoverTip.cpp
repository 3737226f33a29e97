// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZHoverTip.h"

#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <cassert>
#include <utility>

namespace orvane
{

ZHoverTip::ZHoverTip(const ZView& view, std::function<Content()> content)
    : mView(view)
    , mContent(std::move(content))
{
    assert(mContent);
}

void ZHoverTip::Enter()
{
    mIsPointedAt = true;
    Update();
}

void ZHoverTip::Leave()
{
    mIsPointedAt = false;
    if (ZWindow* const window = mView.GetWindow())
        window->GetValueTip().Hide(mView);
}

void ZHoverTip::Update()
{
    ZWindow* const window = mView.GetWindow();
    if (!window || !mIsPointedAt)
        return;
    const Content content = mContent();
    window->GetValueTip().Show(mView, content.text, content.around);
}

}  // namespace orvane
