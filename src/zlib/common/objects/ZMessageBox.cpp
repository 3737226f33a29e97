// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZMessageBox.h"

#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace orvane
{

namespace
{

struct BoxState
{
    std::mutex mutex;
    ZMessageBox::Presenter presenter;
    ZMessageBox::ModalPresenter modalPresenter;
    // Texts of the boxes that are open or queued. A list, because an empty list owns no memory.
    std::list<ZString> onShow;
};

// Never destroyed: a failure may be reported until the process ends.
BoxState& state()
{
    static const ZNeverDestroyed<BoxState> boxes;
    return *boxes;
}

const char* kindName(ZMessageBox::Kind kind)
{
    switch (kind) {
    case ZMessageBox::kInformation:
    case ZMessageBox::kNotice:
        return "information";
    case ZMessageBox::kWarning:
        return "warning";
    default:
        return "error";
    }
}

void writeLine(ZMessageBox::Kind kind, const ZString& title, const ZString& text)
{
    std::string line = title.ToNarrow() + " (" + kindName(kind) + "): " + text.ToNarrow();
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    line += '\n';
    std::fputs(line.c_str(), stderr);
}

/// A box until it is closed. A box that was not shown becomes a line on standard error: there is no
/// display, or the interface thread has ended before it reached the box.
class OpenBox
{
public:
    OpenBox(ZMessageBox::Kind kind, ZString title, ZString text)
        : mKind(kind)
        , mTitle(std::move(title))
        , mText(std::move(text))
    {
    }
    OpenBox(const OpenBox&) = delete;
    OpenBox& operator=(const OpenBox&) = delete;
    ~OpenBox()
    {
        if (!mShown)
            writeLine(mKind, mTitle, mText);
        BoxState& boxes = state();
        const std::lock_guard lock(boxes.mutex);
        std::erase(boxes.onShow, mText);
    }

    void Present(const ZMessageBox::Presenter& presenter)
    {
        assert(presenter);
        mShown = true;
        presenter(mKind, mTitle, mText);
    }
    void PresentModally(const ZMessageBox::ModalPresenter& presenter)
    {
        assert(ZInterfaceThread::IsCurrent());
        mShown = presenter(mKind, mTitle, mText);
    }

private:
    const ZMessageBox::Kind mKind;
    const ZString mTitle;
    const ZString mText;
    bool mShown = false;
};

}  // namespace

void ZMessageBox::Show(Kind kind, const ZString& title, const ZString& text)
{
    BoxState& boxes = state();
    Presenter presenter;
    ModalPresenter modalPresenter;
    {
        const std::lock_guard lock(boxes.mutex);
        if (std::find(boxes.onShow.begin(), boxes.onShow.end(), text) != boxes.onShow.end())
            return;
        boxes.onShow.push_back(text);
        presenter = boxes.presenter;
        modalPresenter = boxes.modalPresenter;
    }
    const auto box = std::make_shared<OpenBox>(kind, title, text);
    if (presenter)
        box->Present(presenter);
    else if (modalPresenter && ZInterfaceThread::IsCurrent())
        box->PresentModally(modalPresenter);
    else if (modalPresenter)
        ZInterfaceThread::Post([box, modalPresenter] { box->PresentModally(modalPresenter); });
}

ZMessageBox::Presenter ZMessageBox::SetPresenter(Presenter presenter)
{
    BoxState& boxes = state();
    const std::lock_guard lock(boxes.mutex);
    return std::exchange(boxes.presenter, std::move(presenter));
}

ZMessageBox::ModalPresenter ZMessageBox::SetModalPresenter(ModalPresenter presenter)
{
    BoxState& boxes = state();
    const std::lock_guard lock(boxes.mutex);
    return std::exchange(boxes.modalPresenter, std::move(presenter));
}

}  // namespace orvane
